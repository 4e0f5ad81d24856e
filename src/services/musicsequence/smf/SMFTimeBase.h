#pragma once

#include "services/musicsequence/smf/SMFFile.h"
#include "services/musicsequence/smf/SMFWarnings.h"

namespace volvelle {

// Gives the file a division of 1 to 32767 ticks a beat: `division` is the header's, whose high bit tells that
// it counts frames a second.
void applyTimeBase(int division, SMFFile& file, SMFWarnings& warnings);

// Leaves out what stands further away than any music, 100,000,000,000 beats: nothing that counts in samples
// could say where it is.
void limitTime(SMFFile& file, SMFWarnings& warnings);

// Lets each track begin where the one before ends.
void layTracksInARow(SMFFile& file);

} // namespace volvelle
