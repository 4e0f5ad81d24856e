#include "services/musicsequence/MusicSequenceObject.h"

#include "services/musicsequence/MusicTrackObject.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

void detach(MusicTrackObject& track, bool isRemoved)
{
    MusicEventList nothing;
    track.sequence = nullptr;
    track.isRemoved = isRemoved;
    track.events.exchange(nothing);
}

} // namespace

MusicSequenceObject::MusicSequenceObject() : tempoTrack(std::make_shared<MusicTrackObject>(this)) {}

MusicSequenceObject::~MusicSequenceObject()
{
    detach(*tempoTrack, false);
    for (const MusicTrack& track : tracks) {
        detach(*track, false);
    }
}

std::optional<std::uint32_t> MusicSequenceObject::indexOf(const MusicTrack& track) const
{
    const auto found = std::ranges::find(tracks, track);
    if (found == tracks.end()) {
        return {};
    }
    return static_cast<std::uint32_t>(found - tracks.begin());
}

void MusicSequenceObject::remove(std::uint32_t index)
{
    detach(*tracks[index], true);
    tracks.erase(tracks.begin() + index);
}

void MusicSequenceObject::replaceTracks(std::vector<MusicTrack> newTracks)
{
    for (const MusicTrack& track : tracks) {
        detach(*track, true);
    }
    tracks = std::move(newTracks);
}

} // namespace volvelle
