#include "MIDISequences/realtime/RenderEventStamps.h"
#include "tests/MIDISequences/realtime/SequencerProbe.h"
#include "tests/support/RealtimeGuard.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

using Stamps = std::vector<std::int64_t>;

// The stamps that a chain of such stamps has afterwards, for 512 frames from 1000 on.
Stamps inOrder(const Stamps& stamps, int cleanupCount = 0)
{
    std::vector<AURenderEvent> records(stamps.size());
    for (std::size_t i = 0; i < stamps.size(); ++i) {
        records[i].head.eventSampleTime = stamps[i];
        records[i].head.next = i + 1 < stamps.size() ? &records[i + 1] : nullptr;
    }
    {
        const RealtimeGuard guard;
        stampInOrder(records.empty() ? nullptr : records.data(), cleanupCount, 1000, 512);
    }
    Stamps result;
    for (const AURenderEvent* record = records.data(); !records.empty() && record != nullptr;
         record = record->head.next) {
        result.push_back(record->head.eventSampleTime);
    }
    return result;
}

TEST(RenderEventStamps, WhatIsInOrderWithinTheBlockStays)
{
    EXPECT_EQ(inOrder({}), Stamps{});
    EXPECT_EQ(inOrder({1000, 1000, 1003, 1511}), (Stamps{1000, 1000, 1003, 1511}));
}

TEST(RenderEventStamps, WhatEndsNotesSoundsFirstWhateverItsStamp)
{
    EXPECT_EQ(inOrder({0, 90'000, 1400, 1500}, 2), (Stamps{1000, 1000, 1400, 1500}));
    EXPECT_EQ(inOrder({9000, 9000}, 2), (Stamps{1000, 1000}));
    EXPECT_EQ(inOrder({9000}, 3), Stamps{1000});
}

TEST(RenderEventStamps, NoneSoundsLaterThanOneBehindIt)
{
    EXPECT_EQ(inOrder({1000, 1001, 1002, 1001, 1500, 1200}), (Stamps{1000, 1001, 1001, 1001, 1200, 1200}));
}

TEST(RenderEventStamps, WhatIsLateSoundsFirstAndAllBeforeItToo)
{
    EXPECT_EQ(inOrder({1200, AUMIDISequencer::immediateTime, 1300}), (Stamps{1000, 1000, 1300}));
}

TEST(RenderEventStamps, WhatIsStampedBehindTheBlockBelongsToTheNext)
{
    EXPECT_EQ(inOrder({1511, 1512, 1513, 9000}), (Stamps{1511, 1512, 1512, 1512}));
}

TEST(RenderEventStamps, WhatWasSentAtAStartDoesNotUndoTheFilesProgram)
{
    SequencerProbe sequencer;
    sequencer.load({{0, {0xC3, 5}}, {0, {0x93, 60, 1}}, {90'000, {0xB0, 7, 1}}});
    sequencer.start(0);
    AURenderEvent* const chain = sequencer.process(512, 512);
    stampInOrder(chain, sequencer.cleanupCount, 512, 512);
    const StampedEvents played = stampedOf(chain);
    ASSERT_EQ(played.size(), 82U);
    for (const Stamped& event : played) {
        EXPECT_EQ(event.frame, 512);
    }
    EXPECT_EQ(played[80], (Stamped{512, {0xC3, 5}}));
}

} // namespace

} // namespace volvelle::test
