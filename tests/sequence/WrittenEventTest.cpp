#include "tests/sequence/WrittenEvent.h"
#include "tests/sequence/SequenceFixture.h"

// What every pair of createXEvent and createXMessage has in common, over the table of them all.
namespace volvelle::test {
namespace {

class WrittenEventTest : public SequenceTest, public testing::WithParamInterface<WrittenEvent> {
protected:
    void SetUp() override
    {
        sequence->create(4);
        sequence->delegate = listener;
    }

    const WrittenEvent& row() const { return GetParam(); }

    // The node that stands alone in the tree.
    std::shared_ptr<EventNode> onlyNode() const
    {
        const auto track = sequence->sequenceNode->tracks.at(static_cast<std::size_t>(row().track));
        return track->events.size() == 1 ? track->events.front() : nullptr;
    }

    int eventsOfTheSequence() const
    {
        int count = 0;
        for (int i = 0; i < 4; ++i) {
            count += static_cast<int>(contents(sequence->MIDISequence::getTrack(i)).size());
        }
        return count;
    }
};

TEST_P(WrittenEventTest, StandsAsANodeAndAsARecordOnTheTrackOfItsChannel)
{
    row().create(*sequence);
    ASSERT_NE(onlyNode(), nullptr);
    EXPECT_EQ(describe(*onlyNode()), row().node);
    EXPECT_EQ(contents(sequence->getTrack(row().track)), Lines{row().record});
    EXPECT_EQ(eventsOfTheSequence(), 1);
    EXPECT_EQ(sequence->getLength(), 8.0);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_P(WrittenEventTest, IsToldToTheListenerOnceWhenTheMainQueueIsDrained)
{
    row().create(*sequence);
    EXPECT_TRUE(listener->calls.empty());
    mainQueue().drain();
    ASSERT_EQ(listener->names(), std::vector<std::string>{row().call});
    EXPECT_EQ(listener->calls.front().event, onlyNode());
}

TEST_P(WrittenEventTest, StaysInTheTreeWhereItsWritingFails)
{
    fail(row().operation);
    row().create(*sequence);
    EXPECT_EQ(console.take(), reported("MIDISequence::Fehler: -7. \n" + row().failure));
    EXPECT_TRUE(listener->calls.empty());
    EXPECT_EQ(eventsOfTheSequence(), 0);
    ASSERT_NE(onlyNode(), nullptr);
    EXPECT_EQ(describe(*onlyNode()), row().node);
    EXPECT_EQ(sequence->getLength(), 8.0);
}

TEST_P(WrittenEventTest, EndsWithALineWhereThereIsNoTrack)
{
    sequence->losesTracks = true;
    row().create(*sequence);
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: Die Spur ist undefiniert."});
    EXPECT_TRUE(listener->calls.empty());
    EXPECT_EQ(eventsOfTheSequence(), 0);
    EXPECT_NE(onlyNode(), nullptr);
    EXPECT_EQ(sequence->getLength(), 0.0);
}

TEST_P(WrittenEventTest, IsWrittenWithoutAListenerToo)
{
    sequence->delegate.reset();
    row().create(*sequence);
    mainQueue().drain();
    EXPECT_EQ(contents(sequence->getTrack(row().track)), Lines{row().record});
    EXPECT_TRUE(listener->calls.empty());
}

TEST_P(WrittenEventTest, IsWrittenForAListenerThatTakesNothing)
{
    const auto plain = std::make_shared<SequenceFoundDelegate>();
    sequence->delegate = plain;
    row().create(*sequence);
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_EQ(contents(sequence->getTrack(row().track)), Lines{row().record});
    EXPECT_EQ(plain.use_count(), 1);
}

TEST_P(WrittenEventTest, IsWrittenAgainFromItsNode)
{
    MIDISequence source;
    source.create(4);
    row().create(source);
    const auto node = source.sequenceNode->tracks.at(static_cast<std::size_t>(row().track))->events.at(0);
    console.take();
    sequence->eventsToMusicTrack(node, sequence->getTrack(0));
    EXPECT_EQ(contents(sequence->getTrack(row().track)), Lines{row().record});
    EXPECT_EQ(eventsOfTheSequence(), 1);
    Lines info{"MIDISequence::Info: ."};
    if (row().name == "Note") {
        info = {"MIDISequence::Info: Eine Note wurde hinzugefügt."};
    } else if (row().name == "PolyphonicPressure") {
        info = {"MIDISequence::Info: Es wurde ein Polyphonic Aftertouch Event hinzugefügt."};
    } else if (row().name.starts_with("Meta")) {
        info.clear();
    }
    EXPECT_EQ(console.take(), info);
    EXPECT_EQ(listener->names(), std::vector<std::string>{row().call});
}

INSTANTIATE_TEST_SUITE_P(Every, WrittenEventTest, testing::ValuesIn(writtenEvents()),
                         [](const auto& each) { return each.param.name; });

} // namespace
} // namespace volvelle::test
