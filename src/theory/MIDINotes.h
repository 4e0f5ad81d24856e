#pragma once

#include "theory/ChordRule.h"
#include "theory/ChordRules.h"
#include "theory/EnumMIDIChords.h"
#include "theory/EnumMIDINotes.h"
#include "theory/MIDINote.h"
#include "theory/MIDIOctave.h"

#include <memory>
#include <vector>

namespace volvelle {

// The 128 notes; note 60 stands in octave 3. Making one is a fatal stop: it names notes that are not there
// yet.
class MIDINotes {
public:
    MIDINotes();
    virtual ~MIDINotes() = default;

    // Made at the first call.
    static MIDINotes& sharedInstance();

    std::vector<std::shared_ptr<MIDINote>> notes;
};

} // namespace volvelle
