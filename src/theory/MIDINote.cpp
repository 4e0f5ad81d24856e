#include "theory/MIDINote.h"

#include "base/Checked.h"
#include "theory/EnumMIDINotes.h"

namespace volvelle {

bool MIDINote::isSharp() const
{
    return EnumMIDINotes::isBlackKey(name);
}

void MIDINote::transpose(int value)
{
    constexpr int noteCount = 128;
    if (value <= -noteCount || value >= noteCount) {
        return;
    }
    index = checkedAdd(index, value);
    if (index < 0) {
        index += noteCount;
    } else if (index >= noteCount) {
        index -= noteCount;
    }
    noteIndex = index % 12;
    octaveIndex = index / 12;
    name = EnumMIDINotes::getName(index);
}

} // namespace volvelle
