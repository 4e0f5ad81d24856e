#include "tests/services/musicsequence/SequenceTools.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace volvelle::test {

namespace {

bool hasCurrent(const MusicEventIterator& iterator)
{
    bool flag = false;
    EXPECT_EQ(MusicEventIteratorHasCurrentEvent(iterator, flag), noErr);
    return flag;
}

bool hasNext(const MusicEventIterator& iterator)
{
    bool flag = false;
    EXPECT_EQ(MusicEventIteratorHasNextEvent(iterator, flag), noErr);
    return flag;
}

// The time of the current event, -1 without one.
double timeOf(const MusicEventIterator& iterator)
{
    double time = -1.0;
    MusicEventType type = 0;
    const void* payload = nullptr;
    std::uint32_t size = 0;
    MusicEventIteratorGetEventInfo(iterator, time, type, payload, size);
    return time;
}

class MusicEventIterators : public testing::Test {
protected:
    void addBeats(int count)
    {
        for (int i = 0; i < count; ++i) {
            addNote(track, i, 60);
        }
    }

    MusicSequence sequence = newSequence();
    MusicTrack track = newTrack(sequence);
};

TEST_F(MusicEventIterators, OnAnEmptyTrackThereIsNoCurrentEvent)
{
    const MusicEventIterator iterator = iteratorOf(track);
    EXPECT_FALSE(hasCurrent(iterator));
    EXPECT_FALSE(hasNext(iterator));
    EXPECT_EQ(MusicEventIteratorNextEvent(iterator), kAudioToolboxErr_EndOfTrack);
    EXPECT_EQ(MusicEventIteratorDeleteEvent(iterator), kAudioToolboxErr_EndOfTrack);
    double time = 7.0;
    MusicEventType type = 7;
    const void* payload = &time;
    std::uint32_t size = 7;
    EXPECT_EQ(MusicEventIteratorGetEventInfo(iterator, time, type, payload, size),
              kAudioToolboxErr_EndOfTrack);
    EXPECT_EQ(time, 7.0);
    EXPECT_EQ(type, 7U);
    EXPECT_EQ(payload, &time);
    EXPECT_EQ(size, 7U);
}

TEST_F(MusicEventIterators, SteppingPastTheLastEventLeavesItBehindTheEnd)
{
    addBeats(2);
    const MusicEventIterator iterator = iteratorOf(track);
    EXPECT_TRUE(hasNext(iterator));
    EXPECT_EQ(MusicEventIteratorNextEvent(iterator), noErr);
    EXPECT_TRUE(hasCurrent(iterator));
    EXPECT_FALSE(hasNext(iterator));
    EXPECT_EQ(MusicEventIteratorNextEvent(iterator), kAudioToolboxErr_EndOfTrack);
    EXPECT_FALSE(hasCurrent(iterator));
    EXPECT_EQ(MusicEventIteratorNextEvent(iterator), kAudioToolboxErr_EndOfTrack);
}

TEST_F(MusicEventIterators, DeletingStandsOnTheEventThatFollowed)
{
    addBeats(3);
    const MusicEventIterator iterator = iteratorOf(track);
    MusicEventIteratorNextEvent(iterator);
    EXPECT_EQ(MusicEventIteratorDeleteEvent(iterator), noErr);
    EXPECT_EQ(timeOf(iterator), 2.0);
    EXPECT_FALSE(hasNext(iterator));
    EXPECT_EQ(MusicEventIteratorDeleteEvent(iterator), noErr);
    EXPECT_FALSE(hasCurrent(iterator));
    EXPECT_EQ(eventsOf(track).size(), 1U);
}

TEST_F(MusicEventIterators, AWalkThatDeletesEverythingLeavesNothing)
{
    addBeats(100'000);
    const MusicEventIterator iterator = iteratorOf(track);
    int count = 0;
    while (hasCurrent(iterator)) {
        ASSERT_EQ(MusicEventIteratorDeleteEvent(iterator), noErr);
        ++count;
    }
    EXPECT_EQ(count, 100'000);
    EXPECT_EQ(eventsOf(track), Lines{});
}

TEST_F(MusicEventIterators, AHundredThousandDeletionsByFreshIteratorsAreFast)
{
    addBeats(100'000);
    const MusicEventIterator first = iteratorOf(track);
    for (int i = 0; i < 99'999; ++i) {
        const MusicEventIterator iterator = iteratorOf(track);
        MusicEventIteratorNextEvent(iterator);
        ASSERT_EQ(MusicEventIteratorDeleteEvent(iterator), noErr);
    }
    EXPECT_EQ(timeOf(first), 0.0);
    EXPECT_FALSE(hasNext(first));
}

TEST_F(MusicEventIterators, AnotherIteratorOnADeletedEventStandsOnTheOneThatFollowed)
{
    addBeats(4);
    const MusicEventIterator other = iteratorOf(track);
    MusicEventIteratorNextEvent(other);
    EXPECT_EQ(MusicTrackClear(track, 0.5, 2.5), noErr);
    EXPECT_EQ(timeOf(other), 3.0);
    EXPECT_EQ(MusicTrackClear(track, 2.5, 10.0), noErr);
    EXPECT_FALSE(hasCurrent(other));
}

TEST_F(MusicEventIterators, AnIteratorKeepsToItsEventWhenOthersComeAndMove)
{
    addBeats(4);
    const MusicEventIterator iterator = iteratorOf(track);
    MusicEventIteratorNextEvent(iterator);
    addNote(track, 0.5, 60);
    EXPECT_EQ(timeOf(iterator), 1.0);
    EXPECT_EQ(MusicTrackMoveEvents(track, 0.0, 0.75, 8.0), noErr);
    EXPECT_EQ(timeOf(iterator), 1.0);
    EXPECT_EQ(MusicTrackMoveEvents(track, 1.0, 1.5, 20.0), noErr);
    EXPECT_EQ(timeOf(iterator), 21.0);
    EXPECT_FALSE(hasNext(iterator));
    EXPECT_EQ(MusicTrackCut(track, 2.0, 3.0), noErr);
    EXPECT_EQ(timeOf(iterator), 20.0);
}

TEST_F(MusicEventIterators, AnIteratorBehindTheEndStaysThere)
{
    const MusicEventIterator iterator = iteratorOf(track);
    addBeats(4);
    EXPECT_FALSE(hasCurrent(iterator));
}

TEST_F(MusicEventIterators, AnIteratorOnADeletedLastEventStaysBehindTheEnd)
{
    addBeats(3);
    const MusicEventIterator iterator = iteratorOf(track);
    const MusicEventIterator eraser = iteratorOf(track);
    for (const MusicEventIterator& each : {iterator, eraser}) {
        EXPECT_EQ(MusicEventIteratorNextEvent(each), noErr);
        EXPECT_EQ(MusicEventIteratorNextEvent(each), noErr);
    }
    EXPECT_EQ(MusicEventIteratorDeleteEvent(eraser), noErr);
    addNote(track, 9.0, 60);
    EXPECT_FALSE(hasCurrent(iterator));
    EXPECT_FALSE(hasCurrent(eraser));
}

TEST_F(MusicEventIterators, AnIteratorOnAClearedTrackStaysBehindTheEnd)
{
    addBeats(100);
    const MusicEventIterator iterator = iteratorOf(track);
    for (int i = 0; i < 98; ++i) {
        EXPECT_EQ(MusicEventIteratorNextEvent(iterator), noErr);
    }
    EXPECT_EQ(MusicTrackClear(track, 0.0, 200.0), noErr);
    addNote(track, 1.0, 60);
    addNote(track, 0.0, 60);
    EXPECT_FALSE(hasCurrent(iterator));
    EXPECT_EQ(MusicEventIteratorNextEvent(iterator), kAudioToolboxErr_EndOfTrack);
}

TEST_F(MusicEventIterators, AnIteratorOnADeletedEventStandsOnTheOneThatFollowedWhateverComesBetween)
{
    addBeats(4);
    const MusicEventIterator iterator = iteratorOf(track);
    EXPECT_EQ(MusicEventIteratorNextEvent(iterator), noErr);
    EXPECT_EQ(MusicTrackClear(track, 1.0, 2.0), noErr);
    addNote(track, 1.5, 60);
    EXPECT_EQ(timeOf(iterator), 2.0);
}

TEST_F(MusicEventIterators, AnIteratorSeesWhatIsSortedInBehindDeletedEvents)
{
    addBeats(6);
    const MusicEventIterator iterator = iteratorOf(track);
    const MusicEventIterator eraser = iteratorOf(track);
    MusicEventIteratorNextEvent(eraser);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(MusicEventIteratorDeleteEvent(eraser), noErr);
    }
    EXPECT_TRUE(hasNext(iterator));
    addNote(track, 2.0, 61);
    EXPECT_EQ(MusicEventIteratorNextEvent(iterator), noErr);
    EXPECT_EQ(timeOf(iterator), 2.0);
    EXPECT_EQ(timeOf(eraser), 4.0);
}

TEST_F(MusicEventIterators, WithoutATrackOrAnIteratorEverythingAnswersNoSequence)
{
    MusicEventIterator none;
    bool flag = false;
    double time = 0.0;
    MusicEventType type = 0;
    const void* payload = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(NewMusicEventIterator(nullptr, none), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(DisposeMusicEventIterator(none), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicEventIteratorHasCurrentEvent(none, flag), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicEventIteratorHasNextEvent(none, flag), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicEventIteratorNextEvent(none), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicEventIteratorGetEventInfo(none, time, type, payload, size), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicEventIteratorDeleteEvent(none), kAudioToolboxErr_NoSequence);
}

// A track beside a plain list of times that does the same by the simplest means.
TEST_F(MusicEventIterators, RandomEditsLeaveWhatAPlainListWouldHold)
{
    std::mt19937 random(20'240'601);
    std::vector<std::pair<double, int>> model;
    for (int round = 0; round < 4000; ++round) {
        const auto dice = random() % 10;
        if (dice < 6) {
            const auto time = static_cast<double>(random() % 64);
            const int number = round % 128;
            addNote(track, time, number);
            const auto place = std::ranges::upper_bound(model, time, {}, &std::pair<double, int>::first);
            model.insert(place, {time, number});
        } else if (!model.empty()) {
            const MusicEventIterator iterator = iteratorOf(track);
            std::size_t index = random() % model.size();
            for (std::size_t i = 0; i < index; ++i) {
                ASSERT_EQ(MusicEventIteratorNextEvent(iterator), noErr);
            }
            for (std::size_t i = 0; i < dice - 5U && index < model.size(); ++i) {
                ASSERT_EQ(timeOf(iterator), model[index].first);
                ASSERT_EQ(MusicEventIteratorDeleteEvent(iterator), noErr);
                model.erase(model.begin() + static_cast<std::ptrdiff_t>(index));
            }
            ASSERT_EQ(timeOf(iterator), index < model.size() ? model[index].first : -1.0);
        }
    }
    const Lines lines = eventsOf(track);
    ASSERT_EQ(lines.size(), model.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string expected = std::to_string(static_cast<int>(model[i].first)) + ".0 note 0 " +
                                     std::to_string(model[i].second) + " 100 0 1.0";
        EXPECT_EQ(lines[i], expected);
    }
}

} // namespace

} // namespace volvelle::test
