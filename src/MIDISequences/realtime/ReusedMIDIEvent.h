#pragma once

#include "MIDISequences/AUMIDIEventEx.h"

#include <cstdint>
#include <vector>

namespace volvelle {

// An event that is filled again and again: it has room for as many bytes as it was made with whatever it held
// before, and its length is that of what it holds. [render]
class ReusedMIDIEvent : public AUMIDIEventEx {
public:
    explicit ReusedMIDIEvent(std::uint32_t room = MAXBYTES); // bytes

    std::vector<std::uint8_t> array() const override;

    std::uint32_t length() const override { return used; }

    // Overwrites record and bytes; a record that is longer than the room changes nothing. [render] No
    // allocation.
    void InitializeWith(const AUMIDIEvent& aumi) override;

private:
    const std::uint32_t room; // bytes, as the next
    std::uint32_t used = 0;
};

} // namespace volvelle
