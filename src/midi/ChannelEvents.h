#pragma once

#include "midi/EventNode.h"
#include "midi/MIDIConstants.h"
#include "midi/PitchBend.h"

// The events of a MIDI channel.
namespace volvelle {

class MidiNoteEvent : public EventNode {
public:
    MidiNoteEvent() : EventNode(STATUS_NOTEON, 0.0, 0) {}

    MidiNoteEvent(double position, float duration, std::uint8_t channel, std::uint8_t note,
                  std::uint8_t velocity, std::uint8_t release)
        : EventNode(STATUS_NOTEON, position, channel),
          duration(duration),
          number(note),
          velocity(velocity),
          releaseVelocity(release)
    {
    }

    float duration = 0.0F; // beats
    std::uint8_t number = 0;
    std::uint8_t velocity = 0;
    std::uint8_t releaseVelocity = 0;

    void dumpout() const override;

    std::string_view className() const override { return "MidiNoteEvent"; }
};

class MidiPolyPressureEvent : public EventNode {
public:
    MidiPolyPressureEvent() : EventNode(STATUS_PPRESSURE, 0.0, 0) {}

    MidiPolyPressureEvent(double position, std::uint8_t channel, std::uint8_t number, std::uint8_t value)
        : EventNode(STATUS_PPRESSURE, position, channel), number(number), value(value)
    {
    }

    std::uint8_t number = 0;
    std::uint8_t value = 0;

    std::string_view className() const override { return "MidiPolyPressureEvent"; }
};

class MidiControllerEvent : public EventNode {
public:
    MidiControllerEvent() : EventNode(STATUS_CONTROLLER, 0.0, 0) {}

    MidiControllerEvent(double position, std::uint8_t channel, std::uint8_t number, std::uint8_t value)
        : EventNode(STATUS_CONTROLLER, position, channel), number(number), value(value)
    {
    }

    std::uint8_t number = 0;
    std::uint8_t value = 0;

    std::string_view className() const override { return "MidiControllerEvent"; }
};

class MidiProgramChangeEvent : public EventNode {
public:
    MidiProgramChangeEvent() : EventNode(STATUS_PROGRAM, 0.0, 0) {}

    MidiProgramChangeEvent(double position, std::uint8_t channel, std::uint8_t value)
        : EventNode(STATUS_PROGRAM, position, channel), value(value)
    {
    }

    std::uint8_t value = 0;

    std::string_view className() const override { return "MidiProgramChangeEvent"; }
};

class MidiChannelPressureEvent : public EventNode {
public:
    MidiChannelPressureEvent() : EventNode(STATUS_CPRESSURE, 0.0, 0) {}

    MidiChannelPressureEvent(double position, std::uint8_t channel, std::uint8_t value)
        : EventNode(STATUS_CPRESSURE, position, channel), value(value)
    {
    }

    std::uint8_t value = 0;

    std::string_view className() const override { return "MidiChannelPressureEvent"; }
};

class MidiPitchBendEvent : public EventNode {
public:
    MidiPitchBendEvent() : EventNode(STATUS_PITCHBEND, 0.0, 0) {}

    MidiPitchBendEvent(double position, std::uint8_t channel, const PitchBend& bend)
        : EventNode(STATUS_PITCHBEND, position, channel), bend(bend)
    {
    }

    PitchBend bend;

    std::string_view className() const override { return "MidiPitchBendEvent"; }
};

} // namespace volvelle
