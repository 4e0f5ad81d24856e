#include "midi/MIDIConstants.h"
#include "sequence/SequenceLog.h"
#include "sequence/SequenceReading.h"

namespace volvelle {

template <class Node>
void SequenceReading::readMetaAs(const TrackEvent& event, Target target, Found<Node> found)
{
    const auto& record = event.record<MIDIMetaEvent>();
    const auto meta = nodeAt<Node>(event);
    meta->length = record.dataLength;
    sequence.fillMetaData(&record, *meta);
    take(meta, target, found);
}

void SequenceReading::readMeta(const TrackEvent& event)
{
    const auto* record = static_cast<const MIDIMetaEvent*>(event.payload);
    if (record == nullptr) {
        return logLine("MIDISequence::Fehler: Das Meta Event is undefiniert.");
    }
    sequence.diagnose(
        concat("Diagnose: MIDI Meta Message: Typ = ", record->metaEventType, ", Position = ", event.time));
    using D = SequenceFoundDelegate;
    switch (record->metaEventType) {
    case META_SEQUENCENUMBER:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaSequenceNumberEvent);
    case META_TEXT:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaTextEvent);
    case META_COPYRIGHT:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaCopyrightEvent);
    case META_TRACKNAME:
        return readMetaAs(event, Target::ownTrack, &D::foundMetaTrackNameEvent);
    case META_INSTRUMENTNAME:
        return readMetaAs(event, Target::ownTrack, &D::foundMetaInstrumentNameEvent);
    case META_LYRICS:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaLyricsEvent);
    case META_MARKER:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaMarkerEvent);
    case META_CUEPOINT:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaCuePointEvent);
    case META_PROGRAMNAME:
        return readMetaAs(event, Target::ownTrack, &D::foundMetaProgramNameEvent);
    case META_DEVICENAME:
        return readMetaAs(event, Target::ownTrack, &D::foundMetaDeviceNameEvent);
    case META_CHANNELPREFIX:
        return readMetaAs(event, Target::ownTrack, &D::foundMetaChannelPrefixEvent);
    case META_MIDIPORT:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaMidiPortEvent);
    case META_EOT:
        return readMetaAs(event, Target::ownTrack, &D::foundMetaEndOfTrackEvent);
    case META_SETTEMPO:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaSetTempoEvent);
    case META_SMTPOFFSET:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaSMTPOffsetEvent);
    case META_TIMESIGNATURE:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaTimeSignatureEvent);
    case META_KEYSIGNATURE:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaKeySignatureEvent);
    case META_SPECIFIC:
        return readMetaAs(event, Target::firstTrack, &D::foundMetaSequencerSpecificEvent);
    default:
        logLine("MIDISequence::Warnung: Unbekanntes Meta Event erhalten.");
        return readMetaAs(event, Target::firstTrack, &D::foundMetaUnknownEvent);
    }
}

} // namespace volvelle
