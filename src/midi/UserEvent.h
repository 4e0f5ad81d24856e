#pragma once

#include "midi/EventNode.h"

#include <vector>

namespace volvelle {

// An event with a payload of any length.
class UserEvent : public EventNode {
public:
    UserEvent() : UserEvent(0xFF, 0.0) {}

    std::uint32_t length = 0; // as told by the last setter, or preset by the class
    std::vector<std::uint8_t> data;

    using EventNode::toHex;

    // Each byte as two hexadecimal digits, filled up with a blank, and a blank after each.
    virtual std::string toHex() const;

    // Each byte as the character of that number.
    virtual std::string toText() const;

    virtual std::vector<std::uint8_t> getData() const;

    // Appends `dat` to what `data` holds and sets `length` to the new size. `len` is not used.
    virtual void setData(std::uint32_t len, std::vector<std::uint8_t> dat);

    // The size of `data`, not the field `length`.
    virtual int getLength() const;

    void dumpout() const override;

    std::string_view className() const override { return "UserEvent"; }

protected:
    UserEvent(std::uint8_t statusMask, double position) : EventNode(statusMask, position, 0) {}

    // Makes `bytes` the payload, and `length` its size.
    void replaceData(std::vector<std::uint8_t> bytes);

    // True where the payload has at least `count` bytes; otherwise logs `message`.
    bool holds(std::size_t count, std::string_view message) const;

    void dumpPayload() const;
};

} // namespace volvelle
