#include "sequence/patterns/PatternReadingReport.h"

#include "base/Console.h"
#include "sequence/MIDISequence.h"

namespace volvelle {

MusicTrack PatternReadingReport::tempoTrack()
{
    MusicTrack track;
    if (const OSStatus status = MusicSequenceGetTempoTrack(sequence.musicSequence, track); status != noErr) {
        reportFailure(status, "Die Tempo Spur konnte nicht ermittelt werden.");
        return nullptr;
    }
    return track;
}

void PatternReadingReport::countFailed(OSStatus status)
{
    reportFailure(status, "Die Anzahl der Spuren konnte nicht ermittelt werden.");
}

void PatternReadingReport::tooManyTracks(std::uint32_t /*count*/)
{
    directPrint("Warnung: Die Anzahl der Spuren in der Sequenz ist größer als das Maximum: ",
                sequence.maxTracks);
}

void PatternReadingReport::tempoTrackFollows()
{
    sequence.diagnose("\nDiagnose: Tempo Spur :");
}

void PatternReadingReport::trackFollows(std::uint32_t index)
{
    sequence.diagnose(concat("\nDiagnose: Spur Nr. ", index, ":"));
}

void PatternReadingReport::reportFailure(OSStatus status, std::string_view text, std::source_location place)
{
    directPrint(place.line(), " Fehler: ", status, ". \n", text);
    sequence.checkStatus(status);
}

} // namespace volvelle
