#include "services/musicsequence/MusicEventList.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace volvelle {

void MusicEventList::append(double time, MusicEventType type, std::uint32_t size, const void* record,
                            std::size_t recordSize)
{
    MusicEvent event{time, type, size, 0};
    if (event.isInline()) {
        std::memcpy(&event.payload, record, recordSize);
    } else {
        event.payload = arena.add(size, record, recordSize);
    }
    add(event);
}

void* MusicEventList::appendBlank(double time, MusicEventType type, std::uint32_t size)
{
    const bool isInline = size <= MusicEvent::inlineRoom;
    add({time, type, size, isInline ? 0 : arena.add(size)});
    return isInline ? &events.back().payload : arena.at(events.back().payload);
}

void MusicEventList::exchange(MusicEventList& other)
{
    std::swap(events, other.events);
    std::swap(arena, other.arena);
    std::swap(sortedCount, other.sortedCount);
    std::swap(markedCount, other.markedCount);
    std::swap(wastedWords, other.wastedWords);
    for (MusicEventList* list : {this, &other}) {
        for (EventCursor* cursor : list->cursors) {
            cursor->index = EventCursor::behindEnd;
        }
    }
}

std::span<const MusicEvent> MusicEventList::all()
{
    order();
    compact();
    return events;
}

std::span<const MusicEvent> MusicEventList::allWithMarked()
{
    order();
    return events;
}

void MusicEventList::eraseRun(std::size_t first, std::size_t last)
{
    for (std::size_t i = live(first); i < last; i = live(i + 1)) {
        mark(events[i]);
    }
    settleDeletions();
}

void MusicEventList::shiftFrom(std::size_t first, double by, double floor)
{
    for (std::size_t i = first; i < events.size(); ++i) {
        events[i].time = std::max(floor, events[i].time + by);
    }
}

void MusicEventList::moveRun(std::size_t first, std::size_t last, double by)
{
    const std::size_t count = events.size();
    for (EventCursor* cursor : cursors) {
        if (cursor->index >= first && cursor->index < last) {
            cursor->index += count - last;
        } else if (cursor->index >= last && cursor->index < count) {
            cursor->index -= last - first;
        }
    }
    for (std::size_t i = first; i < last; ++i) {
        events[i].time += by;
    }
    const auto begin = events.begin();
    std::rotate(begin + static_cast<std::ptrdiff_t>(first), begin + static_cast<std::ptrdiff_t>(last),
                events.end());
    sortedCount = count - (last - first);
    order();
}

void MusicEventList::addCursor(EventCursor& cursor)
{
    order();
    cursors.push_back(&cursor);
    settle(cursor);
}

void MusicEventList::removeCursor(EventCursor& cursor)
{
    const auto found = std::find(cursors.rbegin(), cursors.rend(), &cursor);
    if (found != cursors.rend()) {
        *found = cursors.back();
        cursors.pop_back();
    }
}

const MusicEvent* MusicEventList::current(EventCursor& cursor)
{
    order();
    settle(cursor);
    return cursor.index == EventCursor::behindEnd ? nullptr : &events[cursor.index];
}

bool MusicEventList::hasNext(EventCursor& cursor)
{
    return current(cursor) != nullptr && cursor.index + 1 < events.size();
}

bool MusicEventList::next(EventCursor& cursor)
{
    if (current(cursor) == nullptr) {
        return false;
    }
    ++cursor.index;
    settle(cursor);
    return cursor.index != EventCursor::behindEnd;
}

void MusicEventList::erase(EventCursor& cursor)
{
    if (current(cursor) == nullptr) {
        return;
    }
    mark(events[cursor.index]);
    settleDeletions();
    settle(cursor);
}

} // namespace volvelle
