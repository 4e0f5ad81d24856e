#include "services/musicsequence/MusicEventList.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr auto isMarked = [](const MusicEvent& event) { return event.isDeleted(); };
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
        settle(*cursor);
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

// Deleted events may not lead past what is about to be sorted in after them.
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

// Deletions end here: none is left past the last live event, and they are taken out once they are many.
void MusicEventList::settleDeletions()
{
    std::size_t count = events.size();
    while (count > 0 && events[count - 1].isDeleted()) {
        --count;
    }
    markedCount -= events.size() - count;
    shorten(count);
    if (markedCount > 32 && markedCount > events.size() / 2) {
        compact();
    }
    compactArena();
}

// The one place where the list gets shorter: what stood past the new end is after it for good.
void MusicEventList::shorten(std::size_t count)
{
    if (count == events.size()) {
        return;
    }
    events.erase(events.begin() + static_cast<std::ptrdiff_t>(count), events.end());
    sortedCount = std::min(sortedCount, count);
    for (EventCursor* cursor : cursors) {
        cursor->index = cursor->index < count ? cursor->index : EventCursor::behindEnd;
    }
}

void MusicEventList::compact()
{
    if (markedCount == 0) {
        return;
    }
    moveCursorsForCompaction();
    const auto kept = std::remove_if(events.begin(), events.end(), isMarked);
    markedCount = 0;
    shorten(static_cast<std::size_t>(kept - events.begin()));
}

void MusicEventList::moveCursorsForCompaction()
{
    for (EventCursor* cursor : cursors) {
        settle(*cursor);
    }
    std::vector<EventCursor*> waiting = cursors;
    std::ranges::sort(waiting, {}, &EventCursor::index);
    std::size_t passed = 0;
    std::size_t marked = 0;
    for (EventCursor* cursor : waiting) {
        for (; cursor->index != EventCursor::behindEnd && passed < cursor->index; ++passed) {
            marked += events[passed].isDeleted() ? 1U : 0U;
        }
        cursor->index -= cursor->index == EventCursor::behindEnd ? 0 : marked;
    }
}

void MusicEventList::compactArena()
{
    if (wastedWords <= std::max(events.size(), arena.wordCount() / 2)) {
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
