#include "midi/EventNodes.h"
#include "midi/SequenceNode.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using Lines = std::vector<std::string>;
using test::ConsoleCapture;

std::shared_ptr<MidiNoteEvent> noteAt(double position, std::uint8_t number = 60)
{
    return std::make_shared<MidiNoteEvent>(position, 1.0F, std::uint8_t{0}, number, std::uint8_t{100},
                                           std::uint8_t{0});
}

TEST(PatternNode, StartsWithItsDefaults)
{
    const PatternNode pattern;
    EXPECT_EQ(pattern.id, 0);
    EXPECT_EQ(pattern.sequence, nullptr);
    EXPECT_EQ(pattern.track, nullptr);
    EXPECT_EQ(pattern.channel, 0);
    EXPECT_TRUE(pattern.events.empty());
    EXPECT_EQ(pattern.offset, 0.0);
    EXPECT_EQ(pattern.bars, 1);
    EXPECT_EQ(pattern.beats, 4);
    EXPECT_FALSE(pattern.loop || pattern.mute || pattern.solo);
    EXPECT_EQ(pattern.text, "Pattern Beschreibung");
    EXPECT_FALSE(pattern.copyright.empty());
    EXPECT_EQ(pattern.name, "Pattern Name");
    EXPECT_EQ(pattern.deviceName, "Geraete Name");
    EXPECT_EQ(pattern.instrumentName, "Instrument Name");
    EXPECT_EQ(pattern.programName, "Programm Name");
    EXPECT_EQ(pattern.lyrics, "Songtext");
    EXPECT_EQ(pattern.marker, "Marker");
    EXPECT_EQ(pattern.cue, "Abspielmarke");
    EXPECT_EQ(pattern.link, nullptr);
}

TEST(PatternNode, CountsEveryPatternAndWraps)
{
    PatternNode::patternCount = 0xFFFE;
    const PatternNode one;
    EXPECT_EQ(PatternNode::patternCount, 0xFFFF);
    const TrackNode two;
    EXPECT_EQ(PatternNode::patternCount, 0);
    EXPECT_EQ(one.id, 0);
    EXPECT_EQ(two.id, 0);
}

TEST(PatternNode, GivesEachEventTheNextNumberAndItself)
{
    SequenceNode::counter = 1;
    PatternNode pattern;
    const auto late = noteAt(4.0);
    const auto early = noteAt(1.0);
    EXPECT_EQ(pattern.addEvent(late), 1);
    EXPECT_EQ(pattern.addEvent(early), 2);
    EXPECT_EQ(SequenceNode::counter, 3);
    EXPECT_EQ(early->uid, 2);
    EXPECT_EQ(early->pattern, &pattern);
    EXPECT_EQ(early->track, nullptr);
    EXPECT_EQ(pattern.eventChildren(), (std::vector<std::shared_ptr<EventNode>>{late, early}));
    EXPECT_EQ(pattern.getEventCount(), 2);
    EXPECT_FALSE(pattern.isEmpty());
}

TEST(PatternNode, FindsAnEventOrGivesAFreshOne)
{
    SequenceNode::counter = 1;
    PatternNode pattern;
    const auto missing = pattern.getEvent(99);
    ASSERT_NE(missing, nullptr);
    EXPECT_EQ(missing->uid, -1);
    EXPECT_EQ(missing->className(), "EventNode");
    EXPECT_TRUE(pattern.isEmpty());
    const auto note = noteAt(0.0);
    pattern.addEvent(note);
    EXPECT_EQ(pattern.getEvent(1), note);
    EXPECT_EQ(pattern.eventChildWithUID(1), note);
    EXPECT_EQ(pattern.eventChildWithUID(2)->uid, -1);
    EXPECT_EQ(pattern.eventChildAtIndex(0), note);
}

