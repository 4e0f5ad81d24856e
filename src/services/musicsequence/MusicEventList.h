#pragma once

#include "services/musicsequence/EventCursor.h"
#include "services/musicsequence/MusicEvent.h"
#include "services/musicsequence/PayloadArena.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace volvelle {

// The events of a track by time, equal times in the order of entry. Additions that are in order cost nothing;
// others are sorted in at the next reading. Deletions mark, and compact once half of the events are marked;
// the last event is never a marked one. Every reading operation sorts first. [any]
class MusicEventList {
public:
    MusicEventList() = default;
    MusicEventList(const MusicEventList&) = delete;
    MusicEventList& operator=(const MusicEventList&) = delete;

    // Adds an event with a record of `size` bytes, 0 after the `recordSize` bytes that are copied. `record`
    // may stand in this list.
    void append(double time, MusicEventType type, std::uint32_t size, const void* record,
                std::size_t recordSize);

    // Adds an event whose record of up to eight bytes stands in `payload`.
    void appendShort(double time, MusicEventType type, std::uint32_t size, std::uint64_t payload)
    {
        add({time, type, size, payload});
    }

    // Adds an event whose record is 0; the caller fills it before the next change.
    void* appendBlank(double time, MusicEventType type, std::uint32_t size);

    // Prepares for so many events, and for records of so many words that do not stand in their events.
    void reserve(std::size_t count, std::size_t words)
    {
        events.reserve(count);
        arena.reserve(words);
    }

    // Exchanges the events with those of `other`; the cursors of both lists then stand past the end.
    void exchange(MusicEventList& other);

    // All events that live, none of them marked.
    std::span<const MusicEvent> all();

    // All events, the marked ones among them; a marked one keeps its time.
    std::span<const MusicEvent> allWithMarked();

    // The record of an event of this list, or of a copy of it.
    const void* payload(const MusicEvent& event) const
    {
        return event.isInline() ? &event.payload : arena.at(event.payload);
    }

    // MARK: Runs of events, by the indices of allWithMarked()

    void eraseRun(std::size_t first, std::size_t last);

    // Adds `by` to the times from `first` on, but lets none come before `floor`.
    void shiftFrom(std::size_t first, double by, double floor);

    // Adds `by` to the times of the run, which then stands after what stands there. By the indices of all().
    void moveRun(std::size_t first, std::size_t last, double by);

    // MARK: Cursors

    // A cursor that was added is kept up to date until it is removed.
    void addCursor(EventCursor& cursor);
    void removeCursor(EventCursor& cursor);

    // The event under the cursor, null past the end.
    const MusicEvent* current(EventCursor& cursor);
    bool hasNext(EventCursor& cursor);
    // False where no event follows; the cursor then stands past the end.
    bool next(EventCursor& cursor);
    // Deletes the event under the cursor.
    void erase(EventCursor& cursor);

private:
    void add(const MusicEvent& event)
    {
        const bool isInOrder =
            sortedCount == events.size() && (events.empty() || events.back().time <= event.time);
        events.push_back(event);
        sortedCount += isInOrder ? 1U : 0U;
    }

    void order();
    void sortTail();
    void moveCursorsForTail();
    void unskipFrom(std::size_t index);
    void settleDeletions();
    void compact();
    void moveCursorsForCompaction();
    void compactArena();
    void shorten(std::size_t count);
    void mark(MusicEvent& event);
    std::size_t live(std::size_t index);
    void settle(EventCursor& cursor);

    std::vector<MusicEvent> events;
    PayloadArena arena;
    std::size_t sortedCount = 0; // the events in front that stand by time
    std::size_t markedCount = 0;
    std::size_t wastedWords = 0; // of the arena, by deletions
    std::vector<EventCursor*> cursors;
};

} // namespace volvelle
