#include "rendering/RenderPiece.h"

#include "audio/SequencedMusic.h"

namespace volvelle {

OSStatus RenderPiece::read(const std::vector<std::uint8_t>& data, bool isSequenced)
{
    MusicSequence music;
    const auto loaded = std::make_shared<SequencerEvents>();
    OSStatus status = isSequenced
                          ? readSequencedMusic(data, music)
                          : NewMusicSequenceFromData(data, kMusicSequenceLoadSMF_ChannelsToTracks, music);
    status = status == noErr ? loaded->read(music) : status;
    status = status == noErr && isSequenced ? tempo.read(music) : status;
    events = loaded;
    sequence = isSequenced ? music : nullptr;
    return status;
}

std::vector<RenderPart> RenderPiece::parts(int cores) const
{
    return sequence != nullptr ? std::vector{sequencedPart(*events, tempo)} : cutIntoParts(*events, cores);
}

} // namespace volvelle
