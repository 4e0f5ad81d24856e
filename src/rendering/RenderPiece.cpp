#include "rendering/RenderPiece.h"

#include "audio/SequencedMusic.h"

namespace volvelle {

namespace {

OSStatus readPlatformMusic(const std::vector<std::uint8_t>& data, MusicSequence& music)
{
    const OSStatus status = NewMusicSequence(music);
    return status == noErr ? MusicSequenceFileLoadData(music, data, kMusicSequenceFile_MIDIType,
                                                       kMusicSequenceLoadSMF_ChannelsToTracks)
                           : status;
}

} // namespace

OSStatus RenderPiece::read(const std::vector<std::uint8_t>& data, bool isSequenced)
{
    MusicSequence music;
    const auto loaded = std::make_shared<SequencerEvents>();
    OSStatus status = isSequenced ? readSequencedMusic(data, music) : readPlatformMusic(data, music);
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
