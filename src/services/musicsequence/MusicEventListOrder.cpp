#include "services/musicsequence/MusicEventList.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr auto earlier = [](const MusicEvent& a, const MusicEvent& b) { return a.time < b.time; };

} // namespace

void MusicEventList::order()
{
    if (sortedCount == events.size()) {
        return;
    }
    sortTail();
    moveCursorsForTail();
    const auto middle = events.begin() + static_cast<std::ptrdiff_t>(sortedCount);
    const auto from = std::upper_bound(events.begin(), middle, *middle, earlier);
    unskipFrom(static_cast<std::size_t>(from - events.begin()));
    std::inplace_merge(from, middle, events.end(), earlier);
    sortedCount = events.size();
    dropMarkedEnd();
}

void MusicEventList::sortTail()
{
    const auto middle = events.begin() + static_cast<std::ptrdiff_t>(sortedCount);
    if (!std::is_sorted(middle, events.end(), earlier)) {
        std::stable_sort(middle, events.end(), earlier);
    }
}

void MusicEventList::moveCursorsForTail()
{
    const auto middle = events.begin() + static_cast<std::ptrdiff_t>(sortedCount);
    for (EventCursor* cursor : cursors) {
        if (cursor->index == EventCursor::behindEnd) {
            continue;
        }
        const MusicEvent& event = events[cursor->index];
        if (cursor->index < sortedCount) {
            const auto place = std::lower_bound(middle, events.end(), event, earlier);
            cursor->index += static_cast<std::size_t>(place - middle);
        } else {
            const auto place = std::upper_bound(events.begin(), middle, event, earlier);
            cursor->index -= static_cast<std::size_t>(middle - place);
        }
    }
}

// Deleted events may not lead past what is about to be sorted in behind them.
void MusicEventList::unskipFrom(std::size_t index)
{
    while (index > 0 && events[index - 1].isDeleted()) {
        --index;
    }
    for (std::size_t i = index; markedCount > 0 && i < events.size(); ++i) {
        if (events[i].isDeleted()) {
            events[i].payload = 1;
        }
    }
}

void MusicEventList::compact()
{
    if (markedCount == 0) {
        return;
    }
    for (EventCursor* cursor : cursors) {
        settle(*cursor);
    }
    std::vector<EventCursor*> waiting = cursors;
    std::ranges::sort(waiting, {}, &EventCursor::index);
    auto cursor = waiting.begin();
    std::size_t kept = 0;
    for (std::size_t i = 0; i < events.size(); ++i) {
        for (; cursor != waiting.end() && (*cursor)->index == i; ++cursor) {
            (*cursor)->index = kept;
        }
        if (!events[i].isDeleted()) {
            events[kept++] = events[i];
        }
    }
    events.resize(kept);
    sortedCount = kept;
    markedCount = 0;
    compactArena();
}

void MusicEventList::compactArena()
{
    if (wastedWords <= arena.wordCount() / 2) {
        return;
    }
    PayloadArena kept;
    for (MusicEvent& event : events) {
        if (!event.isInline()) {
            event.payload = kept.add(event.size, arena.at(event.payload), event.size);
        }
    }
    arena = std::move(kept);
    wastedWords = 0;
}

// The last event always lives, so that whether one follows is told by the count alone.
void MusicEventList::dropMarkedEnd()
{
    while (!events.empty() && events.back().isDeleted()) {
        events.pop_back();
        --markedCount;
    }
    sortedCount = std::min(sortedCount, events.size());
}

void MusicEventList::mark(MusicEvent& event)
{
    wastedWords += event.isInline() ? 0 : PayloadArena::wordsFor(event.size);
    event.type = kMusicEventType_NULL;
    event.size = 0;
    event.payload = 1;
    ++markedCount;
}

// The first live event from `index` on. The marked ones passed then lead straight to it.
std::size_t MusicEventList::live(std::size_t index)
{
    std::size_t target = index;
    while (target < events.size() && events[target].isDeleted()) {
        target += events[target].payload;
    }
    while (index < target) {
        const std::size_t step = events[index].payload;
        events[index].payload = target - index;
        index += step;
    }
    return target;
}

void MusicEventList::settle(EventCursor& cursor)
{
    if (cursor.index == EventCursor::behindEnd) {
        return;
    }
    const std::size_t index = live(cursor.index);
    cursor.index = index < events.size() ? index : EventCursor::behindEnd;
}

} // namespace volvelle
