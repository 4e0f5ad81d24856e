#include "base/Console.h"

#include "base/MainQueue.h"

#include <cstdio>
#include <utility>

namespace volvelle {

ConsoleSink* Console::setSink(ConsoleSink* sink)
{
    return current.exchange(sink);
}

void Console::write(std::string_view line)
{
    if (ConsoleSink* sink = current.load(std::memory_order_acquire)) {
        sink->write(line);
    }
}

Console& console()
{
    static Console instance;
    return instance;
}

void StandardOutputSink::write(std::string_view line)
{
    std::string whole(line);
    whole += '\n';
    std::fwrite(whole.data(), 1, whole.size(), stdout);
    std::fflush(stdout);
}

void safeprint(std::string message)
{
    if (console().isHeard()) {
        mainQueue().postLine(std::move(message));
    }
}

void debugprint(std::string message)
{
    safeprint(std::move(message));
}

void directPrint(std::string_view message)
{
    if (console().isHeard()) {
        flushLog();
        console().write(message);
    }
}

void flushLog()
{
    if (mainQueue().isMainThread()) {
        mainQueue().writeWaitingLines();
    }
}

} // namespace volvelle
