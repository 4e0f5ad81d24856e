#include "sequence/SequenceReadingReport.h"

#include "sequence/MIDISequence.h"
#include "sequence/SequenceLog.h"

namespace volvelle {

MusicTrack SequenceReadingReport::tempoTrack()
{
    return sequence.getTempoTrack();
}

void SequenceReadingReport::countFailed(OSStatus status)
{
    logLine("MIDISequence::Fehler: ", status, ". \nDie Anzahl der Spuren konnte nicht ermittelt werden.");
    sequence.checkStatus(status);
}

void SequenceReadingReport::tooManyTracks(std::uint32_t count)
{
    logLine("MIDISequence::Warnung: Die Anzahl der Spuren (", count,
            ") in der Sequenz ist größer als das Maximum: ", sequence.maxTracks);
}

} // namespace volvelle
