#include "MIDISequences/realtime/AUMIDISequencerList.h"

#include "tests/MIDISequences/realtime/SequencerProbe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

using testing::IsNull;

class AUMIDISequencerListTest : public testing::Test {
protected:
    AUMIDISequencerListTest()
    {
        events.back()->id = 7;
        events.back()->beats = 1.5;
        events.back()->duration = 0.75;
        events.back()->meta = 3;
        events.back()->pEvent()->cable = 2;
    }

    AUMIDISequencerList list() const { return {{"a.mid", events}, nullptr}; }

    const std::vector<std::shared_ptr<AUMIDIEventEx>> events =
        eventsOf({{5, {0x92, 60, 100}}, {9, {0x85, 61, 9}}});
};

TEST_F(AUMIDISequencerListTest, WithoutAChannelItGivesItsOwnEvents)
{
    const auto made = list();
    EXPECT_EQ(made.events(), events);
    EXPECT_EQ(made.event(1), events[1]);
    EXPECT_THAT(made.event(2), IsNull());
}

TEST_F(AUMIDISequencerListTest, InAChannelItGivesCopiesThatAreTheSameButForTheStatus)
{
    auto made = list();
    made.setChannel(4);
    const auto copy = made.event(1);
    EXPECT_NE(copy, events[1]);
    EXPECT_EQ(copy->id, 7);
    EXPECT_EQ(copy->beats, 1.5);
    EXPECT_EQ(copy->duration, 0.75);
    EXPECT_EQ(copy->meta, 3);
    EXPECT_EQ(copy->event().cable, 2);
    EXPECT_EQ(copy->event().eventSampleTime, 9);
    EXPECT_EQ(copy->array(), (Bytes{9, 61, 9}));
    EXPECT_EQ(events[1]->array(), (Bytes{0x85, 61, 9}));
    ASSERT_EQ(made.events().size(), 2U);
    EXPECT_EQ(made.events()[1]->duration, 0.75);
    EXPECT_EQ(made.events()[0]->array(), (Bytes{6, 60, 100}));
    EXPECT_THAT(made.event(2), IsNull());
}

TEST_F(AUMIDISequencerListTest, ARowOfAnyLengthIsFreedWithoutEndingTheStack)
{
    auto row = std::make_unique<AUMIDISequencerList>(SequencerFile{}, nullptr);
    for (int i = 0; i < 500'000; ++i) {
        auto next = std::make_unique<AUMIDISequencerList>(SequencerFile{}, nullptr);
        next->next = std::move(row);
        row = std::move(next);
    }
    row.reset();
}

} // namespace

} // namespace volvelle::test
