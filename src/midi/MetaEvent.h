#pragma once

#include "midi/MIDIConstants.h"
#include "midi/UserEvent.h"

namespace volvelle {

// A meta event: a type and a payload. Each class presets the `length` of its kind; the payload stays empty
// until a setter fills it, and a value asked of too short a payload is logged and gives a default.
class MetaEvent : public UserEvent {
public:
    MetaEvent() : MetaEvent(META_SPECIFIC, 0, 0.0) {}

    std::uint8_t type = META_SPECIFIC;

    void dumpout() const override;

    std::string_view className() const override { return "MetaEvent"; }

protected:
    MetaEvent(std::uint8_t type, std::uint32_t presetLength, double position)
        : UserEvent(0, position), type(type)
    {
        length = presetLength;
    }
};

} // namespace volvelle
