#pragma once

#include <cstddef>
#include <cstdint>

// The records in which realtime code moves MIDI: linked lists in the order of their sample times.
// [any]
namespace volvelle {

union AURenderEvent;

using AURenderEventType = std::uint8_t;
inline constexpr AURenderEventType AURenderEventMIDI = 8;
inline constexpr AURenderEventType AURenderEventMIDISysEx = 9;

// What all records begin with.
struct AURenderEventHeader {
    AURenderEvent* next = nullptr;
    std::int64_t eventSampleTime = 0; // samples
    AURenderEventType eventType = 0;
    std::uint8_t reserved = 0;
};

// A MIDI message. A record in a larger block goes on past `data`: `length` tells how far.
struct AUMIDIEvent {
    AURenderEvent* next = nullptr;
    std::int64_t eventSampleTime = 0; // samples
    AURenderEventType eventType = 0;
    std::uint8_t reserved = 0;
    std::uint16_t length = 0; // bytes of MIDI
    std::uint8_t cable = 0;
    std::uint8_t data[3] = {};
};

static_assert(sizeof(AUMIDIEvent) == 24);
static_assert(offsetof(AUMIDIEvent, eventSampleTime) == 8);
static_assert(offsetof(AUMIDIEvent, eventType) == 16);
static_assert(offsetof(AUMIDIEvent, length) == 18);
static_assert(offsetof(AUMIDIEvent, cable) == 20);
static_assert(offsetof(AUMIDIEvent, data) == 21);

// Any record of a list.
union AURenderEvent {
    AURenderEvent() : head() {}

    AURenderEventHeader head;
    AUMIDIEvent MIDI;
};

} // namespace volvelle
