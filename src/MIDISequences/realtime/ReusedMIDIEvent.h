#pragma once

#include "MIDISequences/AUMIDIEventEx.h"

#include <cstdint>
#include <vector>

namespace volvelle {

// An event that is filled again and again: it has room for MAXBYTES bytes whatever it held before, and its
// length is that of what it holds. [render]
class ReusedMIDIEvent : public AUMIDIEventEx {
public:
    ReusedMIDIEvent();

    std::vector<std::uint8_t> array() const override;

    std::uint32_t length() const override { return used; }

    // Overwrites record and bytes; a record above MAXBYTES changes nothing. [render] No allocation.
    void InitializeWith(const AUMIDIEvent& aumi) override;

private:
    std::uint32_t used = 0; // bytes
};

} // namespace volvelle
