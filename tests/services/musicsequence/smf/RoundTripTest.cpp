#include "services/musicsequence/smf/SMFWriter.h"

#include "base/Text.h"
#include "tests/services/musicsequence/SequenceTools.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace volvelle::test {

namespace {

// Starts with velocities and ends with release velocities of all notes in ticks of 480, sorted.
Lines startsAndEnds(const MusicTrack& track)
{
    Lines result;
    const MusicEventIterator iterator = iteratorOf(track);
    OSStatus status = noErr;
    while (status == noErr) {
        double time = 0.0;
        MusicEventType type = 0;
        const void* payload = nullptr;
        std::uint32_t size = 0;
        if (MusicEventIteratorGetEventInfo(iterator, time, type, payload, size) == noErr &&
            type == kMusicEventType_MIDINoteMessage) {
            const auto& note = *static_cast<const MIDINoteMessage*>(payload);
            const auto end = std::llround((time + static_cast<double>(note.duration)) * 480);
            result.push_back(concat("on ", note.channel, " ", note.note, " ", std::llround(time * 480), " ",
                                    std::max<int>(note.velocity, 1)));
            result.push_back(
                concat("off ", note.channel, " ", note.note, " ", end, " ", note.releaseVelocity));
        }
        status = MusicEventIteratorNextEvent(iterator);
    }
    std::ranges::sort(result);
    return result;
}

class Dice {
public:
    explicit Dice(unsigned seed) : random(seed) {}

    int below(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }

    double beats(int range) { return below(range * 960) / (below(2) == 0 ? 480.0 : 701.3); }

private:
    std::mt19937 random;
};

void addAny(Dice& dice, const MusicTrack& track)
{
    const double time = dice.beats(8);
    const int channel = dice.below(3);
    switch (dice.below(8)) {
    case 0:
        addMessage(track, time, 0xB0 | channel, dice.below(128), dice.below(128));
        break;
    case 1:
        addMessage(track, time, 0xC0 | channel, dice.below(128));
        break;
    case 2:
        addMeta(track, time, static_cast<std::uint8_t>(1 + dice.below(9)),
                Bytes(static_cast<std::size_t>(dice.below(300)), 65));
        break;
    case 3:
        addRawData(track, time, dice.below(2) == 0 ? hex("F0 01 02 F7") : hex("01 02 F7"));
        break;
    default:
        addNote(track, time, 60 + dice.below(3), static_cast<float>(dice.beats(3)), channel, dice.below(128),
                dice.below(2) * dice.below(128));
    }
}

MusicSequence anySequence(unsigned seed)
{
    Dice dice(seed);
    const MusicSequence sequence = newSequence();
    for (int i = dice.below(3); i > 0; --i) {
        addTempo(sequence, dice.beats(8), 30.0 + dice.beats(100));
    }
    for (int i = 1 + dice.below(4); i > 0; --i) {
        const MusicTrack track = newTrack(sequence);
        for (int j = dice.below(60); j > 0; --j) {
            addAny(dice, track);
        }
        setLength(track, dice.beats(12));
    }
    return sequence;
}

TEST(RoundTrip, ASecondWriteGivesTheSameBytes)
{
    for (unsigned seed = 0; seed < 400; ++seed) {
        const Bytes first = save(anySequence(seed));
        const MusicSequence again = load(first);
        EXPECT_EQ(warningsOf(again), Lines{});
        ASSERT_EQ(save(again), first) << "seed " << seed;
    }
}

TEST(RoundTrip, ASecondWriteAtACoarseResolutionGivesTheSameBytesToo)
{
    for (unsigned seed = 0; seed < 400; ++seed) {
        const Bytes first = save(anySequence(seed), 3);
        ASSERT_EQ(save(load(first), 3), first) << "seed " << seed;
    }
}

TEST(RoundTrip, ASecondWriteIntoASingleTrackGivesTheSameBytes)
{
    for (unsigned seed = 0; seed < 400; ++seed) {
        Bytes first;
        EXPECT_EQ(writeSMF(anySequence(seed), SMFFormat::SingleTrack, 480, first), noErr);
        const Bytes multi = save(load(first));
        ASSERT_EQ(save(load(multi)), multi) << "seed " << seed;
    }
}

TEST(RoundTrip, StartsAndEndsOfAllNotesComeBack)
{
    for (unsigned seed = 0; seed < 400; ++seed) {
        const MusicSequence sequence = anySequence(seed);
        const MusicSequence again = load(save(sequence));
        ASSERT_EQ(trackCountOf(again), trackCountOf(sequence));
        for (std::uint32_t i = 0; i < trackCountOf(sequence); ++i) {
            ASSERT_EQ(startsAndEnds(trackOf(again, i)), startsAndEnds(trackOf(sequence, i)))
                << "seed " << seed;
        }
    }
}

TEST(RoundTrip, EveryReleaseVelocityComesBack)
{
    const MusicSequence sequence = newSequence();
    const MusicTrack track = newTrack(sequence);
    for (int i = 0; i < 128; ++i) {
        addNote(track, i, 60, 1.0F, 0, 100, i);
    }
    EXPECT_EQ(eventsOf(trackOf(load(save(sequence)), 0)), eventsOf(track));
}

TEST(RoundTrip, NestedNotesOfOneKeyComeBackPairedFirstInFirstOut)
{
    const MusicSequence sequence = newSequence();
    const MusicTrack track = newTrack(sequence);
    addNote(track, 0.0, 60, 4.0F, 0, 100, 1);
    addNote(track, 1.0, 60, 1.0F, 0, 90, 2);
    EXPECT_EQ(eventsOf(trackOf(load(save(sequence)), 0)),
              (Lines{"0.0 note 0 60 100 2 2.0", "1.0 note 0 60 90 1 3.0"}));
}

TEST(RoundTrip, SystemMessagesComeBackAsRawData)
{
    const MusicSequence sequence = newSequence();
    addMessage(newTrack(sequence), 0.0, 0xF2, 1, 2);
    const MusicSequence again = load(save(sequence));
    EXPECT_EQ(eventsOf(trackOf(again, 0)), Lines{"0.0 raw F2 01 02"});
    EXPECT_EQ(save(again), save(sequence));
}

TEST(RoundTrip, LongGapsAndLongNotesComeBack)
{
    const MusicSequence sequence = newSequence();
    const MusicTrack track = newTrack(sequence);
    addNote(track, 2.0e6, 60, 8192.5F);
    addMessage(track, 3.0e6, 0xC0, 1);
    setLength(track, 4.0e6);
    const MusicSequence again = load(save(sequence));
    EXPECT_EQ(eventsOf(trackOf(again, 0)), eventsOf(track));
    EXPECT_EQ(lengthOf(trackOf(again, 0)), 4.0e6);
    EXPECT_EQ(save(again), save(sequence));
}

TEST(RoundTrip, ChannelsToTracksComesToRestAfterOneLoad)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        const Bytes first = save(load(save(anySequence(seed)), kMusicSequenceLoadSMF_ChannelsToTracks));
        ASSERT_EQ(save(load(first, kMusicSequenceLoadSMF_ChannelsToTracks)), first) << "seed " << seed;
    }
}

} // namespace

} // namespace volvelle::test