TEST(PatternNode, RemovesByNumberByObjectAndByIndex)
{
    SequenceNode::counter = 1;
    PatternNode pattern;
    const auto one = noteAt(0.0);
    const auto two = noteAt(1.0);
    const auto three = noteAt(2.0);
    for (const auto& note : {one, two, three}) {
        pattern.addEvent(note);
    }
    EXPECT_TRUE(pattern.removeEventWithUID(2));
    EXPECT_FALSE(pattern.removeEventWithUID(2));
    EXPECT_TRUE(pattern.removeEvent(*three));
    EXPECT_FALSE(pattern.removeEvent(*three));
    EXPECT_EQ(pattern.events, (std::vector<std::shared_ptr<EventNode>>{one}));
    pattern.removeEventAtIndex(0);
    EXPECT_TRUE(pattern.isEmpty());
}

TEST(PatternNode, RemovesTheEventAtEachIndexAndNoOther)
{
    for (const int index : {0, 1, 2, 3}) {
        PatternNode pattern;
        std::vector<std::shared_ptr<EventNode>> left;
        for (int i = 0; i < 4; ++i) {
            const auto note = noteAt(i);
            pattern.addEvent(note);
            if (i != index) {
                left.push_back(note);
            }
        }
        pattern.removeEventAtIndex(index);
        EXPECT_EQ(pattern.events, left) << index;
    }
}

TEST(PatternNode, TakesNoNoticeOfPositions)
{
    PatternNode pattern;
    pattern.addEvent(noteAt(0.0));
    pattern.addEvent(noteAt(5.0));
    pattern.addEvent(
        std::make_shared<MidiControllerEvent>(9.0, std::uint8_t{0}, std::uint8_t{7}, std::uint8_t{1}));
    EXPECT_EQ(pattern.getNotes(4.0, 8.0).size(), 2U);
    EXPECT_EQ(pattern.getNotesBetween(127, 0, 4.0, 8.0).size(), 2U);
    EXPECT_EQ(pattern.getControllers(7, 0.0, 1.0).size(), 1U);
    EXPECT_EQ(pattern.getElementsOfClass<EventNode>(100.0, 200.0).size(), 3U);
}

TEST(PatternNode, SelectsNotesByTheirNumbers)
{
    PatternNode pattern;
    for (const std::uint8_t number : std::vector<std::uint8_t>{59, 60, 61, 60}) {
        pattern.addEvent(noteAt(0.0, number));
    }
    EXPECT_EQ(pattern.getNotesBetween(60, 60).size(), 2U);
    EXPECT_EQ(pattern.getNotesBetween(61, 60).size(), 3U);
    EXPECT_TRUE(pattern.getNotesBetween(59, 61).empty());
}

TEST(PatternNode, SelectsControllersByTheirNumber)
{
    PatternNode pattern;
    for (const std::uint8_t number : std::vector<std::uint8_t>{7, 10, 7}) {
        pattern.addEvent(
            std::make_shared<MidiControllerEvent>(0.0, std::uint8_t{0}, number, std::uint8_t{1}));
    }
    EXPECT_EQ(pattern.getControllers(7).size(), 2U);
    EXPECT_TRUE(pattern.getControllers(11).empty());
}

TEST(PatternNode, SelectsAClassWithTheClassesDerivedFromIt)
{
    PatternNode pattern;
    pattern.addEvent(noteAt(0.0));
    pattern.addEvent(std::make_shared<MetaTextEvent>(0.0, "a"));
    pattern.addEvent(std::make_shared<MetaCopyrightEvent>(0.0, "b"));
    pattern.addEvent(std::make_shared<SystemExclusiveEvent>());
    EXPECT_EQ(pattern.getElementsOfClass<MetaTextEvent>().size(), 1U);
    EXPECT_EQ(pattern.getElementsOfClass<MetaEvent>().size(), 2U);
    EXPECT_EQ(pattern.getElementsOfClass<UserEvent>().size(), 3U);
    EXPECT_EQ(pattern.getElementsOfClass<EventNode>().size(), 4U);
}

