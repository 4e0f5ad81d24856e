#include "tests/services/musicsequence/PlainTrack.h"
#include "tests/services/musicsequence/SequenceTools.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <utility>

namespace volvelle::test {

namespace {

// The time of an event and the value in its first four bytes.
using TimedValue = std::pair<double, int>;

constexpr TimedValue behindEnd{-1.0, -1};

TimedValue currentOf(const MusicEventIterator& iterator)
{
    TimedValue result = behindEnd;
    MusicEventType type = 0;
    const void* payload = nullptr;
    std::uint32_t size = 0;
    if (MusicEventIteratorGetEventInfo(iterator, result.first, type, payload, size) == noErr) {
        std::memcpy(&result.second, &static_cast<const MIDIRawData*>(payload)->data[0], sizeof(int));
    }
    return result;
}

std::vector<TimedValue> allOf(const MusicTrack& track)
{
    std::vector<TimedValue> result;
    const MusicEventIterator iterator = iteratorOf(track);
    for (TimedValue value = currentOf(iterator); value != behindEnd; value = currentOf(iterator)) {
        result.push_back(value);
        MusicEventIteratorNextEvent(iterator);
    }
    return result;
}

// A track beside a plain one. Every edit is made on both, with iterators that live through many edits and are
// looked at now and then only.
class EditedTrack {
public:
    explicit EditedTrack(unsigned seed) : random(seed) {}

    void edit();
    void compare();

private:
    using Edit = void (EditedTrack::*)();

    void add();
    void changeIterators();
    void step();
    void erase();
    void clear();
    void cut();
    void copy();
    void move();

    double beat(int count) { return std::uniform_int_distribution(0, count - 1)(random); }

    std::size_t anyIterator() { return random() % iterators.size(); }

    std::pair<double, double> span(int greatest)
    {
        const double start = beat(40);
        return {start, start + beat(greatest + 1)};
    }

    std::mt19937 random;
    MusicSequence sequence = newSequence();
    MusicTrack track = newTrack(sequence);
    PlainTrack plain;
    std::vector<MusicEventIterator> iterators;
};

void EditedTrack::edit()
{
    constexpr std::array<Edit, 14> edits{&EditedTrack::add,   &EditedTrack::add,
                                         &EditedTrack::add,   &EditedTrack::add,
                                         &EditedTrack::add,   &EditedTrack::erase,
                                         &EditedTrack::erase, &EditedTrack::erase,
                                         &EditedTrack::step,  &EditedTrack::changeIterators,
                                         &EditedTrack::clear, &EditedTrack::cut,
                                         &EditedTrack::copy,  &EditedTrack::move};
    (this->*edits.at(random() % edits.size()))();
    EXPECT_EQ(lengthOf(track), plain.length);
}

void EditedTrack::compare()
{
    for (std::size_t i = 0; i < iterators.size(); ++i) {
        const PlainTrack::Event* const event = plain.current(i);
        const TimedValue expected = event == nullptr ? behindEnd : TimedValue(event->time, event->value);
        ASSERT_EQ(currentOf(iterators[i]), expected) << "iterator " << i;
        bool hasNext = false;
        ASSERT_EQ(MusicEventIteratorHasNextEvent(iterators[i], hasNext), noErr);
        ASSERT_EQ(hasNext, event != nullptr && event != &plain.events.back()) << "iterator " << i;
    }
    std::vector<TimedValue> expected;
    for (const PlainTrack::Event& event : plain.events) {
        expected.emplace_back(event.time, event.value);
    }
    ASSERT_EQ(allOf(track), expected);
}

// Records of 4 to 23 bytes stand in the event or in the arena.
void EditedTrack::add()
{
    const int value = static_cast<int>(random() % 1'000'000);
    const double time = beat(40);
    Bytes bytes(4 + random() % 20);
    std::memcpy(bytes.data(), &value, sizeof(value));
    addRawData(track, time, bytes);
    plain.add(time, value);
}

void EditedTrack::changeIterators()
{
    if (iterators.size() < 6) {
        iterators.push_back(iteratorOf(track));
        plain.addIterator();
    } else {
        const std::size_t i = anyIterator();
        iterators.erase(iterators.begin() + static_cast<std::ptrdiff_t>(i));
        plain.removeIterator(i);
    }
}

void EditedTrack::step()
{
    if (iterators.empty()) {
        return;
    }
    const std::size_t i = anyIterator();
    const bool steps = plain.iterators[i] && plain.current(i) != &plain.events.back();
    EXPECT_EQ(MusicEventIteratorNextEvent(iterators[i]), steps ? noErr : kAudioToolboxErr_EndOfTrack);
    if (plain.iterators[i]) {
        plain.step(i);
    }
}

void EditedTrack::erase()
{
    if (iterators.empty()) {
        return;
    }
    const std::size_t i = anyIterator();
    const bool erases = plain.iterators[i].has_value();
    EXPECT_EQ(MusicEventIteratorDeleteEvent(iterators[i]), erases ? noErr : kAudioToolboxErr_EndOfTrack);
    if (erases) {
        plain.erase(i);
    }
}

void EditedTrack::clear()
{
    const auto [start, end] = span(random() % 16 == 0 ? 60 : 4);
    EXPECT_EQ(MusicTrackClear(track, start, end), noErr);
    plain.clear(start, end);
}

void EditedTrack::cut()
{
    const auto [start, end] = span(3);
    EXPECT_EQ(MusicTrackCut(track, start, end), noErr);
    plain.cut(start, end);
}

void EditedTrack::copy()
{
    const auto [start, end] = span(2);
    const double at = beat(40);
    if (random() % 2 == 0) {
        EXPECT_EQ(MusicTrackMerge(track, start, end, track, at), noErr);
        plain.merge(start, end, at);
    } else {
        EXPECT_EQ(MusicTrackCopyInsert(track, start, end, track, at), noErr);
        plain.copyInsert(start, end, at);
    }
}

void EditedTrack::move()
{
    const auto [start, end] = span(6);
    const double by = beat(20) - 10.0;
    const OSStatus expected = plain.move(start, end, by) ? noErr : kAudioToolboxErr_StartOfTrack;
    EXPECT_EQ(MusicTrackMoveEvents(track, start, end, by), expected);
}

class MusicEventIteratorEdits : public testing::TestWithParam<unsigned> {};

TEST_P(MusicEventIteratorEdits, IteratorsThatLiveThroughEditsStandWhereAPlainListHasThem)
{
    EditedTrack edited(GetParam());
    std::mt19937 random(GetParam() + 1000);
    for (int round = 0; round < 1500; ++round) {
        edited.edit();
        if (random() % 8 == 0) {
            edited.compare();
        }
        ASSERT_FALSE(testing::Test::HasFailure()) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, MusicEventIteratorEdits, testing::Range(1U, 41U));

} // namespace

} // namespace volvelle::test
