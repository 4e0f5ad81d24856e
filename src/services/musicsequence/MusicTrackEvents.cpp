#include "services/musicsequence/FaultPoint.h"
#include "services/musicsequence/MusicTrackObject.h"
#include "wire/ShortMessage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace volvelle {

namespace {

constexpr std::uint8_t highBit = 0x80;

bool isValidDuration(float duration)
{
    return std::isfinite(duration) && duration >= 0.0F;
}

OSStatus add(const MusicTrack& track, double time, MusicEventType type, const void* record,
             std::size_t recordSize, std::size_t least, bool isValid)
{
    if (track == nullptr || track->sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    const std::size_t size = std::max(recordSize, least);
    if (!isValid || !isValidTime(time) || size > std::numeric_limits<std::uint32_t>::max()) {
        return kAudioToolboxErr_InvalidEventType;
    }
    track->append(time, type, static_cast<std::uint32_t>(size), record, recordSize);
    return noErr;
}

template <class Record>
OSStatus addFixed(const MusicTrack& track, double time, MusicEventType type, Record record, bool isValid)
{
    return add(track, time, type, &record, sizeof(Record), sizeof(Record), isValid);
}

template <class Record>
OSStatus addVariable(const MusicTrack& track, double time, MusicEventType type, const Record* record,
                     std::uint32_t Record::* length)
{
    const std::size_t bytes = record == nullptr ? 0 : record->*length;
    return add(track, time, type, record, offsetof(Record, data) + bytes, sizeof(Record), record != nullptr);
}

} // namespace

OSStatus MusicTrackNewMIDINoteEvent(const MusicTrack& track, double time, const MIDINoteMessage& message)
{
    VOLVELLE_FAULT_POINT(MusicTrackNewMIDINoteEvent);
    const bool isValid = message.channel < 16 && isValidDuration(message.duration) &&
                         ((message.note | message.velocity | message.releaseVelocity) & highBit) == 0;
    return addFixed(track, time, kMusicEventType_MIDINoteMessage, message, isValid);
}

OSStatus MusicTrackNewMIDIChannelEvent(const MusicTrack& track, double time,
                                       const MIDIChannelMessage& message)
{
    VOLVELLE_FAULT_POINT(MusicTrackNewMIDIChannelEvent);
    const bool isValid = isStatus(message.status) && message.status != STATUS_SYSEX &&
                         ((message.data1 | message.data2) & highBit) == 0;
    return addFixed(track, time, kMusicEventType_MIDIChannelMessage, message, isValid);
}

OSStatus MusicTrackNewMIDIRawDataEvent(const MusicTrack& track, double time, const MIDIRawData* record)
{
    VOLVELLE_FAULT_POINT(MusicTrackNewMIDIRawDataEvent);
    return addVariable(track, time, kMusicEventType_MIDIRawData, record, &MIDIRawData::length);
}

OSStatus MusicTrackNewMetaEvent(const MusicTrack& track, double time, const MIDIMetaEvent* record)
{
    VOLVELLE_FAULT_POINT(MusicTrackNewMetaEvent);
    return addVariable(track, time, kMusicEventType_Meta, record, &MIDIMetaEvent::dataLength);
}

OSStatus MusicTrackNewExtendedTempoEvent(const MusicTrack& track, double time, double bpm)
{
    VOLVELLE_FAULT_POINT(MusicTrackNewExtendedTempoEvent);
    if (track != nullptr && track->sequence != nullptr && !track->isTempoTrack()) {
        return kAudioToolboxErr_IllegalTrackDestination;
    }
    return addFixed(track, time, kMusicEventType_ExtendedTempo, ExtendedTempoEvent{bpm},
                    std::isfinite(bpm) && bpm > 0.0);
}

OSStatus MusicTrackNewUserEvent(const MusicTrack& track, double time, const MusicEventUserData* record)
{
    VOLVELLE_FAULT_POINT(MusicTrackNewUserEvent);
    return addVariable(track, time, kMusicEventType_User, record, &MusicEventUserData::length);
}

OSStatus MusicTrackNewExtendedNoteEvent(const MusicTrack& track, double time,
                                        const ExtendedNoteOnEvent& record)
{
    VOLVELLE_FAULT_POINT(MusicTrackNewExtendedNoteEvent);
    return addFixed(track, time, kMusicEventType_ExtendedNote, record, isValidDuration(record.duration));
}

OSStatus MusicTrackNewParameterEvent(const MusicTrack& track, double time, const ParameterEvent& record)
{
    VOLVELLE_FAULT_POINT(MusicTrackNewParameterEvent);
    return addFixed(track, time, kMusicEventType_Parameter, record, true);
}

OSStatus MusicTrackNewAUPresetEvent(const MusicTrack& track, double time, const AUPresetEvent& record)
{
    VOLVELLE_FAULT_POINT(MusicTrackNewAUPresetEvent);
    return addFixed(track, time, kMusicEventType_AUPreset, record, true);
}

} // namespace volvelle
