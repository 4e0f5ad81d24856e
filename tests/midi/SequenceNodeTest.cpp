#include "midi/SequenceNode.h"
#include "midi/EventNodes.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using Lines = std::vector<std::string>;
using test::ConsoleCapture;

TEST(SequenceNode, StartsWithOneTrackAndATempoTrack)
{
    SequenceNode::counter = 77;
    const SequenceNode node;
    EXPECT_EQ(SequenceNode::counter, 1);
    EXPECT_EQ(SequenceNode::maxTracks, 1000);
    EXPECT_EQ(node.numberOfTracks, 1);
    ASSERT_EQ(node.getTrackCount(), 1);
    EXPECT_EQ(node.tracks[0]->channel, 0);
    EXPECT_EQ(node.tracks[0]->sequence, &node);
    EXPECT_FALSE(node.tracks[0]->isTempoTrack);
    EXPECT_TRUE(node.getTempoTrack()->isTempoTrack);
    EXPECT_EQ(node.getTempoTrack()->channel, 0xFF);
    EXPECT_EQ(node.getTempoTrack()->sequence, &node);
    EXPECT_EQ(node.text, "Song Beschreibung");
    EXPECT_FALSE(node.copyright.empty());
}

TEST(SequenceNode, MakesTracksOnChannelsInOrder)
{
    SequenceNode::counter = 77;
    const SequenceNode node(16);
    EXPECT_EQ(SequenceNode::counter, 1);
    EXPECT_EQ(node.numberOfTracks, 16);
    ASSERT_EQ(node.getTrackCount(), 16);
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_EQ(node.tracks[i]->channel, i);
        EXPECT_EQ(node.tracks[i]->sequence, &node);
    }
    EXPECT_EQ(SequenceNode(1).getTrackCount(), 1);
    EXPECT_EQ(SequenceNode(256).tracks[255]->channel, 255);
}

TEST(SequenceNode, KeepsOneTrackAboveTheLimit)
{
    ConsoleCapture capture;
    const SequenceNode node(1001);
    EXPECT_EQ(node.getTrackCount(), 1);
    EXPECT_EQ(node.numberOfTracks, 1);
    EXPECT_EQ(node.tracks[0]->channel, 0);
    EXPECT_TRUE(node.getTempoTrack()->isTempoTrack);
    EXPECT_EQ(capture.take(), Lines{"Fehler: Die Anzahl der Spuren ist auf 1000 begrenzt"});
}

TEST(SequenceNodeDeathTest, StopsAtTrackCountsWithoutChannels)
{
    EXPECT_DEATH(SequenceNode(0), "Range requires lowerBound <= upperBound");
    EXPECT_DEATH(SequenceNode(257), "Not enough bits to represent the passed value");
    EXPECT_DEATH(SequenceNode(1000), "Not enough bits to represent the passed value");
}

TEST(SequenceNode, AddsTracksOnChannelZero)
{
    SequenceNode node;
    EXPECT_EQ(node.addTrack(), 0);
    EXPECT_EQ(node.numberOfTracks, 2);
    EXPECT_EQ(node.tracks[1]->channel, 0);
    EXPECT_EQ(node.tracks[1]->sequence, &node);
    EXPECT_EQ(node.children(), node.tracks);
}

TEST(SequenceNode, AddsNoTrackAboveTheLimit)
{
    ConsoleCapture capture;
    SequenceNode node;
    while (node.numberOfTracks <= SequenceNode::maxTracks) {
        node.addTrack();
    }
    EXPECT_EQ(node.getTrackCount(), 1001);
    EXPECT_TRUE(capture.take().empty());
    EXPECT_EQ(node.addTrack(), 0);
    EXPECT_EQ(node.getTrackCount(), 1001);
    EXPECT_EQ(capture.take(), Lines{"Fehler: Die Anzahl der Spuren ist auf 1000 begrenzt"});
}

TEST(SequenceNode, FindsTheFirstTrackByItsNumber)
{
    const SequenceNode node(3);
    EXPECT_EQ(node.getrack(0), node.tracks[0]);
    EXPECT_EQ(node.getrack(1), nullptr);
}

TEST(SequenceNode, TakesTheLastTrackForAnIndexBehindIt)
{
    ConsoleCapture capture;
    const SequenceNode node(3);
    EXPECT_EQ(node.getTrack(1), node.tracks[1]);
    EXPECT_TRUE(capture.take().empty());
    EXPECT_EQ(node.getTrack(3), node.tracks[2]);
    EXPECT_EQ(node.child(9), node.tracks[2]);
    const std::string warning = "Warnung: Der Spur Index wurde auf das Maximum (3) gesetzt. ";
    EXPECT_EQ(capture.take(), (Lines{warning, warning}));
}

