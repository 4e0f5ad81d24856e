#include "services/musicsequence/FaultPoint.h"
#include "services/musicsequence/MusicTrackObject.h"

#include <cmath>
#include <cstring>

namespace volvelle {

namespace {

bool isOutside(const MusicTrack& track)
{
    return track == nullptr || track->sequence == nullptr;
}

template <class T>
OSStatus give(T stored, void* value, std::uint32_t& size)
{
    if (value == nullptr || size < sizeof(T)) {
        return kAudioToolboxErr_InvalidProperty;
    }
    std::memcpy(value, &stored, sizeof(T));
    size = sizeof(T);
    return noErr;
}

template <class T>
OSStatus take(T& stored, const void* value, std::uint32_t size)
{
    if (value == nullptr || size != sizeof(T)) {
        return kAudioToolboxErr_InvalidProperty;
    }
    std::memcpy(&stored, value, sizeof(T));
    return noErr;
}

OSStatus takeTruth(bool& stored, const void* value, std::uint32_t size)
{
    std::uint8_t byte = 0;
    const OSStatus status = take(byte, value, size);
    if (status == noErr) {
        stored = byte != 0;
    }
    return status;
}

OSStatus takeBeats(double& stored, const void* value, std::uint32_t size, bool mayBeNegative)
{
    double beats = 0.0;
    if (const OSStatus status = take(beats, value, size); status != noErr) {
        return status;
    }
    if (!std::isfinite(beats) || (beats < 0.0 && !mayBeNegative)) {
        return kAudioToolboxErr_InvalidEventType;
    }
    stored = beats;
    return noErr;
}

} // namespace

static_assert(sizeof(MusicTrackLoopInfo) == 16 && sizeof(bool) == 1);

OSStatus MusicTrackGetProperty(const MusicTrack& track, MusicTrackProperty property, void* value,
                               std::uint32_t& size)
{
    VOLVELLE_FAULT_POINT(MusicTrackGetProperty);
    if (isOutside(track)) {
        return kAudioToolboxErr_NoSequence;
    }
    switch (property) {
    case kSequenceTrackProperty_LoopInfo:
        return give(track->loopInfo, value, size);
    case kSequenceTrackProperty_OffsetTime:
        return give(track->offsetTime, value, size);
    case kSequenceTrackProperty_MuteStatus:
        return give(track->isMuted, value, size);
    case kSequenceTrackProperty_SoloStatus:
        return give(track->isSolo, value, size);
    case kSequenceTrackProperty_AutomatedParameters:
        return give(track->hasAutomatedParameters, value, size);
    case kSequenceTrackProperty_TrackLength:
        return give(track->length, value, size);
    case kSequenceTrackProperty_TimeResolution:
        return give(track->timeResolution, value, size);
    default:
        return kAudioToolboxErr_InvalidProperty;
    }
}

OSStatus MusicTrackSetProperty(const MusicTrack& track, MusicTrackProperty property, const void* value,
                               std::uint32_t size)
{
    VOLVELLE_FAULT_POINT(MusicTrackSetProperty);
    if (isOutside(track)) {
        return kAudioToolboxErr_NoSequence;
    }
    switch (property) {
    case kSequenceTrackProperty_LoopInfo:
        return take(track->loopInfo, value, size);
    case kSequenceTrackProperty_OffsetTime:
        return takeBeats(track->offsetTime, value, size, true);
    case kSequenceTrackProperty_MuteStatus:
        return takeTruth(track->isMuted, value, size);
    case kSequenceTrackProperty_SoloStatus:
        return takeTruth(track->isSolo, value, size);
    case kSequenceTrackProperty_AutomatedParameters:
        return takeTruth(track->hasAutomatedParameters, value, size);
    case kSequenceTrackProperty_TrackLength:
        return takeBeats(track->length, value, size, false);
    case kSequenceTrackProperty_TimeResolution:
        return take(track->timeResolution, value, size);
    default:
        return kAudioToolboxErr_InvalidProperty;
    }
}

} // namespace volvelle
