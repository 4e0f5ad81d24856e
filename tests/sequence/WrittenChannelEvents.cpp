#include "tests/sequence/WrittenEvent.h"

#include <ostream>

namespace volvelle::test {

using Operation = MusicSequenceOperation;

std::vector<WrittenEvent> writtenChannelEvents()
{
    return {
        {"Note", [](MIDISequence& s) { s.createNoteEvent(8.0, 2, 60, 100, 10, 4.0F); }, 2,
         "MidiNoteEvent 8.0 2: 60 100 10 4.0", "8.0 note 2 60 100 10 4.0",
         Operation::MusicTrackNewMIDINoteEvent, "Es konnte keine neue Note für Kanal 2 erzeugt werden.",
         "foundNoteEvent"},
        {"PolyphonicPressure", [](MIDISequence& s) { s.createPolyphonicPressureEvent(8.0, 3, 61, 70); }, 3,
         "MidiPolyPressureEvent 8.0 3: 61 70", "8.0 message 163 61 70",
         Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein POLY PRESSURE Event für Kanal 3 erzeugt werden.", "foundPolyPressureEvent"},
        {"Controller", [](MIDISequence& s) { s.createControllerEvent(8.0, 3, 7, 99); }, 3,
         "MidiControllerEvent 8.0 3: 7 99", "8.0 message 179 7 99", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein CONTROLLER Eventfür Kanal 3 erzeugt werden.", "foundControllerEvent"},
        {"ProgramChange", [](MIDISequence& s) { s.createProgramChangeEvent(8.0, 3, 40); }, 3,
         "MidiProgramChangeEvent 8.0 3: 40", "8.0 message 195 40 0", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein PROGRAM CHANGE Event für Kanal 3 erzeugt werden.", "foundProgramChangeEvent"},
        {"AfterTouch", [](MIDISequence& s) { s.createAfterTouchEvent(8.0, 1, 41); }, 1,
         "MidiChannelPressureEvent 8.0 1: 41", "8.0 message 209 41 0",
         Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein CHANNEL PRESSURE Event für Kanal 1 erzeugt werden.", "foundChannelPressureEvent"},
        {"PitchWheel", [](MIDISequence& s) { s.createPitchWheelEvent(8.0, 1, 64, 5); }, 1,
         "MidiPitchBendEvent 8.0 1: 64 5", "8.0 message 225 64 5", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein PITCHBEND Event für Kanal 1 erzeugt werden.", "foundPitchBendEvent"},
        {"SysEx", [](MIDISequence& s) { s.createSysExEvent(8.0, 99, {0xF0, 0x7D, 0xF7}); }, 0,
         "SystemExclusiveEvent 8.0 0: 3 [240, 125, 247]", "8.0 raw [240, 125, 247]",
         Operation::MusicTrackNewMIDIRawDataEvent, "Es konnte kein SYSEX Event erzeugt werden.",
         "foundSysExEvent"},
        {"TimeCode", [](MIDISequence& s) { s.createSystemTimeCodeEvent(8.0, 11); }, 0,
         "SystemTimeCodeEvent 8.0 0: 11", "8.0 message 241 11 0", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein TIME CODE Event erzeugt werden.", "foundSystemTimeCodeEvent"},
        {"SongPositionPointer", [](MIDISequence& s) { s.createSystemSongPositionPointerEvent(8.0, 12, 13); },
         0, "SystemSongPositionPointerEvent 8.0 0: 12 13", "8.0 message 242 12 13",
         Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein SONG POSITION POINTER Event erzeugt werden.", "foundSystemSongPositionPointerEvent"},
        {"SongSelect", [](MIDISequence& s) { s.createSystemSongSelectEvent(8.0, 14); }, 0,
         "SystemSongSelectEvent 8.0 0: 14", "8.0 message 243 14 0", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein SONG SELECT Event erzeugt werden.", "foundSystemSongSelectEvent"},
        {"TuneRequest", [](MIDISequence& s) { s.createSystemTuneRequestEvent(8.0); }, 0,
         "SystemTuneRequestEvent 8.0 0:", "8.0 message 246 0 0", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein TUNE REQUEST Event erzeugt werden.", "foundSystemTuneRequestEvent"},
        {"TimingClock", [](MIDISequence& s) { s.createSystemTimingClockEvent(8.0); }, 0,
         "SystemClockEvent 8.0 0:", "8.0 message 248 0 0", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein CLOCK Event erzeugt werden.", "foundSystemClockEvent"},
        {"Start", [](MIDISequence& s) { s.createSystemStartEvent(8.0); }, 0,
         "SystemStartEvent 8.0 0:", "8.0 message 250 0 0", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein START Event erzeugt werden.", "foundSystemStartEvent"},
        {"Continue", [](MIDISequence& s) { s.createSystemContinueEvent(8.0); }, 0,
         "SystemContinueEvent 8.0 0:", "8.0 message 251 0 0", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein CONTINUE Event erzeugt werden.", "foundSystemContinueEvent"},
        {"Stop", [](MIDISequence& s) { s.createSystemStopEvent(8.0); }, 0,
         "SystemStopEvent 8.0 0:", "8.0 message 252 0 0", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein STOP Event erzeugt werden.", "foundSystemStopEvent"},
        {"ActiveSensing", [](MIDISequence& s) { s.createSystemActiveSensingEvent(8.0); }, 0,
         "SystemActiveSensingEvent 8.0 0:", "8.0 message 254 0 0", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein ACTIVE SENSING Event erzeugt werden.", "foundSystemActiveSensingEvent"},
        {"Reset", [](MIDISequence& s) { s.createSystemResetEvent(8.0); }, 0,
         "SystemResetEvent 8.0 0:", "8.0 message 255 0 0", Operation::MusicTrackNewMIDIChannelEvent,
         "Es konnte kein SYSTEM RESET Event erzeugt werden.", "foundSystemResetEvent"},
    };
}

std::vector<WrittenEvent> writtenEvents()
{
    std::vector<WrittenEvent> all = writtenChannelEvents();
    for (WrittenEvent& event : writtenMetaEvents()) {
        all.push_back(std::move(event));
    }
    return all;
}

void PrintTo(const WrittenEvent& event, std::ostream* stream)
{
    *stream << event.name;
}

} // namespace volvelle::test
