#include "tests/services/musicsequence/SequenceTools.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

TEST(MusicPlayer, WithASequenceItPrerollsAndStarts)
{
    MusicPlayer player;
    EXPECT_EQ(NewMusicPlayer(player), noErr);
    EXPECT_EQ(MusicPlayerSetSequence(player, newSequence()), noErr);
    EXPECT_EQ(MusicPlayerPreroll(player), noErr);
    EXPECT_EQ(MusicPlayerStart(player), noErr);
}

TEST(MusicPlayer, WithoutASequenceItDoesNot)
{
    MusicPlayer player;
    EXPECT_EQ(NewMusicPlayer(player), noErr);
    EXPECT_EQ(MusicPlayerSetSequence(player, nullptr), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicPlayerPreroll(player), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicPlayerStart(player), kAudioToolboxErr_NoSequence);
}

TEST(MusicPlayer, NoPlayerCannotBeUsed)
{
    EXPECT_EQ(MusicPlayerSetSequence(nullptr, newSequence()), kAudioToolboxErr_InvalidPlayerState);
    EXPECT_EQ(MusicPlayerPreroll(nullptr), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicPlayerStart(nullptr), kAudioToolboxErr_NoSequence);
}

TEST(MusicPlayer, ItKeepsItsSequenceAlive)
{
    MusicPlayer player;
    MusicSequence sequence = newSequence();
    const MusicTrack track = newTrack(sequence);
    EXPECT_EQ(NewMusicPlayer(player), noErr);
    EXPECT_EQ(MusicPlayerSetSequence(player, sequence), noErr);
    EXPECT_EQ(DisposeMusicSequence(sequence), noErr);
    addNote(track, 0.0, 60);
    player.reset();
    EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, 0.0, {}), kAudioToolboxErr_NoSequence);
}

} // namespace

} // namespace volvelle::test
