#pragma once

#include "MIDISequences/AUMIDIEventEx.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace volvelle {

// A queue of fixed size of records that keep all their bytes: up to three in place, more in a record of the
// pool. Several threads may put in and take out at once. [any] No lock, and no memory for up to three bytes.
class AUMIDISequencerEvents {
public:
    // `newCapacity` is a power of two.
    explicit AUMIDISequencerEvents(std::size_t newCapacity) : AUMIDISequencerEvents(newCapacity, newCapacity)
    {
    }

    AUMIDISequencerEvents(std::size_t newCapacity, std::size_t newLargeCapacity);
    ~AUMIDISequencerEvents();
    AUMIDISequencerEvents(const AUMIDISequencerEvents&) = delete;
    AUMIDISequencerEvents& operator=(const AUMIDISequencerEvents&) = delete;

    const std::size_t capacity;
    const std::size_t largeCapacity;       // records above textRenderEvent bytes that pushOverOldest() keeps
    std::atomic<std::uint64_t> dropped{0}; // records that found no room, or that made room

    // A copy of the record with `record.length` bytes from `bytes`. Where there is no room it is dropped.
    bool push(const AUMIDIEvent& record, const std::uint8_t* bytes);

    // The same, but where there is no room the oldest go, for a large record as far as the first large one;
    // the new one, where they are just being taken out.
    void pushOverOldest(const AUMIDIEvent& record, const std::uint8_t* bytes);

    // The oldest as a record of a chain, which the caller owns; null where there is none.
    AURenderEvent* pop();

    // The oldest with all its bytes; null where there is none.
    std::shared_ptr<AUMIDIEventEx> take();

    void clear();

    std::size_t size() const noexcept;

    bool empty() const noexcept { return size() == 0; }

    // A record by its place from the oldest on, with its first three bytes, and all its bytes. A place that
    // holds none is a fatal stop. While nothing is taken out.
    AUMIDIEvent operator[](std::size_t index) const;
    std::vector<std::uint8_t> bytes(std::size_t index) const;

private:
    struct Slot {
        std::atomic<std::size_t> turn{0}; // the record's number: to be put in; one more: to be taken out
        AUMIDIEvent record;
        AURenderEvent* whole = nullptr; // owned; for more than three bytes
    };

    bool dropOldest();
    bool tryPush(const AUMIDIEvent& record, AURenderEvent* whole);
    Slot* claim(std::atomic<std::size_t>& next, std::size_t ahead, std::size_t& number) noexcept;
    const Slot& slotAt(std::size_t index) const;

    std::vector<Slot> slots;
    std::atomic<std::size_t> largeCount{0};
    std::atomic<std::size_t> newest{0}; // records that came in since the beginning
    std::atomic<std::size_t> oldest{0}; // records that went out since the beginning
};

} // namespace volvelle
