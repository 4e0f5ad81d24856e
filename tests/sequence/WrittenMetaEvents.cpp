#include "tests/sequence/WrittenEvent.h"

namespace volvelle::test {

namespace {

// All go to track 0 and fail by one operation.
WrittenEvent meta(std::string name, std::function<void(MIDISequence&)> create, std::string node,
                  std::string record, std::string failure, std::string call)
{
    return {"Meta" + name,      std::move(create), 0,
            std::move(node),    std::move(record), MusicSequenceOperation::MusicTrackNewMetaEvent,
            std::move(failure), std::move(call)};
}

} // namespace

std::vector<WrittenEvent> writtenMetaEvents()
{
    return {
        meta(
            "SequenceNumber", [](MIDISequence& s) { s.createMetaSequenceNumberEvent(8.0, 513); },
            "MetaSequenceNumberEvent 8.0 0: 0 2 [1, 2]", "8.0 meta 0 [1, 2]",
            "Es konnte kein META TRACKNUMBER Event erzeugt werden.", "foundMetaSequenceNumberEvent"),
        meta(
            "Text", [](MIDISequence& s) { s.createMetaTextEvent(8.0, "A"); }, "MetaTextEvent 8.0 0: 1 1 [65]",
            "8.0 meta 1 [65]", "Es konnte kein META DESCRIPTION Event erzeugt werden.", "foundMetaTextEvent"),
        meta(
            "Copyright", [](MIDISequence& s) { s.createMetaCopyrightEvent(8.0, "B"); },
            "MetaCopyrightEvent 8.0 0: 2 1 [66]", "8.0 meta 2 [66]",
            "Es konnte kein META COPYRIGHT Event erzeugt werden.", "foundMetaCopyrightEvent"),
        meta(
            "TrackName", [](MIDISequence& s) { s.createMetaTrackNameEvent(8.0, "Ä"); },
            "MetaTrackNameEvent 8.0 0: 3 2 [195, 132]", "8.0 meta 3 [195, 132]",
            "Es konnte kein META TRACKNAME Event erzeugt werden.", "foundMetaTrackNameEvent"),
        meta(
            "InstrumentName", [](MIDISequence& s) { s.createMetaInstrumentNameEvent(8.0, "D"); },
            "MetaInstrumentNameEvent 8.0 0: 4 1 [68]", "8.0 meta 4 [68]",
            "Es konnte kein META INSTRUMENTNAME Event erzeugt werden.", "foundMetaInstrumentNameEvent"),
        meta(
            "Lyrics", [](MIDISequence& s) { s.createMetaLyricsEvent(8.0, "E"); },
            "MetaLyricsEvent 8.0 0: 5 1 [69]", "8.0 meta 5 [69]",
            "Es konnte kein META LYRICS Event erzeugt werden.", "foundMetaLyricsEvent"),
        meta(
            "Marker", [](MIDISequence& s) { s.createMetaMarkerEvent(8.0, "F"); },
            "MetaMarkerEvent 8.0 0: 6 1 [70]", "8.0 meta 6 [70]",
            "Es konnte kein META TEXTMARKER Event erzeugt werden.", "foundMetaMarkerEvent"),
        meta(
            "CuePoint", [](MIDISequence& s) { s.createMetaCuePointEvent(8.0, "G"); },
            "MetaCuePointEvent 8.0 0: 7 1 [71]", "8.0 meta 7 [71]",
            "Es konnte kein META CUEPOINT Event erzeugt werden.", "foundMetaCuePointEvent"),
        meta(
            "ProgramName", [](MIDISequence& s) { s.createMetaProgramNameEvent(8.0, "H"); },
            "MetaProgramNameEvent 8.0 0: 8 1 [72]", "8.0 meta 8 [72]",
            "Es konnte kein META PROGRAMNAME Event erzeugt werden.", "foundMetaProgramNameEvent"),
        meta(
            "DeviceName", [](MIDISequence& s) { s.createMetaDeviceNameEvent(8.0, ""); },
            "MetaDeviceNameEvent 8.0 0: 9 0 []", "8.0 meta 9 []",
            "Es konnte kein META DEVICENAME Event erzeugt werden.", "foundMetaDeviceNameEvent"),
        meta(
            "ChannelPrefix", [](MIDISequence& s) { s.createMetaChannelPrefixEvent(8.0, 3); },
            "MetaChannelPrefixEvent 8.0 0: 32 1 [3]", "8.0 meta 32 [3]",
            "Es konnte kein META CANNELPREFIX Event erzeugt werden.", "foundMetaChannelPrefixEvent"),
        meta(
            "MidiPort", [](MIDISequence& s) { s.createMetaMidiPortEvent(8.0, 4); },
            "MetaMidiPortEvent 8.0 0: 33 1 [4]", "8.0 meta 33 [4]",
            "Es konnte kein META MIDIPORT Event erzeugt werden.", "foundMetaMidiPortEvent"),
        meta(
            "EndOfTrack", [](MIDISequence& s) { s.createMetaEndOfTrackEvent(8.0); },
            "MetaEndOfTrackEvent 8.0 0: 47 0 []", "8.0 meta 47 []",
            "Es konnte kein META ENDOFTRACK Event erzeugt werden.", "foundMetaEndOfTrackEvent"),
        meta(
            "SetTempo", [](MIDISequence& s) { s.createMetaSetTempoEvent(8.0, 7, 161, 32); },
            "MetaSetTempoEvent 8.0 0: 81 3 [7, 161, 32]", "8.0 meta 81 [7, 161, 32]",
            "Es konnte kein META SETTEMPO Event erzeugt werden.", "foundMetaSetTempoEvent"),
        meta(
            "SMTPOffset", [](MIDISequence& s) { s.createMetaSMTPOffsetEvent(8.0, 1, 2, 3, 4, 5); },
            "MetaSMTPOffsetEvent 8.0 0: 84 5 [1, 2, 3, 4, 5]", "8.0 meta 84 [1, 2, 3, 4, 5]",
            "Es konnte kein META SMTPOFFSET Event erzeugt werden.", "foundMetaSMTPOffsetEvent"),
        meta(
            "TimeSignature", [](MIDISequence& s) { s.createMetaTimeSignatureEvent(8.0, 3, 2, 24, 8); },
            "MetaTimeSignatureEvent 8.0 0: 88 4 [3, 2, 24, 8]", "8.0 meta 88 [3, 2, 24, 8]",
            "Es konnte kein META TIMESIGNATURE Event erzeugt werden.", "foundMetaTimeSignatureEvent"),
        meta(
            "KeySignature", [](MIDISequence& s) { s.createMetaKeySignatureEvent(8.0, 254, 1); },
            "MetaKeySignatureEvent 8.0 0: 89 2 [254, 1]", "8.0 meta 89 [254, 1]",
            "Es konnte kein META KEYSIGNATURE Event erzeugt werden.", "foundMetaKeySignatureEvent"),
        meta(
            "SequencerSpecific", [](MIDISequence& s) { s.createMetaSequencerSpecificEvent(8.0, 99, {9, 8}); },
            "MetaSequencerSpecificEvent 8.0 0: 127 2 [9, 8]", "8.0 meta 127 [9, 8]",
            "Es konnte kein META SEQUENCERSPECIFIC Event erzeugt werden.", "foundMetaSequencerSpecificEvent"),
    };
}

} // namespace volvelle::test
