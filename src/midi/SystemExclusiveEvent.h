#pragma once

#include "midi/UserEvent.h"

namespace volvelle {

// A system exclusive message; its payload holds the wire bytes.
class SystemExclusiveEvent : public UserEvent {
public:
    SystemExclusiveEvent() : UserEvent(0xF0, 0.0) {}

    static constexpr std::uint8_t start = 0xF0;
    static constexpr std::uint8_t stop = 0xF7;
    std::uint8_t type = 0xF0;

    void dumpout() const override;

    std::string_view className() const override { return "SystemExclusiveEvent"; }
};

} // namespace volvelle
