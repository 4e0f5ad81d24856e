#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace volvelle {

// One event of a phrase. Lists share the object: a change to it is seen through every list that holds it.
class PhraseEvent {
public:
    // The kinds of events; a note-on carries its duration.
    static constexpr int noteOn = 1;
    static constexpr int noteOff = 2;
    static constexpr int controller = 3;
    static constexpr int programChange = 4;
    static constexpr int pitchWheel = 5;
    static constexpr int afterTouch = 6;

    int id = -1;              // within the phrase; the on and the off of one note share it
    int type = 0;             // a kind, 0 not yet set
    std::uint8_t channel = 0; // 0 to 15
    std::uint8_t number = 0;  // note, controller, program, pressure, or the pitch wheel's msb
    double position = 0.0;    // beats from the start of the phrase
    double duration = 0.0;    // beats, of notes
    std::uint8_t value = 100; // velocity, controller value, or the pitch wheel's lsb
    std::uint8_t value2 = 0;  // release velocity
};

using PhraseEvents = std::vector<std::shared_ptr<PhraseEvent>>;

} // namespace volvelle
