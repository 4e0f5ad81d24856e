#include "sequence/SequenceWalkReport.h"

#include "sequence/SequenceLog.h"

namespace volvelle {

WalkReport sequenceWalkReport(MIDISequence& sequence, ReadFailureText readFailure)
{
    return [&sequence, readFailure](WalkFailure failure, OSStatus status) {
        const auto line = [status](std::string_view word, std::string_view text) {
            logLine("MIDISequence::", word, ": ", status, ". \n", text);
        };
        switch (failure) {
        case WalkFailure::makeIterator:
            return line("Fehler", "Es konnte kein Iterator erzeugt werden.");
        case WalkFailure::askCurrent:
            return line("Fehler", "Es konnte nicht festgestellt werden, ob sich Daten in der Spur befinden.");
        case WalkFailure::readEvent:
            return line(readFailure.word, readFailure.text);
        case WalkFailure::askNext:
            line("Warnung", "Das Folge Event konnte nicht ermittelt werden.");
            return sequence.checkStatus(status);
        case WalkFailure::step:
            line("Warnung", "Das Folge Event konnte nicht abgerufen werden (Ende der Spur?).");
            return sequence.checkStatus(status);
        }
    };
}

} // namespace volvelle
