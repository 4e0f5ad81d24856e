#include "audio/SequencedMusic.h"

#include "services/musicsequence/TrackWalk.h"

#include <limits>

namespace volvelle {

namespace {

constexpr double wholeTrack = std::numeric_limits<double>::max(); // beats

OSStatus askForChannel(const MusicTrack& track, bool& hasChannel)
{
    return forEachEvent(track, [&hasChannel](const TrackEvent& event) {
        hasChannel |=
            event.type == kMusicEventType_MIDINoteMessage || event.type == kMusicEventType_MIDIChannelMessage;
    });
}

// Puts the events of `other` before those of `track`, and takes it out of the sequence.
OSStatus putBefore(const MusicSequence& music, const MusicTrack& track, const MusicTrack& other)
{
    OSStatus status = MusicTrackMerge(track, 0.0, wholeTrack, other, 0.0);
    status = status == noErr ? MusicTrackClear(track, 0.0, wholeTrack) : status;
    status = status == noErr ? MusicTrackMerge(other, 0.0, wholeTrack, track, 0.0) : status;
    return status == noErr ? MusicSequenceDisposeTrack(music, other) : status;
}

} // namespace

OSStatus readSequencedMusic(const std::vector<std::uint8_t>& data, MusicSequence& music)
{
    std::uint32_t count = 0;
    OSStatus status = NewMusicSequenceFromData(data, kMusicSequenceLoadSMF_ChannelsToTracks, music);
    status = status == noErr ? MusicSequenceGetTrackCount(music, count) : status;
    if (status != noErr || count < 2) {
        return status;
    }
    MusicTrack first;
    MusicTrack last;
    bool hasChannel = false;
    status = MusicSequenceGetIndTrack(music, 0, first);
    status = status == noErr ? MusicSequenceGetIndTrack(music, count - 1, last) : status;
    status = status == noErr ? askForChannel(last, hasChannel) : status;
    return status != noErr || hasChannel ? status : putBefore(music, first, last);
}

} // namespace volvelle
