#pragma once

#include "sequence/EventKind.h"
#include "sequence/MIDISequence.h"

#include <tuple>

namespace volvelle {

// The one table of all kinds of events: a new kind is a row. [any]
class EventKinds {
    using S = MIDISequence;
    using D = SequenceFoundDelegate;

    static constexpr EventTarget own = EventTarget::ownTrack;
    static constexpr EventTarget first = EventTarget::firstTrack;
    static constexpr EventTarget tempo = EventTarget::tempoTrack;

    static constexpr std::tuple table{
        EventKind{STATUS_NOTEON, own, "keine neue Note für Kanal", &S::createNoteMessage, &D::foundNoteEvent},
        EventKind{STATUS_PPRESSURE, own, "kein POLY PRESSURE Event für Kanal",
                  &S::createPolyphonicPressureMessage, &D::foundPolyPressureEvent},
        EventKind{STATUS_CONTROLLER, own, "kein CONTROLLER Eventfür Kanal", &S::createControllerMessage,
                  &D::foundControllerEvent},
        EventKind{STATUS_PROGRAM, own, "kein PROGRAM CHANGE Event für Kanal", &S::createProgramChangeMessage,
                  &D::foundProgramChangeEvent},
        EventKind{STATUS_CPRESSURE, own, "kein CHANNEL PRESSURE Event für Kanal", &S::createAfterTouchMessage,
                  &D::foundChannelPressureEvent},
        EventKind{STATUS_PITCHBEND, own, "kein PITCHBEND Event für Kanal", &S::createPitchWheelMessage,
                  &D::foundPitchBendEvent},
        EventKind{STATUS_SYSEX, own, "kein SYSEX Event", &S::createSysExMessage, &D::foundSysExEvent},
        EventKind{STATUS_TIMECODE, first, "kein TIME CODE Event", &S::createSystemTimeCodeMessage,
                  &D::foundSystemTimeCodeEvent},
        EventKind{STATUS_SONGPOSITION, first, "kein SONG POSITION POINTER Event",
                  &S::createSystemSongPositionPointerMessage, &D::foundSystemSongPositionPointerEvent},
        EventKind{STATUS_SONGSELECT, first, "kein SONG SELECT Event", &S::createSystemSongSelectMessage,
                  &D::foundSystemSongSelectEvent},
        EventKind{STATUS_TUNEREQUEST, first, "kein TUNE REQUEST Event", &S::createSystemTuneRequestMessage,
                  &D::foundSystemTuneRequestEvent},
        EventKind{STATUS_TIMINGCLOCK, first, "kein CLOCK Event", &S::createSystemTimingClockMessage,
                  &D::foundSystemClockEvent},
        EventKind{STATUS_START, first, "kein START Event", &S::createSystemStartMessage,
                  &D::foundSystemStartEvent},
        EventKind{STATUS_CONTINUE, first, "kein CONTINUE Event", &S::createSystemContinueMessage,
                  &D::foundSystemContinueEvent},
        EventKind{STATUS_STOP, first, "kein STOP Event", &S::createSystemStopMessage,
                  &D::foundSystemStopEvent},
        EventKind{STATUS_ACTIVESENSING, first, "kein ACTIVE SENSING Event",
                  &S::createSystemActiveSensingMessage, &D::foundSystemActiveSensingEvent},
        EventKind{STATUS_RESET, first, "kein SYSTEM RESET Event", &S::createSystemResetMessage,
                  &D::foundSystemResetEvent},

        EventKind{META_SEQUENCENUMBER, first, "kein META TRACKNUMBER Event",
                  &S::createMetaSequenceNumberMessage, &D::foundMetaSequenceNumberEvent},
        EventKind{META_TEXT, first, "kein META DESCRIPTION Event", &S::createMetaTextMessage,
                  &D::foundMetaTextEvent},
        EventKind{META_COPYRIGHT, first, "kein META COPYRIGHT Event", &S::createMetaCopyrightMessage,
                  &D::foundMetaCopyrightEvent},
        EventKind{META_TRACKNAME, own, "kein META TRACKNAME Event", &S::createMetaTrackNameMessage,
                  &D::foundMetaTrackNameEvent},
        EventKind{META_INSTRUMENTNAME, own, "kein META INSTRUMENTNAME Event",
                  &S::createMetaInstrumentNameMessage, &D::foundMetaInstrumentNameEvent},
        EventKind{META_LYRICS, first, "kein META LYRICS Event", &S::createMetaLyricsMessage,
                  &D::foundMetaLyricsEvent},
        EventKind{META_MARKER, first, "kein META TEXTMARKER Event", &S::createMetaMarkerMessage,
                  &D::foundMetaMarkerEvent},
        EventKind{META_CUEPOINT, first, "kein META CUEPOINT Event", &S::createMetaCuePointMessage,
                  &D::foundMetaCuePointEvent},
        EventKind{META_PROGRAMNAME, own, "kein META PROGRAMNAME Event", &S::createMetaProgramNameMessage,
                  &D::foundMetaProgramNameEvent},
        EventKind{META_DEVICENAME, own, "kein META DEVICENAME Event", &S::createMetaDeviceNameMessage,
                  &D::foundMetaDeviceNameEvent},
        EventKind{META_CHANNELPREFIX, own, "kein META CANNELPREFIX Event", &S::createMetaChannelPrefixMessage,
                  &D::foundMetaChannelPrefixEvent},
        EventKind{META_MIDIPORT, first, "kein META MIDIPORT Event", &S::createMetaMidiPortMessage,
                  &D::foundMetaMidiPortEvent},
        EventKind{META_EOT, own, "kein META ENDOFTRACK Event", &S::createMetaEndOfTrackMessage,
                  &D::foundMetaEndOfTrackEvent},
        EventKind{META_SETTEMPO, first, "kein META SETTEMPO Event", &S::createMetaSetTempoMessage,
                  &D::foundMetaSetTempoEvent},
        EventKind{META_SMTPOFFSET, first, "kein META SMTPOFFSET Event", &S::createMetaSMTPOffsetMessage,
                  &D::foundMetaSMTPOffsetEvent},
        EventKind{META_TIMESIGNATURE, first, "kein META TIMESIGNATURE Event",
                  &S::createMetaTimeSignatureMessage, &D::foundMetaTimeSignatureEvent},
        EventKind{META_KEYSIGNATURE, first, "kein META KEYSIGNATURE Event", &S::createMetaKeySignatureMessage,
                  &D::foundMetaKeySignatureEvent},
        EventKind{META_SPECIFIC, first, "kein META SEQUENCERSPECIFIC Event",
                  &S::createMetaSequencerSpecificMessage, &D::foundMetaSequencerSpecificEvent},

        EventKind<TempoEvent>{0, tempo, "", nullptr, &D::foundTempoEvent},
        EventKind<UserEvent>{0, first, "", nullptr, &D::foundUserEvent},
        EventKind<AParameterEvent>{0, first, "", nullptr, &D::foundParameterEvent},
        EventKind<AAUPresetEvent>{0, first, "", nullptr, &D::foundAUPresetEvent},
    };

public:
    // Stand in for what has no row.
    static constexpr EventKind<MetaEvent> plainMeta{0, first, "kein META Event", nullptr, &D::foundMetaEvent};
    static constexpr EventKind<MetaUnknownEvent> unknownMeta{META_UNKNOWN, first, "", nullptr,
                                                             &D::foundMetaUnknownEvent};
    static constexpr EventKind<UnknownEvent> unknown{0, first, "", nullptr, &D::foundUnknownEvent};

    // The row of a class.
    template <class Node>
    static constexpr const EventKind<Node>& of()
    {
        return std::get<EventKind<Node>>(table);
    }

    // Calls `body` with the first row that `isMeant` takes; false where there is none.
    template <class IsMeant, class Body>
    static bool withFirst(IsMeant isMeant, Body body)
    {
        return std::apply([&](const auto&... kind) { return ((isMeant(kind) && (body(kind), true)) || ...); },
                          table);
    }
};

} // namespace volvelle
