#include "services/musicsequence/MusicSequence.h"

#include "services/musicsequence/FaultPoint.h"
#include "services/musicsequence/MusicSequenceObject.h"
#include "services/musicsequence/MusicTrackObject.h"

namespace volvelle {

namespace {

OSStatus findTrack(const MusicSequence& sequence, const MusicTrack& track, std::uint32_t& index)
{
    if (sequence == nullptr || track == nullptr || (track->sequence == nullptr && !track->isRemoved)) {
        return kAudioToolboxErr_NoSequence;
    }
    const auto found = sequence->indexOf(track);
    if (!found) {
        return kAudioToolboxErr_TrackNotFound;
    }
    index = *found;
    return noErr;
}

} // namespace

OSStatus NewMusicSequence(MusicSequence& sequence)
{
    VOLVELLE_FAULT_POINT(NewMusicSequence);
    sequence = std::make_shared<MusicSequenceObject>();
    return noErr;
}

OSStatus DisposeMusicSequence(MusicSequence& sequence)
{
    VOLVELLE_FAULT_POINT(DisposeMusicSequence);
    if (sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    sequence.reset();
    return noErr;
}

OSStatus MusicSequenceNewTrack(const MusicSequence& sequence, MusicTrack& track)
{
    VOLVELLE_FAULT_POINT(MusicSequenceNewTrack);
    if (sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    auto added = std::make_shared<MusicTrackObject>(sequence.get());
    sequence->tracks.push_back(added);
    track = std::move(added);
    return noErr;
}

OSStatus MusicSequenceDisposeTrack(const MusicSequence& sequence, const MusicTrack& track)
{
    VOLVELLE_FAULT_POINT(MusicSequenceDisposeTrack);
    std::uint32_t index = 0;
    if (const OSStatus status = findTrack(sequence, track, index); status != noErr) {
        return status;
    }
    sequence->remove(index);
    return noErr;
}

OSStatus MusicSequenceGetTrackCount(const MusicSequence& sequence, std::uint32_t& count)
{
    VOLVELLE_FAULT_POINT(MusicSequenceGetTrackCount);
    if (sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    count = static_cast<std::uint32_t>(sequence->tracks.size());
    return noErr;
}

OSStatus MusicSequenceGetIndTrack(const MusicSequence& sequence, std::uint32_t index, MusicTrack& track)
{
    VOLVELLE_FAULT_POINT(MusicSequenceGetIndTrack);
    if (sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    if (index >= sequence->tracks.size()) {
        return kAudioToolboxErr_TrackIndexError;
    }
    track = sequence->tracks[index];
    return noErr;
}

OSStatus MusicSequenceGetTrackIndex(const MusicSequence& sequence, const MusicTrack& track,
                                    std::uint32_t& index)
{
    VOLVELLE_FAULT_POINT(MusicSequenceGetTrackIndex);
    return findTrack(sequence, track, index);
}

OSStatus MusicSequenceGetTempoTrack(const MusicSequence& sequence, MusicTrack& track)
{
    VOLVELLE_FAULT_POINT(MusicSequenceGetTempoTrack);
    if (sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    track = sequence->tempoTrack;
    return noErr;
}

OSStatus MusicSequenceGetLoadWarnings(const MusicSequence& sequence, std::vector<std::string>& warnings)
{
    VOLVELLE_FAULT_POINT(MusicSequenceGetLoadWarnings);
    if (sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    warnings = sequence->loadWarnings;
    return noErr;
}

OSStatus MusicSequenceGetLoadDivision(const MusicSequence& sequence, std::int16_t& division)
{
    VOLVELLE_FAULT_POINT(MusicSequenceGetLoadDivision);
    if (sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    division = sequence->loadDivision;
    return noErr;
}

} // namespace volvelle
