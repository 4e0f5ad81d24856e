#include "midi/EventNodes.h"
#include "midi/SequenceNode.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using Lines = std::vector<std::string>;
using test::ConsoleCapture;

TEST(TrackNode, StartsWithTextsOfItsOwn)
{
    const TrackNode track;
    EXPECT_EQ(track.text, "Spur Beschreibung");
    EXPECT_EQ(track.name, "Spur Name");
    EXPECT_EQ(track.cue, "Abspielmarke");
    EXPECT_FALSE(track.isTempoTrack);
    EXPECT_TRUE(track.patterns.empty());
}

TEST(TrackNode, LinksEventsToItselfAndToNoPattern)
{
    SequenceNode::counter = 5;
    TrackNode track;
    const auto event = std::make_shared<UnknownEvent>();
    EXPECT_EQ(track.addEvent(event), 5);
    EXPECT_EQ(event->track, &track);
    EXPECT_EQ(event->pattern, nullptr);
    EXPECT_EQ(SequenceNode::counter, 6);
}

TEST(TrackNode, TakesOneNumberForAPatternAndLinksItsEvents)
{
    SequenceNode sequence;
    const auto track = sequence.tracks.front();
    const auto pattern = std::make_shared<PatternNode>();
    const auto event = std::make_shared<UnknownEvent>();
    pattern->addEvent(event);
    EXPECT_EQ(SequenceNode::counter, 2);
    EXPECT_EQ(track->addPattern(pattern), 0);
    EXPECT_EQ(SequenceNode::counter, 3);
    EXPECT_EQ(pattern->sequence, &sequence);
    EXPECT_EQ(pattern->track, track.get());
    EXPECT_EQ(event->track, track.get());
    EXPECT_EQ(event->pattern, pattern.get());
    EXPECT_EQ(track->getPatternCount(), 1);
}

TEST(TrackNode, FindsAPatternOrGivesAFreshOne)
{
    TrackNode track;
    const auto fresh = track.getPattern(0);
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(fresh->className(), "PatternNode");
    EXPECT_EQ(track.getPatternCount(), 0);
    const auto pattern = std::make_shared<PatternNode>();
    track.addPattern(pattern);
    EXPECT_EQ(track.getPattern(0), pattern);
    EXPECT_EQ(track.patternChildWithUID(0), pattern);
    EXPECT_NE(track.patternChildWithUID(1), pattern);
    EXPECT_EQ(track.patternChildAtIndex(0), pattern);
    EXPECT_EQ(track.patternChildren(), std::vector{pattern});
}

TEST(TrackNode, RemovesPatternsByNumberByObjectAndByIndex)
{
    TrackNode track;
    std::vector<std::shared_ptr<PatternNode>> patterns;
    for (int i = 0; i < 3; ++i) {
        patterns.push_back(std::make_shared<PatternNode>());
        track.addPattern(patterns.back());
    }
    EXPECT_TRUE(track.removePattern(*patterns[1]));
    EXPECT_FALSE(track.removePattern(*patterns[1]));
    EXPECT_FALSE(track.removePatternWithID(4));
    EXPECT_TRUE(track.removePatternWithID(0));
    EXPECT_EQ(track.patternChildren(), std::vector{patterns[2]});
    track.removePatternAtIndex(0);
    EXPECT_EQ(track.getPatternCount(), 0);
}

TEST(TrackNode, RemovesThePatternAtEachIndexAndNoOther)
{
    for (const int index : {0, 1, 2}) {
        TrackNode track;
        std::vector<std::shared_ptr<PatternNode>> left;
        for (int i = 0; i < 3; ++i) {
            const auto pattern = std::make_shared<PatternNode>();
            track.addPattern(pattern);
            if (i != index) {
                left.push_back(pattern);
            }
        }
        track.removePatternAtIndex(index);
        EXPECT_EQ(track.patterns, left) << index;
    }
}

TEST(TrackNode, ClearsEventsAndPatterns)
{
    TrackNode track;
    track.addEvent(std::make_shared<UnknownEvent>());
    track.addPattern(std::make_shared<PatternNode>());
    track.clearPatterns();
    EXPECT_EQ(track.getPatternCount(), 0);
    EXPECT_EQ(track.getEventCount(), 1);
    track.addPattern(std::make_shared<PatternNode>());
    track.clear();
    EXPECT_TRUE(track.isEmpty());
    EXPECT_EQ(track.getPatternCount(), 0);
}

TEST(TrackNode, LetsGoOfWhatOutlivesIt)
{
    const auto event = std::make_shared<UnknownEvent>();
    const auto inner = std::make_shared<UnknownEvent>();
    const auto pattern = std::make_shared<PatternNode>();
    pattern->addEvent(inner);
    {
        TrackNode track;
        track.addEvent(event);
        track.addPattern(pattern);
    }
    EXPECT_EQ(event->track, nullptr);
    EXPECT_EQ(inner->track, nullptr);
    EXPECT_EQ(inner->pattern, pattern.get());
    EXPECT_EQ(pattern->track, nullptr);
}

TEST(TrackNode, DumpsItsFieldsEventsAndPatterns)
{
    ConsoleCapture capture;
    TrackNode track;
    track.channel = 2;
    track.addEvent(std::make_shared<TempoEvent>());
    track.addPattern(std::make_shared<PatternNode>());
    track.dumpout();
    EXPECT_EQ(capture.take(),
              (Lines{"\tsequence: nil.", "\tisTempoTrack: false.", "\tchannel: 2.",
                     "\n\tDie Anzahl der Events ist 1.", "\tEvents:", "\n\t\tEvent TempoEvent:",
                     "\n\tDie Anzahl der Patterns ist 1.", "\tPatterns:", "\n\t\tPattern PatternNode:"}));
}

TEST(TrackNode, PrintsNilForASequenceThatIsGone)
{
    ConsoleCapture capture;
    std::shared_ptr<TrackNode> track;
    {
        SequenceNode sequence(2);
        track = sequence.tracks[0];
        sequence.removeTrack(0);
        EXPECT_EQ(track->sequence, &sequence);
    }
    track->dumpout();
    EXPECT_EQ(capture.take().front(), "\tsequence: nil.");
}

TEST(TrackNodeDeathTest, StopsAtANullAmongItsNodes)
{
    const std::string nil = "Unexpectedly found nil while unwrapping an Optional value";
    TrackNode track;
    EXPECT_DEATH(track.addEvent(nullptr), nil);
    EXPECT_DEATH(track.addPattern(nullptr), nil);
    const auto pattern = std::make_shared<PatternNode>();
    pattern->events.push_back(nullptr);
    EXPECT_DEATH(track.addPattern(pattern), nil);
    track.patterns.push_back(nullptr);
    EXPECT_DEATH(track.getPattern(0), nil);
    EXPECT_DEATH(track.patternChildWithUID(0), nil);
    EXPECT_DEATH(track.removePatternWithID(0), nil);
    EXPECT_DEATH(track.dumpout(), nil);
    track.patterns.clear();
    track.events.push_back(nullptr);
    EXPECT_DEATH(track.dumpout(), nil);
}

TEST(TrackNodeDeathTest, StopsAtAnIndexOutOfRange)
{
    TrackNode track;
    EXPECT_DEATH(track.removePatternAtIndex(0), "Index out of range");
    EXPECT_DEATH(track.patternChildAtIndex(0), "Index out of range");
}

} // namespace
} // namespace volvelle
