#pragma once

#include "midi/EventNodes.h"

#include <memory>

namespace volvelle {

// Listens to the events that a MIDISequence reads or writes. While reading, an operation is called inside the
// walk, on the walking thread, before the next event is read; while writing, later, on the main thread. The
// event is never null and already stands in the tree. A listener takes what it needs: the others do nothing.
// Made into a std::shared_ptr, since a sequence holds its listener weakly.
class SequenceFoundDelegate {
public:
    virtual ~SequenceFoundDelegate() = default;

    virtual void foundNoteEvent(const std::shared_ptr<MidiNoteEvent>& event);
    virtual void foundPolyPressureEvent(const std::shared_ptr<MidiPolyPressureEvent>& event);
    virtual void foundControllerEvent(const std::shared_ptr<MidiControllerEvent>& event);
    virtual void foundProgramChangeEvent(const std::shared_ptr<MidiProgramChangeEvent>& event);
    virtual void foundChannelPressureEvent(const std::shared_ptr<MidiChannelPressureEvent>& event);
    virtual void foundPitchBendEvent(const std::shared_ptr<MidiPitchBendEvent>& event);
    virtual void foundSysExEvent(const std::shared_ptr<SystemExclusiveEvent>& event);
    virtual void foundSystemTimeCodeEvent(const std::shared_ptr<SystemTimeCodeEvent>& event);
    virtual void
    foundSystemSongPositionPointerEvent(const std::shared_ptr<SystemSongPositionPointerEvent>& event);
    virtual void foundSystemSongSelectEvent(const std::shared_ptr<SystemSongSelectEvent>& event);
    virtual void foundSystemTuneRequestEvent(const std::shared_ptr<SystemTuneRequestEvent>& event);
    virtual void foundSystemClockEvent(const std::shared_ptr<SystemClockEvent>& event);
    virtual void foundSystemStartEvent(const std::shared_ptr<SystemStartEvent>& event);
    virtual void foundSystemContinueEvent(const std::shared_ptr<SystemContinueEvent>& event);
    virtual void foundSystemStopEvent(const std::shared_ptr<SystemStopEvent>& event);
    virtual void foundSystemActiveSensingEvent(const std::shared_ptr<SystemActiveSensingEvent>& event);
    virtual void foundSystemResetEvent(const std::shared_ptr<SystemResetEvent>& event);
    virtual void foundTempoEvent(const std::shared_ptr<TempoEvent>& event);
    virtual void foundParameterEvent(const std::shared_ptr<AParameterEvent>& event);
    virtual void foundAUPresetEvent(const std::shared_ptr<AAUPresetEvent>& event);
    virtual void foundMetaEvent(const std::shared_ptr<MetaEvent>& event);
    virtual void foundMetaSequenceNumberEvent(const std::shared_ptr<MetaSequenceNumberEvent>& event);
    virtual void foundMetaTextEvent(const std::shared_ptr<MetaTextEvent>& event);
    virtual void foundMetaCopyrightEvent(const std::shared_ptr<MetaCopyrightEvent>& event);
    virtual void foundMetaTrackNameEvent(const std::shared_ptr<MetaTrackNameEvent>& event);
    virtual void foundMetaInstrumentNameEvent(const std::shared_ptr<MetaInstrumentNameEvent>& event);
    virtual void foundMetaLyricsEvent(const std::shared_ptr<MetaLyricsEvent>& event);
    virtual void foundMetaMarkerEvent(const std::shared_ptr<MetaMarkerEvent>& event);
    virtual void foundMetaCuePointEvent(const std::shared_ptr<MetaCuePointEvent>& event);
    virtual void foundMetaProgramNameEvent(const std::shared_ptr<MetaProgramNameEvent>& event);
    virtual void foundMetaDeviceNameEvent(const std::shared_ptr<MetaDeviceNameEvent>& event);
    virtual void foundMetaChannelPrefixEvent(const std::shared_ptr<MetaChannelPrefixEvent>& event);
    virtual void foundMetaMidiPortEvent(const std::shared_ptr<MetaMidiPortEvent>& event);
    virtual void foundMetaEndOfTrackEvent(const std::shared_ptr<MetaEndOfTrackEvent>& event);
    virtual void foundMetaSetTempoEvent(const std::shared_ptr<MetaSetTempoEvent>& event);
    virtual void foundMetaSMTPOffsetEvent(const std::shared_ptr<MetaSMTPOffsetEvent>& event);
    virtual void foundMetaTimeSignatureEvent(const std::shared_ptr<MetaTimeSignatureEvent>& event);
    virtual void foundMetaKeySignatureEvent(const std::shared_ptr<MetaKeySignatureEvent>& event);
    virtual void foundMetaSequencerSpecificEvent(const std::shared_ptr<MetaSequencerSpecificEvent>& event);
    virtual void foundMetaUnknownEvent(const std::shared_ptr<MetaUnknownEvent>& event);
    virtual void foundUserEvent(const std::shared_ptr<UserEvent>& event);
    virtual void foundExtendedNoteEvent(const std::shared_ptr<AExtendedNoteOnEvent>& event);
    virtual void foundUnknownEvent(const std::shared_ptr<UnknownEvent>& event);
};

} // namespace volvelle