TEST(SequenceNode, LeavesTheStoredCountWhenItRemovesATrack)
{
    SequenceNode node(2);
    const auto second = node.tracks[1];
    node.removeTrack(0);
    EXPECT_EQ(node.getTrackCount(), 1);
    EXPECT_EQ(node.numberOfTracks, 2);
    EXPECT_EQ(node.tracks[0], second);
    node.removeTrack(5);
    EXPECT_EQ(node.getTrackCount(), 1);
}

TEST(SequenceNodeDeathTest, StopsAtAStaleCount)
{
    SequenceNode node(2);
    node.removeTrack(0);
    EXPECT_DEATH(node.getTrack(1), "Index out of range");
    EXPECT_DEATH(node.child(1), "Index out of range");
}

TEST(SequenceNodeDeathTest, StopsWithoutATempoTrack)
{
    SequenceNode node;
    node.tempoTrack = nullptr;
    EXPECT_DEATH(node.getTempoTrack(), "Unexpectedly found nil while unwrapping an Optional value");
    EXPECT_DEATH(node.clear(), "Unexpectedly found nil while unwrapping an Optional value");
}

TEST(SequenceNodeDeathTest, StopsAtANullAmongItsTracks)
{
    const std::string nil = "Unexpectedly found nil while unwrapping an Optional value";
    SequenceNode node;
    node.tracks[0] = nullptr;
    EXPECT_DEATH(node.getrack(0), nil);
    EXPECT_DEATH(node.removeTrack(0), nil);
    EXPECT_DEATH(node.child(0), nil);
    EXPECT_DEATH(node.clear(), nil);
    EXPECT_DEATH(node.diagnostics(), nil);
}

TEST(SequenceNode, NumbersTheEventsOfAllItsTracks)
{
    const SequenceNode node(2);
    EXPECT_EQ(node.tracks[1]->addEvent(std::make_shared<UnknownEvent>()), 1);
    EXPECT_EQ(node.tracks[0]->addEvent(std::make_shared<UnknownEvent>()), 2);
    EXPECT_EQ(node.tempoTrack->addEvent(std::make_shared<TempoEvent>()), 3);
}

TEST(SequenceNode, EmptiesItsTracksAndKeepsThem)
{
    SequenceNode node(2);
    node.tracks[1]->addEvent(std::make_shared<UnknownEvent>());
    node.tracks[1]->addPattern(std::make_shared<PatternNode>());
    node.tempoTrack->addEvent(std::make_shared<TempoEvent>());
    node.clear();
    EXPECT_EQ(node.getTrackCount(), 2);
    EXPECT_TRUE(node.tracks[1]->isEmpty());
    EXPECT_EQ(node.tracks[1]->getPatternCount(), 0);
    EXPECT_TRUE(node.tempoTrack->isEmpty());
}

TEST(SequenceNode, LetsGoOfWhatOutlivesIt)
{
    std::shared_ptr<TrackNode> track;
    std::shared_ptr<TrackNode> tempoTrack;
    const auto pattern = std::make_shared<PatternNode>();
    {
        SequenceNode node;
        track = node.tracks[0];
        tempoTrack = node.tempoTrack;
        track->addPattern(pattern);
        EXPECT_EQ(pattern->sequence, &node);
    }
    EXPECT_EQ(track->sequence, nullptr);
    EXPECT_EQ(tempoTrack->sequence, nullptr);
    EXPECT_EQ(pattern->sequence, nullptr);
    EXPECT_EQ(pattern->track, track.get());
}

TEST(SequenceNode, PrintsTheWholeTree)
{
    ConsoleCapture capture;
    const SequenceNode node(2);
    node.tempoTrack->addEvent(std::make_shared<TempoEvent>());
    node.diagnostics();
    const std::string pluses(37, '+');
    const std::string start = "\n\n" + pluses + " Sequence " + pluses + "START\n\n";
    const std::string stop = "\n\n" + pluses + " Sequence " + pluses + "+STOP\n\n";
    EXPECT_EQ(start.size(), 93U);
    EXPECT_EQ(stop.size(), 93U);
    EXPECT_EQ(capture.take(),
              (Lines{start, "\n\tTrack 0 / Tempo Track:", "\tsequence: SequenceNode.",
                     "\tisTempoTrack: true.", "\tchannel: 255.", "\n\tDie Anzahl der Events ist 1.",
                     "\tEvents:", "\n\t\tEvent TempoEvent:", "\n\tDie Anzahl der Patterns ist 0.",
                     "\tPatterns:", "\nDie Anzahl der (Music) Tracks ist 2.",
                     "Tracks:", "\n\tTrack TrackNode:", "\n\tTrack TrackNode:", stop}));
}

} // namespace
} // namespace volvelle
