#include "sequence/SequenceFoundDelegate.h"

namespace volvelle {

void SequenceFoundDelegate::foundNoteEvent(const std::shared_ptr<MidiNoteEvent>& /*event*/) {}

void SequenceFoundDelegate::foundPolyPressureEvent(const std::shared_ptr<MidiPolyPressureEvent>& /*event*/) {}

void SequenceFoundDelegate::foundControllerEvent(const std::shared_ptr<MidiControllerEvent>& /*event*/) {}

void SequenceFoundDelegate::foundProgramChangeEvent(const std::shared_ptr<MidiProgramChangeEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundChannelPressureEvent(
    const std::shared_ptr<MidiChannelPressureEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundPitchBendEvent(const std::shared_ptr<MidiPitchBendEvent>& /*event*/) {}

void SequenceFoundDelegate::foundSysExEvent(const std::shared_ptr<SystemExclusiveEvent>& /*event*/) {}

void SequenceFoundDelegate::foundSystemTimeCodeEvent(const std::shared_ptr<SystemTimeCodeEvent>& /*event*/) {}

void SequenceFoundDelegate::foundSystemSongPositionPointerEvent(
    const std::shared_ptr<SystemSongPositionPointerEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundSystemSongSelectEvent(
    const std::shared_ptr<SystemSongSelectEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundSystemTuneRequestEvent(
    const std::shared_ptr<SystemTuneRequestEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundSystemClockEvent(const std::shared_ptr<SystemClockEvent>& /*event*/) {}

void SequenceFoundDelegate::foundSystemStartEvent(const std::shared_ptr<SystemStartEvent>& /*event*/) {}

void SequenceFoundDelegate::foundSystemContinueEvent(const std::shared_ptr<SystemContinueEvent>& /*event*/) {}

void SequenceFoundDelegate::foundSystemStopEvent(const std::shared_ptr<SystemStopEvent>& /*event*/) {}

void SequenceFoundDelegate::foundSystemActiveSensingEvent(
    const std::shared_ptr<SystemActiveSensingEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundSystemResetEvent(const std::shared_ptr<SystemResetEvent>& /*event*/) {}

void SequenceFoundDelegate::foundTempoEvent(const std::shared_ptr<TempoEvent>& /*event*/) {}

void SequenceFoundDelegate::foundParameterEvent(const std::shared_ptr<AParameterEvent>& /*event*/) {}

void SequenceFoundDelegate::foundAUPresetEvent(const std::shared_ptr<AAUPresetEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaEvent(const std::shared_ptr<MetaEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaSequenceNumberEvent(
    const std::shared_ptr<MetaSequenceNumberEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundMetaTextEvent(const std::shared_ptr<MetaTextEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaCopyrightEvent(const std::shared_ptr<MetaCopyrightEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaTrackNameEvent(const std::shared_ptr<MetaTrackNameEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaInstrumentNameEvent(
    const std::shared_ptr<MetaInstrumentNameEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundMetaLyricsEvent(const std::shared_ptr<MetaLyricsEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaMarkerEvent(const std::shared_ptr<MetaMarkerEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaCuePointEvent(const std::shared_ptr<MetaCuePointEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaProgramNameEvent(const std::shared_ptr<MetaProgramNameEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundMetaDeviceNameEvent(const std::shared_ptr<MetaDeviceNameEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaChannelPrefixEvent(
    const std::shared_ptr<MetaChannelPrefixEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundMetaMidiPortEvent(const std::shared_ptr<MetaMidiPortEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaEndOfTrackEvent(const std::shared_ptr<MetaEndOfTrackEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaSetTempoEvent(const std::shared_ptr<MetaSetTempoEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaSMTPOffsetEvent(const std::shared_ptr<MetaSMTPOffsetEvent>& /*event*/) {}

void SequenceFoundDelegate::foundMetaTimeSignatureEvent(
    const std::shared_ptr<MetaTimeSignatureEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundMetaKeySignatureEvent(
    const std::shared_ptr<MetaKeySignatureEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundMetaSequencerSpecificEvent(
    const std::shared_ptr<MetaSequencerSpecificEvent>& /*event*/)
{
}

void SequenceFoundDelegate::foundMetaUnknownEvent(const std::shared_ptr<MetaUnknownEvent>& /*event*/) {}

void SequenceFoundDelegate::foundUserEvent(const std::shared_ptr<UserEvent>& /*event*/) {}

void SequenceFoundDelegate::foundExtendedNoteEvent(const std::shared_ptr<AExtendedNoteOnEvent>& /*event*/) {}

void SequenceFoundDelegate::foundUnknownEvent(const std::shared_ptr<UnknownEvent>& /*event*/) {}

} // namespace volvelle