TEST(PatternNode, LetsGoOfItsEvents)
{
    const auto note = noteAt(0.0);
    {
        PatternNode pattern;
        pattern.addEvent(note);
    }
    EXPECT_EQ(note->pattern, nullptr);
    PatternNode pattern;
    pattern.addEvent(note);
    pattern.clearEvents();
    EXPECT_TRUE(pattern.isEmpty());
}

TEST(PatternNode, DumpsItsFieldsAndEvents)
{
    ConsoleCapture capture;
    SequenceNode sequence;
    TrackNode track;
    PatternNode pattern;
    pattern.sequence = &sequence;
    pattern.track = &track;
    pattern.channel = 3;
    pattern.offset = 2.5;
    pattern.mute = true;
    pattern.addEvent(noteAt(0.0));
    pattern.dumpout();
    EXPECT_EQ(capture.take(),
              (Lines{"\tsequence: SequenceNode.", "\ttrack: TrackNode.", "\tid: 0.", "\tchannel: 3.",
                     "\toffset: 2.5.", "\tbars: 1.", "\tbeats: 4.", "\tloop: false.", "\tmute: true.",
                     "\tsolo: false.", "\n\tDie Anzahl der Events ist 1.",
                     "\tEvents:", "\n\t\tEvent MidiNoteEvent:"}));
}

TEST(PatternNode, DumpsItselfWithoutOwners)
{
    ConsoleCapture capture;
    PatternNode().dumpout();
    const Lines lines = capture.take();
    ASSERT_EQ(lines.size(), 12U);
    EXPECT_EQ(lines[0], "\tsequence: nil.");
    EXPECT_EQ(lines[1], "\ttrack: nil.");
    EXPECT_EQ(lines[10], "\n\tDie Anzahl der Events ist 0.");
}

TEST(PatternNode, PrintsNilForOwnersThatAreGone)
{
    const auto pattern = std::make_shared<PatternNode>();
    {
        SequenceNode sequence;
        sequence.tracks[0]->addPattern(pattern);
        sequence.tracks[0]->clearPatterns();
        EXPECT_EQ(pattern->sequence, &sequence);
        EXPECT_EQ(pattern->track, sequence.tracks[0].get());
    }
    ConsoleCapture capture;
    pattern->dumpout();
    const Lines lines = capture.take();
    ASSERT_EQ(lines.size(), 12U);
    EXPECT_EQ(lines[0], "\tsequence: nil.");
    EXPECT_EQ(lines[1], "\ttrack: nil.");
}

TEST(PatternNodeDeathTest, StopsAtANullAmongItsEvents)
{
    const std::string nil = "Unexpectedly found nil while unwrapping an Optional value";
    PatternNode pattern;
    EXPECT_DEATH(pattern.addEvent(nullptr), nil);
    pattern.events.push_back(nullptr);
    EXPECT_DEATH(pattern.getEvent(1), nil);
    EXPECT_DEATH(pattern.eventChildWithUID(1), nil);
    EXPECT_DEATH(pattern.removeEventWithUID(1), nil);
    EXPECT_DEATH(pattern.getNotes(), nil);
    EXPECT_DEATH(pattern.getNotesBetween(127, 0), nil);
    EXPECT_DEATH(pattern.getControllers(7), nil);
    EXPECT_DEATH(pattern.dumpout(), nil);
}

TEST(PatternNodeDeathTest, StopsAtAnIndexOutOfRange)
{
    PatternNode pattern;
    EXPECT_DEATH(pattern.removeEventAtIndex(0), "Index out of range");
    EXPECT_DEATH(pattern.eventChildAtIndex(0), "Index out of range");
    EXPECT_DEATH(pattern.eventChildAtIndex(-1), "Index out of range");
    pattern.addEvent(noteAt(0.0));
    EXPECT_DEATH(pattern.removeEventAtIndex(1), "Index out of range");
    EXPECT_DEATH(pattern.removeEventAtIndex(-1), "Index out of range");
    EXPECT_DEATH(pattern.eventChildAtIndex(1), "Index out of range");
}

} // namespace
} // namespace volvelle
