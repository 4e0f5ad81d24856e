#pragma once

#include <string>

namespace volvelle {

// A single note by name. Plain data.
class MIDINote {
public:
    virtual ~MIDINote() = default;

    int index = -1;       // note number
    int octaveIndex = -3; // octave of the note
    int noteIndex = 0;    // pitch class, 0 to 11
    std::string name = "C";

    virtual bool isSharp() const;

    // Adds `value` to the note number, which wraps within 128 notes; a value of 128 or more either way
    // changes nothing. Octaves are counted from 0. A note number of 12 or above leaves the name empty.
    virtual void transpose(int value);
};

} // namespace volvelle
