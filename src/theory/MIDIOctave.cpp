#include "theory/MIDIOctave.h"

#include "base/Checked.h"
#include "theory/EnumMIDINotes.h"

namespace volvelle {

MIDIOctave::MIDIOctave()
{
    for (int i = 0; i < 12; ++i) {
        MIDINote& note = *checkedAt(notes, i);
        note.index = i;
        note.name = EnumMIDINotes::getName(i);
        note.octaveIndex = 2;
        note.noteIndex = i;
    }
}

} // namespace volvelle
