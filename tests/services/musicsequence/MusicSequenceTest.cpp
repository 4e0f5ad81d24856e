#include "tests/services/musicsequence/SequenceTools.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

TEST(MusicSequence, ANewSequenceHasAnEmptyTempoTrackAndNoOtherTrack)
{
    const MusicSequence sequence = newSequence();
    EXPECT_EQ(trackCountOf(sequence), 0U);
    EXPECT_EQ(eventsOf(tempoTrackOf(sequence)), Lines{});
    EXPECT_EQ(lengthOf(tempoTrackOf(sequence)), 0.0);
    EXPECT_EQ(warningsOf(sequence), Lines{});
    std::int16_t division = 0;
    EXPECT_EQ(MusicSequenceGetLoadDivision(sequence, division), noErr);
    EXPECT_EQ(division, 480);
}

TEST(MusicSequence, ANewTrackHasTheFormerCountAsItsIndex)
{
    const MusicSequence sequence = newSequence();
    for (std::uint32_t i = 0; i < 16; ++i) {
        const MusicTrack track = newTrack(sequence);
        std::uint32_t index = 99;
        EXPECT_EQ(MusicSequenceGetTrackIndex(sequence, track, index), noErr);
        EXPECT_EQ(index, i);
        EXPECT_EQ(trackOf(sequence, i), track);
    }
    EXPECT_EQ(trackCountOf(sequence), 16U);
}

TEST(MusicSequence, DisposingOfATrackMovesTheIndicesBehindItDown)
{
    const MusicSequence sequence = newSequence();
    const MusicTrack first = newTrack(sequence);
    const MusicTrack second = newTrack(sequence);
    const MusicTrack third = newTrack(sequence);
    EXPECT_EQ(MusicSequenceDisposeTrack(sequence, second), noErr);
    EXPECT_EQ(trackCountOf(sequence), 2U);
    EXPECT_EQ(trackOf(sequence, 0), first);
    EXPECT_EQ(trackOf(sequence, 1), third);
}

TEST(MusicSequence, ARemovedTrackBelongsToNoSequence)
{
    const MusicSequence sequence = newSequence();
    const MusicTrack track = newTrack(sequence);
    addNote(track, 0.0, 60);
    const MusicEventIterator iterator = iteratorOf(track);
    EXPECT_EQ(MusicSequenceDisposeTrack(sequence, track), noErr);
    std::uint32_t index = 7;
    EXPECT_EQ(MusicSequenceGetTrackIndex(sequence, track, index), kAudioToolboxErr_TrackNotFound);
    EXPECT_EQ(MusicSequenceDisposeTrack(sequence, track), kAudioToolboxErr_TrackNotFound);
    EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, 0.0, {}), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackClear(track, 0.0, 1.0), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicEventIteratorNextEvent(iterator), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(index, 7U);
}

TEST(MusicSequence, TheTempoTrackIsNoMemberOfTheList)
{
    const MusicSequence sequence = newSequence();
    newTrack(sequence);
    const MusicTrack tempo = tempoTrackOf(sequence);
    std::uint32_t index = 0;
    EXPECT_EQ(MusicSequenceGetTrackIndex(sequence, tempo, index), kAudioToolboxErr_TrackNotFound);
    EXPECT_EQ(MusicSequenceDisposeTrack(sequence, tempo), kAudioToolboxErr_TrackNotFound);
    EXPECT_EQ(tempoTrackOf(sequence), tempo);
}

TEST(MusicSequence, ATrackOfAnotherSequenceIsNotFound)
{
    const MusicSequence sequence = newSequence();
    const MusicSequence other = newSequence();
    const MusicTrack track = newTrack(other);
    std::uint32_t index = 0;
    EXPECT_EQ(MusicSequenceGetTrackIndex(sequence, track, index), kAudioToolboxErr_TrackNotFound);
    EXPECT_EQ(MusicSequenceDisposeTrack(sequence, track), kAudioToolboxErr_TrackNotFound);
    EXPECT_EQ(trackCountOf(other), 1U);
}

