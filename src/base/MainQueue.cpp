#include "base/MainQueue.h"

#include "base/Console.h"
#include "base/MainThread.h"

#include <utility>

namespace volvelle {

MainQueue::MainQueue() : mainThread(std::this_thread::get_id()) {}

void MainQueue::post(Closure closure)
{
    if (closure) {
        append({std::move(closure), {}});
    }
}

void MainQueue::postLine(std::string line)
{
    append({{}, std::move(line)});
}

void MainQueue::append(Entry entry)
{
    Closure wake;
    {
        const std::lock_guard lock(mutex);
        entries.push_back(std::move(entry));
        wake = wakeUp;
    }
    if (wake) {
        wake();
    }
}

void MainQueue::drain()
{
    assertMainThread();
    while (true) {
        Entry entry;
        {
            const std::lock_guard lock(mutex);
            if (entries.empty()) {
                break;
            }
            entry = std::move(entries.front());
            entries.pop_front();
        }
        if (entry.closure) {
            entry.closure();
        } else {
            console().write(entry.line);
        }
    }
    writeRealtimeLines();
}

void MainQueue::writeWaitingLines()
{
    std::deque<Entry> lines;
    {
        const std::lock_guard lock(mutex);
        std::deque<Entry> closures;
        for (Entry& entry : entries) {
            (entry.closure ? closures : lines).push_back(std::move(entry));
        }
        entries = std::move(closures);
    }
    for (const Entry& entry : lines) {
        console().write(entry.line);
    }
    writeRealtimeLines();
}

void MainQueue::setWakeUp(Closure hook)
{
    const std::lock_guard lock(mutex);
    wakeUp = std::move(hook);
}

MainQueue& mainQueue()
{
    static MainQueue queue;
    return queue;
}

} // namespace volvelle
