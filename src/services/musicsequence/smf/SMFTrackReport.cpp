#include "services/musicsequence/smf/SMFTrackReport.h"

#include "base/Text.h"

namespace volvelle {

void SMFTrackReport::tell(std::size_t number, SMFWarnings& warnings) const
{
    const std::string track = concat("Track ", number);
    if (endsEarly) {
        warnings.add(concat(track, " ends early; ", counted(notes, "note was read.", "notes were read.")));
    }
    if (hasNoEnd) {
        warnings.add(concat(track, " has no end mark; it ends with its last event."));
    }
    if (hasWrongLength) {
        warnings.add(concat(track, " has another length than the file says."));
    }
    if (hasEventsBehindEnd) {
        warnings.add(concat(track, " goes on behind its end mark; what stands there was left out."));
    }
    if (damaged > 0) {
        warnings.add(concat(
            track, ": ", counted(damaged, "damaged event was left out.", "damaged events were left out.")));
    }
    if (longNumbers > 0) {
        warnings.add(concat(track, ": ",
                            counted(longNumbers, "number was too large and was cut.",
                                    "numbers were too large and were cut.")));
    }
    if (badTempos > 0) {
        warnings.add(concat(track, ": ",
                            counted(badTempos, "tempo without a value was left out.",
                                    "tempos without a value were left out.")));
    }
    if (orphanOffs > 0) {
        warnings.add(concat(track, ": ",
                            counted(orphanOffs, "note-off without a note was left out.",
                                    "note-offs without a note were left out.")));
    }
    if (openNotes > 0) {
        warnings.add(concat(track, ": ",
                            counted(openNotes, "note without an end was ended with the track.",
                                    "notes without an end were ended with the track.")));
    }
}

} // namespace volvelle
