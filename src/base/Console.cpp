#include "base/Console.h"

#include "base/MainQueue.h"
#include "base/PlainText.h"
#include "base/realtime/LineRing.h"

#include <cstdio>
#include <utility>

namespace volvelle {

namespace {

constinit LineRing realtimeLines;

} // namespace

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

ConsoleSilence::ConsoleSilence() : before((flushLog(), console().setSink(nullptr))) {}

ConsoleSilence::~ConsoleSilence()
{
    console().setSink(before);
}

void StandardOutputSink::write(std::string_view line)
{
    std::string whole = plainText(line);
    whole += '\n';
    std::fwrite(whole.data(), 1, whole.size(), stdout);
    std::fflush(stdout);
}

void queueLine(std::string line)
{
    mainQueue().postLine(std::move(line));
}

void realtimeprint(std::string_view beginning, std::string_view rest) noexcept
{
    if (console().isHeard()) {
        realtimeLines.push(beginning, rest);
    }
}

void writeRealtimeLines()
{
    std::string line;
    while (realtimeLines.pop(line)) {
        console().write(line);
    }
    if (const std::size_t missed = realtimeLines.takeMissed(); missed > 0) {
        console().write(concat("Lines of the rendering threads that found no room: ", missed));
    }
}

void writeAtOnce(std::string_view line)
{
    flushLog();
    console().write(line);
}

void flushLog()
{
    if (mainQueue().isMainThread()) {
        mainQueue().writeWaitingLines();
    }
}

} // namespace volvelle
