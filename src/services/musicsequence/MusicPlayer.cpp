#include "services/musicsequence/FaultPoint.h"
#include "services/musicsequence/MusicPlayerObject.h"

namespace volvelle {

namespace {

OSStatus readiness(const MusicPlayer& player)
{
    const bool isReady = player != nullptr && player->sequence != nullptr;
    return isReady ? noErr : kAudioToolboxErr_NoSequence;
}

} // namespace

OSStatus NewMusicPlayer(MusicPlayer& player)
{
    VOLVELLE_FAULT_POINT(NewMusicPlayer);
    player = std::make_shared<MusicPlayerObject>();
    return noErr;
}

OSStatus MusicPlayerSetSequence(const MusicPlayer& player, const MusicSequence& sequence)
{
    VOLVELLE_FAULT_POINT(MusicPlayerSetSequence);
    if (player == nullptr) {
        return kAudioToolboxErr_InvalidPlayerState;
    }
    if (sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    player->sequence = sequence;
    return noErr;
}

OSStatus MusicPlayerPreroll(const MusicPlayer& player)
{
    VOLVELLE_FAULT_POINT(MusicPlayerPreroll);
    return readiness(player);
}

OSStatus MusicPlayerStart(const MusicPlayer& player)
{
    VOLVELLE_FAULT_POINT(MusicPlayerStart);
    return readiness(player);
}

} // namespace volvelle
