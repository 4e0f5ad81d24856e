#pragma once

#include <cstdint>

namespace volvelle {

// Listens to the sections of a MIDIPatternSequence, inside the operation that made or deleted one. A listener
// takes what it needs: the others do nothing. Made into a std::shared_ptr, since a grid holds it weakly.
class PatternSequenceDelegate {
public:
    virtual ~PatternSequenceDelegate() = default;

    // `count` is the new count of sections.
    virtual void sectionCreated(std::uint16_t count);
    // `index` is where the section stood.
    virtual void sectionDeleted(std::uint16_t index);
};

} // namespace volvelle
