#include "MIDISequences/realtime/AUMIDISequencerEvents.h"

#include "MIDISequences/RenderEventPool.h"
#include "base/Checked.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr std::uint16_t inPlace = 3; // bytes

bool isLarge(const AUMIDIEvent& record)
{
    return record.length > textRenderEvent;
}

AURenderEvent* wholeRecord(const AUMIDIEvent& record, const std::uint8_t* bytes)
{
    return record.length > inPlace ? makeRenderEvent(record, bytes) : nullptr;
}

AUMIDIEvent recordOf(const AUMIDIEvent& record, const std::uint8_t* bytes)
{
    AUMIDIEvent result = record;
    result.next = nullptr;
    std::copy_n(bytes, std::min(record.length, inPlace), result.data);
    return result;
}

} // namespace

AUMIDISequencerEvents::AUMIDISequencerEvents(std::size_t newCapacity, std::size_t newLargeCapacity)
    : capacity(newCapacity), largeCapacity(newLargeCapacity), slots(newCapacity)
{
    for (std::size_t i = 0; i < capacity; ++i) {
        slots[i].turn.store(i, std::memory_order_relaxed);
    }
}

AUMIDISequencerEvents::~AUMIDISequencerEvents()
{
    clear();
}

bool AUMIDISequencerEvents::push(const AUMIDIEvent& record, const std::uint8_t* bytes)
{
    AURenderEvent* const whole = wholeRecord(record, bytes);
    if (tryPush(recordOf(record, bytes), whole)) {
        return true;
    }
    releaseRenderEvents(whole);
    dropped.fetch_add(1, std::memory_order_relaxed);
    return false;
}

void AUMIDISequencerEvents::pushOverOldest(const AUMIDIEvent& record, const std::uint8_t* bytes)
{
    while (isLarge(record) && largeCount.load(std::memory_order_relaxed) >= largeCapacity && dropOldest()) {
    }
    AURenderEvent* const whole = wholeRecord(record, bytes);
    const AUMIDIEvent copy = recordOf(record, bytes);
    if (tryPush(copy, whole)) {
        return;
    }
    dropOldest();
    if (!tryPush(copy, whole)) {
        releaseRenderEvents(whole);
        dropped.fetch_add(1, std::memory_order_relaxed);
    }
}

AURenderEvent* AUMIDISequencerEvents::pop()
{
    std::size_t number = 0;
    Slot* const slot = claim(oldest, 1, number);
    if (slot == nullptr) {
        return nullptr;
    }
    const AUMIDIEvent record = slot->record;
    AURenderEvent* const whole = std::exchange(slot->whole, nullptr);
    largeCount.fetch_sub(isLarge(record) ? 1 : 0, std::memory_order_relaxed);
    slot->turn.store(number + capacity, std::memory_order_release);
    return whole != nullptr ? whole : makeRenderEvent(record, record.data);
}

std::shared_ptr<AUMIDIEventEx> AUMIDISequencerEvents::take()
{
    AURenderEvent* const record = pop();
    if (record == nullptr) {
        return nullptr;
    }
    auto event = std::make_shared<AUMIDIEventEx>(record->MIDI, record->MIDI.length);
    releaseRenderEvents(record);
    return event;
}

void AUMIDISequencerEvents::clear()
{
    while (AURenderEvent* const record = pop()) {
        releaseRenderEvents(record);
    }
}

std::size_t AUMIDISequencerEvents::size() const noexcept
{
    const std::size_t first = oldest.load(std::memory_order_acquire);
    return newest.load(std::memory_order_acquire) - first;
}

AUMIDIEvent AUMIDISequencerEvents::operator[](std::size_t index) const
{
    return slotAt(index).record;
}

std::vector<std::uint8_t> AUMIDISequencerEvents::bytes(std::size_t index) const
{
    const Slot& slot = slotAt(index);
    const AUMIDIEvent& record = slot.whole != nullptr ? slot.whole->MIDI : slot.record;
    const std::uint8_t* const first = renderEventBytes(record);
    return {first, first + record.length};
}

bool AUMIDISequencerEvents::dropOldest()
{
    AURenderEvent* const gone = pop();
    if (gone == nullptr) {
        return false;
    }
    releaseRenderEvents(gone);
    dropped.fetch_add(1, std::memory_order_relaxed);
    return true;
}

bool AUMIDISequencerEvents::tryPush(const AUMIDIEvent& record, AURenderEvent* whole)
{
    std::size_t number = 0;
    Slot* const slot = claim(newest, 0, number);
    if (slot == nullptr) {
        return false;
    }
    largeCount.fetch_add(isLarge(record) ? 1 : 0, std::memory_order_relaxed);
    slot->record = record;
    slot->whole = whole;
    slot->turn.store(number + 1, std::memory_order_release);
    return true;
}

AUMIDISequencerEvents::Slot* AUMIDISequencerEvents::claim(std::atomic<std::size_t>& next, std::size_t ahead,
                                                          std::size_t& number) noexcept
{
    number = next.load(std::memory_order_relaxed);
    for (;;) {
        Slot& slot = slots[number & (capacity - 1)];
        const std::size_t turn = slot.turn.load(std::memory_order_acquire);
        if (turn == number + ahead) {
            if (next.compare_exchange_weak(number, number + 1, std::memory_order_acq_rel,
                                           std::memory_order_relaxed)) {
                return &slot;
            }
        } else if (turn < number + ahead) {
            return nullptr;
        } else {
            number = next.load(std::memory_order_relaxed);
        }
    }
}

const AUMIDISequencerEvents::Slot& AUMIDISequencerEvents::slotAt(std::size_t index) const
{
    if (index >= size()) {
        fatalStop(indexMessage);
    }
    return slots[(oldest.load(std::memory_order_relaxed) + index) & (capacity - 1)];
}

} // namespace volvelle
