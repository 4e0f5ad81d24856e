#include "services/musicsequence/FaultPoint.h"

#include "tests/services/musicsequence/SequenceTools.h"

#include <functional>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

using Operation = MusicSequenceOperation;

class FaultPoints : public testing::Test {
protected:
    FaultPoints() { addNote(track, 0.0, 60); }

    ~FaultPoints() override { clearFaults(); }

    MusicSequence sequence = newSequence();
    MusicTrack track = newTrack(sequence);
    MusicEventIterator iterator = iteratorOf(track);
    MusicPlayer player;
    MusicTrack other;
    std::uint32_t number = 8;
    double time = 0.0;
    bool flag = false;
    const void* payload = nullptr;
    Bytes bytes;
    Lines lines;
    std::int16_t division = 0;
    TemporaryFolder folder;

    // In the order of the operations.
    std::vector<std::function<OSStatus()>> calls{
        [this] { return NewMusicSequence(sequence); },
        [this] { return DisposeMusicSequence(sequence); },
        [this] { return MusicSequenceNewTrack(sequence, other); },
        [this] { return MusicSequenceDisposeTrack(sequence, track); },
        [this] { return MusicSequenceGetTrackCount(sequence, number); },
        [this] { return MusicSequenceGetIndTrack(sequence, 0, other); },
        [this] { return MusicSequenceGetTrackIndex(sequence, track, number); },
        [this] { return MusicSequenceGetTempoTrack(sequence, other); },
        [this] { return MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 1, 480, bytes); },
        [this] {
            return MusicSequenceFileCreate(sequence, folder.path / "a.mid", kMusicSequenceFile_MIDIType, 1,
                                           480);
        },
        [this] {
            return MusicSequenceFileLoad(sequence, folder.path / "a.mid", kMusicSequenceFile_MIDIType, 0);
        },
        [this] { return MusicSequenceFileLoadData(sequence, bytes, kMusicSequenceFile_MIDIType, 0); },
        [this] { return NewMusicSequenceFromFile(folder.path / "a.mid", 0, sequence); },
        [this] { return NewMusicSequenceFromData(bytes, 0, sequence); },
        [this] { return MusicSequenceGetLoadWarnings(sequence, lines); },
        [this] { return MusicSequenceGetLoadDivision(sequence, division); },
        [this] { return MusicTrackGetProperty(track, kSequenceTrackProperty_TrackLength, &time, number); },
        [this] { return MusicTrackSetProperty(track, kSequenceTrackProperty_TrackLength, &time, 8); },
        [this] { return MusicTrackClear(track, 0.0, 9.0); },
        [this] { return MusicTrackCut(track, 0.0, 9.0); },
        [this] { return MusicTrackCopyInsert(track, 0.0, 1.0, track, 0.0); },
        [this] { return MusicTrackMerge(track, 0.0, 1.0, track, 0.0); },
        [this] { return MusicTrackMoveEvents(track, 0.0, 1.0, 1.0); },
        [this] { return MusicTrackNewMIDINoteEvent(track, 0.0, {}); },
        [this] { return MusicTrackNewMIDIChannelEvent(track, 0.0, {0xC0, 0, 0, 0}); },
        [this] { return tryRawData(track, 0.0, hex("F0 F7")); },
        [this] { return tryMeta(track, 0.0, 1, hex("41")); },
        [this] { return MusicTrackNewExtendedTempoEvent(tempoTrackOf(sequence), 0.0, 120.0); },
        [this] { return tryUserData(track, 0.0, hex("41")); },
        [this] { return MusicTrackNewExtendedNoteEvent(track, 0.0, {}); },
        [this] { return MusicTrackNewParameterEvent(track, 0.0, {}); },
        [this] { return MusicTrackNewAUPresetEvent(track, 0.0, {}); },
        [this] { return NewMusicEventIterator(track, iterator); },
        [this] { return DisposeMusicEventIterator(iterator); },
        [this] { return MusicEventIteratorHasCurrentEvent(iterator, flag); },
        [this] { return MusicEventIteratorHasNextEvent(iterator, flag); },
        [this] { return MusicEventIteratorNextEvent(iterator); },
        [this] { return MusicEventIteratorGetEventInfo(iterator, time, number, payload, number); },
        [this] { return MusicEventIteratorDeleteEvent(iterator); },
        [this] { return NewMusicPlayer(player); },
        [this] { return MusicPlayerSetSequence(player, sequence); },
        [this] { return MusicPlayerPreroll(player); },
        [this] { return MusicPlayerStart(player); },
    };
};

TEST_F(FaultPoints, EveryOperationCanBeMadeToFailAndThenDoesNothing)
{
    ASSERT_EQ(calls.size(), static_cast<std::size_t>(Operation::count));
    for (std::size_t i = 0; i < calls.size(); ++i) {
        setFault(static_cast<Operation>(i), {-1000 - static_cast<OSStatus>(i), 0, 1});
        EXPECT_EQ(calls[i](), -1000 - static_cast<OSStatus>(i));
    }
    EXPECT_NE(sequence, nullptr);
    EXPECT_NE(iterator, nullptr);
    EXPECT_EQ(player, nullptr);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(eventsOf(track), Lines{"0.0 note 0 60 100 0 1.0"});
    EXPECT_EQ(trackCountOf(sequence), 1U);
    EXPECT_EQ(bytes, Bytes{});
    EXPECT_EQ(folder.names(), Lines{});
}

TEST_F(FaultPoints, EveryOperationCanSeemToSucceedWithoutItsResult)
{
    for (std::size_t i = 0; i < calls.size(); ++i) {
        setFault(static_cast<Operation>(i), {noErr, 0, 1});
        EXPECT_EQ(calls[i](), noErr);
    }
    EXPECT_EQ(player, nullptr);
    EXPECT_EQ(payload, nullptr);
    EXPECT_EQ(eventsOf(track), Lines{"0.0 note 0 60 100 0 1.0"});
}

TEST_F(FaultPoints, AFaultMayComeLaterAndMoreThanOnce)
{
    setFault(Operation::MusicSequenceGetTrackCount, {-5, 2, 2});
    const std::vector<OSStatus> expected{noErr, noErr, -5, -5, noErr};
    for (const OSStatus status : expected) {
        EXPECT_EQ(MusicSequenceGetTrackCount(sequence, number), status);
    }
}

TEST_F(FaultPoints, AFaultMayStayUntilItIsCleared)
{
    setFault(Operation::MusicSequenceGetTrackCount, {-5, 0, -1});
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(MusicSequenceGetTrackCount(sequence, number), -5);
    }
    clearFaults();
    EXPECT_EQ(MusicSequenceGetTrackCount(sequence, number), noErr);
}

} // namespace

} // namespace volvelle::test
