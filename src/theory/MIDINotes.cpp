#include "theory/MIDINotes.h"

#include "base/Checked.h"
#include "base/Text.h"
#include "theory/EnumMIDINotes.h"

namespace volvelle {

MIDINotes::MIDINotes()
{
    int octave = -3;
    int noteOfOctave = 0;
    for (int i = 0; i < 128; ++i) {
        MIDINote& note = *checkedAt(notes, i);
        note.index = i;
        if (i % 12 == 0) {
            ++octave;
            noteOfOctave = 0;
        }
        note.octaveIndex = octave;
        note.noteIndex = noteOfOctave++;
        note.name = concat(EnumMIDINotes::getName(i), octave);
    }
}

MIDINotes& MIDINotes::sharedInstance()
{
    static MIDINotes instance;
    return instance;
}

} // namespace volvelle
