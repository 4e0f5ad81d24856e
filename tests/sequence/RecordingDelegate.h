#pragma once

#include "sequence/SequenceFoundDelegate.h"

#include <string>
#include <vector>

namespace volvelle::test {

// Notes the name and the event of every call.
class RecordingDelegate : public SequenceFoundDelegate {
public:
    struct Call {
        std::string name;
        std::shared_ptr<EventNode> event;
    };

    std::vector<Call> calls;

    std::vector<std::string> names() const
    {
        std::vector<std::string> result;
        for (const Call& call : calls) {
            result.push_back(call.name);
        }
        return result;
    }

#define VOLVELLE_RECORD(operation, Node)                                                                     \
    void operation(const std::shared_ptr<Node>& event) override { calls.push_back({#operation, event}); }

    VOLVELLE_RECORD(foundNoteEvent, MidiNoteEvent)
    VOLVELLE_RECORD(foundPolyPressureEvent, MidiPolyPressureEvent)
    VOLVELLE_RECORD(foundControllerEvent, MidiControllerEvent)
    VOLVELLE_RECORD(foundProgramChangeEvent, MidiProgramChangeEvent)
    VOLVELLE_RECORD(foundChannelPressureEvent, MidiChannelPressureEvent)
    VOLVELLE_RECORD(foundPitchBendEvent, MidiPitchBendEvent)
    VOLVELLE_RECORD(foundSysExEvent, SystemExclusiveEvent)
    VOLVELLE_RECORD(foundSystemTimeCodeEvent, SystemTimeCodeEvent)
    VOLVELLE_RECORD(foundSystemSongPositionPointerEvent, SystemSongPositionPointerEvent)
    VOLVELLE_RECORD(foundSystemSongSelectEvent, SystemSongSelectEvent)
    VOLVELLE_RECORD(foundSystemTuneRequestEvent, SystemTuneRequestEvent)
    VOLVELLE_RECORD(foundSystemClockEvent, SystemClockEvent)
    VOLVELLE_RECORD(foundSystemStartEvent, SystemStartEvent)
    VOLVELLE_RECORD(foundSystemContinueEvent, SystemContinueEvent)
    VOLVELLE_RECORD(foundSystemStopEvent, SystemStopEvent)
    VOLVELLE_RECORD(foundSystemActiveSensingEvent, SystemActiveSensingEvent)
    VOLVELLE_RECORD(foundSystemResetEvent, SystemResetEvent)
    VOLVELLE_RECORD(foundTempoEvent, TempoEvent)
    VOLVELLE_RECORD(foundParameterEvent, AParameterEvent)
    VOLVELLE_RECORD(foundAUPresetEvent, AAUPresetEvent)
    VOLVELLE_RECORD(foundMetaEvent, MetaEvent)
    VOLVELLE_RECORD(foundMetaSequenceNumberEvent, MetaSequenceNumberEvent)
    VOLVELLE_RECORD(foundMetaTextEvent, MetaTextEvent)
    VOLVELLE_RECORD(foundMetaCopyrightEvent, MetaCopyrightEvent)
    VOLVELLE_RECORD(foundMetaTrackNameEvent, MetaTrackNameEvent)
    VOLVELLE_RECORD(foundMetaInstrumentNameEvent, MetaInstrumentNameEvent)
    VOLVELLE_RECORD(foundMetaLyricsEvent, MetaLyricsEvent)
    VOLVELLE_RECORD(foundMetaMarkerEvent, MetaMarkerEvent)
    VOLVELLE_RECORD(foundMetaCuePointEvent, MetaCuePointEvent)
    VOLVELLE_RECORD(foundMetaProgramNameEvent, MetaProgramNameEvent)
    VOLVELLE_RECORD(foundMetaDeviceNameEvent, MetaDeviceNameEvent)
    VOLVELLE_RECORD(foundMetaChannelPrefixEvent, MetaChannelPrefixEvent)
    VOLVELLE_RECORD(foundMetaMidiPortEvent, MetaMidiPortEvent)
    VOLVELLE_RECORD(foundMetaEndOfTrackEvent, MetaEndOfTrackEvent)
    VOLVELLE_RECORD(foundMetaSetTempoEvent, MetaSetTempoEvent)
    VOLVELLE_RECORD(foundMetaSMTPOffsetEvent, MetaSMTPOffsetEvent)
    VOLVELLE_RECORD(foundMetaTimeSignatureEvent, MetaTimeSignatureEvent)
    VOLVELLE_RECORD(foundMetaKeySignatureEvent, MetaKeySignatureEvent)
    VOLVELLE_RECORD(foundMetaSequencerSpecificEvent, MetaSequencerSpecificEvent)
    VOLVELLE_RECORD(foundMetaUnknownEvent, MetaUnknownEvent)
    VOLVELLE_RECORD(foundUserEvent, UserEvent)
    VOLVELLE_RECORD(foundExtendedNoteEvent, AExtendedNoteOnEvent)
    VOLVELLE_RECORD(foundUnknownEvent, UnknownEvent)

#undef VOLVELLE_RECORD
};

} // namespace volvelle::test
