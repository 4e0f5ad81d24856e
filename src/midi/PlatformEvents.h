#pragma once

#include "midi/EventNode.h"

namespace volvelle {

// An event of a kind that the system does not know.
class UnknownEvent : public EventNode {
public:
    std::string_view className() const override { return "UnknownEvent"; }
};

// A tempo of the tempo track. Its status byte is 0xFF.
class TempoEvent : public EventNode {
public:
    TempoEvent() : EventNode(0, 0.0, 0xFF) {}

    double value = 120.0; // beats per minute

    void dumpout() const override;

    std::string_view className() const override { return "TempoEvent"; }
};

// Placeholders for extended note, parameter and preset events, whose values the system does not keep.
class AExtendedNoteOnEvent : public EventNode {
public:
    std::string_view className() const override { return "AExtendedNoteOnEvent"; }
};

class AParameterEvent : public EventNode {
public:
    std::string_view className() const override { return "AParameterEvent"; }
};

class AAUPresetEvent : public EventNode {
public:
    std::string_view className() const override { return "AAUPresetEvent"; }
};

} // namespace volvelle
