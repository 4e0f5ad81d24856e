#include "tests/MIDISequences/realtime/EventList.h"
#include "tests/MIDISequences/realtime/SequencerProbe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

using testing::ElementsAre;

class AUMIDISequencerRecords : public testing::Test {
protected:
    // A note on cable 4 and an exclusive on cable 5, from sample 100 on.
    void load()
    {
        auto events = eventsOf({{100, {0x92, 60, 90}}, {200, {0xF0, 1, 2, 3, 0xF7}}, {90'000, {0xB0, 1, 1}}});
        events[0]->pEvent()->cable = 4;
        events[1]->pEvent()->cable = 5;
        sequencer.load(std::move(events));
        sequencer.startClean(1000);
    }

    SequencerProbe sequencer;
    const ListEvent note{.stamp = 1100, .bytes = {0x92, 60, 90}, .cable = 4};
    const ListEvent exclusive{
        .stamp = 1200, .bytes = {0xF0, 1, 2, 3, 0xF7}, .cable = 5, .type = AURenderEventMIDISysEx};
};

TEST_F(AUMIDISequencerRecords, EachKeepsTheCableAndTheTypeOfItsEvent)
{
    load();
    EXPECT_THAT(toldBy(sequencer.process(1000, 512)), ElementsAre(note, exclusive));
}

TEST_F(AUMIDISequencerRecords, ThePlainFormKeepsThemToo)
{
    load();
    const std::vector<AUMIDIEvent>& records = sequencer.processInternal(1000, 512);
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].cable, 4);
    EXPECT_EQ(records[0].eventType, AURenderEventMIDI);
    EXPECT_EQ(records[1].cable, 5);
    EXPECT_EQ(records[1].eventType, AURenderEventMIDISysEx);
}

TEST_F(AUMIDISequencerRecords, WhatEndsANoteHasItsCableAndType)
{
    load();
    sequencer.process(1000, 512);
    sequencer.seeking = true;
    ListEvent end = note;
    end.stamp = 100;
    end.bytes[2] = 0;
    EXPECT_THAT(toldBy(sequencer.process(1512, 512)), ElementsAre(end));
}

TEST_F(AUMIDISequencerRecords, NoneIsLongerThanItsEventAndSoIsWhatEndsANote)
{
    auto events = eventsOf({{100, {0x92, 60, 90}}, {90'000, {0xB0, 1, 1}}});
    events[0]->pEvent()->length = 200;
    sequencer.load(std::move(events));
    sequencer.startClean(1000);
    EXPECT_THAT(sequencer.play(1000, 512), ElementsAre(Stamped{1100, {0x92, 60, 90}}));
    sequencer.seeking = true;
    EXPECT_THAT(sequencer.play(1512, 512), ElementsAre(Stamped{100, {0x92, 60, 0}}));
}

TEST_F(AUMIDISequencerRecords, WhatIsSentHasTheCableOfTheSequencerOrForDataNone)
{
    sequencer.cable = 6;
    sequencer.sendEvent(2, 0x90, 60, 1);
    sequencer.sendEvent({0xF0, 1, 2, 0xF7});
    EXPECT_THAT(
        toldBy(sequencer.process(50, 512)),
        ElementsAre(
            ListEvent{.stamp = 50, .bytes = {0x92, 60, 1}, .cable = 6},
            ListEvent{.stamp = 51, .bytes = {0xF0, 1, 2, 0xF7}, .cable = 0, .type = AURenderEventMIDISysEx}));
}

} // namespace

} // namespace volvelle::test