TEST(MusicSequence, AnIndexOutOfRangeIsAnErrorAndLeavesTheTrackAlone)
{
    const MusicSequence sequence = newSequence();
    const MusicTrack only = newTrack(sequence);
    MusicTrack track = only;
    EXPECT_EQ(MusicSequenceGetIndTrack(sequence, 1, track), kAudioToolboxErr_TrackIndexError);
    EXPECT_EQ(MusicSequenceGetIndTrack(sequence, 0xFFFFFFFF, track), kAudioToolboxErr_TrackIndexError);
    EXPECT_EQ(track, only);
}

TEST(MusicSequence, NoSequenceAnswersSoEverywhere)
{
    const MusicSequence none;
    MusicSequence gone;
    MusicTrack track;
    std::uint32_t number = 5;
    std::int16_t division = 5;
    Bytes bytes;
    Lines warnings;
    constexpr auto type = kMusicSequenceFile_MIDIType;
    EXPECT_EQ(DisposeMusicSequence(gone), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceNewTrack(none, track), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceDisposeTrack(none, track), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceGetTrackCount(none, number), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceGetIndTrack(none, 0, track), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceGetTrackIndex(none, track, number), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceGetTempoTrack(none, track), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceFileCreateData(none, type, 1, 480, bytes), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceFileCreate(none, "nothing.mid", type, 1, 480), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceFileLoad(none, "nothing.mid", type, 0), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceFileLoadData(none, bytes, type, 0), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceGetLoadWarnings(none, warnings), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceGetLoadDivision(none, division), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(number, 5U);
    EXPECT_EQ(division, 5);
}

TEST(MusicSequence, NoTrackAnswersNoSequence)
{
    const MusicSequence sequence = newSequence();
    std::uint32_t index = 0;
    EXPECT_EQ(MusicSequenceGetTrackIndex(sequence, nullptr, index), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicSequenceDisposeTrack(sequence, nullptr), kAudioToolboxErr_NoSequence);
}

TEST(MusicSequence, DisposingGivesUpTheCallersShareOnly)
{
    MusicSequence mine = newSequence();
    const MusicSequence yours = mine;
    const MusicTrack track = newTrack(mine);
    addNote(track, 0.0, 60);
    EXPECT_EQ(DisposeMusicSequence(mine), noErr);
    EXPECT_EQ(mine, nullptr);
    EXPECT_EQ(trackCountOf(yours), 1U);
    EXPECT_EQ(eventsOf(track), Lines{"0.0 note 0 60 100 0 1.0"});
}

TEST(MusicSequence, TracksAndIteratorsOfADeadSequenceAnswerSo)
{
    MusicSequence sequence = newSequence();
    const MusicTrack track = newTrack(sequence);
    const MusicTrack tempo = tempoTrackOf(sequence);
    addNote(track, 0.0, 60);
    MusicEventIterator iterator = iteratorOf(track);
    EXPECT_EQ(DisposeMusicSequence(sequence), noErr);

    double time = 0.0;
    MusicEventType type = 0;
    const void* payload = nullptr;
    std::uint32_t size = sizeof(time);
    bool flag = false;
    EXPECT_EQ(MusicEventIteratorHasCurrentEvent(iterator, flag), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicEventIteratorHasNextEvent(iterator, flag), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicEventIteratorNextEvent(iterator), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicEventIteratorGetEventInfo(iterator, time, type, payload, size),
              kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicEventIteratorDeleteEvent(iterator), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackGetProperty(track, kSequenceTrackProperty_TrackLength, &time, size),
              kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackNewExtendedTempoEvent(tempo, 0.0, 120.0), kAudioToolboxErr_NoSequence);
    MusicEventIterator another;
    EXPECT_EQ(NewMusicEventIterator(track, another), kAudioToolboxErr_NoSequence);
    std::uint32_t index = 0;
    EXPECT_EQ(MusicSequenceGetTrackIndex(newSequence(), track, index), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(DisposeMusicEventIterator(iterator), noErr);
    EXPECT_EQ(iterator, nullptr);
}

} // namespace

} // namespace volvelle::test
