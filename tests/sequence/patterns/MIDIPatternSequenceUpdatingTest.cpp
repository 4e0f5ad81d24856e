#include "tests/sequence/patterns/GridFixture.h"

#include <algorithm>
#include <array>
#include <random>

// The grid's way to the music sequence.
namespace volvelle::test {
namespace {

const std::string someNote = "MIDISequence::Info: Eine Note wurde hinzugefügt.";

using MIDIPatternSequenceUpdatingTest = GridFixture;
using MIDIPatternSequenceUpdatingDeathTest = MIDIPatternSequenceUpdatingTest;

TEST_F(MIDIPatternSequenceUpdatingTest, ATrackIsTheCellsOfItsChannelInAllSections)
{
    empty(6);
    grid->createSection();
    grid->createSection();
    cell(0, 5)->addEvent(note(1.0, 5, 60));
    cell(2, 5)->addEvent(note(1.5, 5, 62));
    cell(2, 4)->addEvent(note(1.0, 4, 63));
    grid->updateTrack(5);
    EXPECT_EQ(said(), (Lines{someNote, someNote}));
    EXPECT_EQ(track(5), (Lines{"1.0 note 5 60 100 64 1.0", "9.5 note 5 62 100 64 1.0"}));
    EXPECT_EQ(track(4), Lines{});
    EXPECT_EQ(track(0), (Lines{"0.0 meta 32 [5]", "0.0 meta 0 [0, 0]", "4.0 meta 32 [5]", "4.0 meta 0 [1, 0]",
                               "8.0 meta 32 [5]", "8.0 meta 0 [2, 0]"}));
    EXPECT_EQ(nodes(2, 5),
              (Lines{"MidiNoteEvent 9.5 5: 62 100 64 1.0", "MetaChannelPrefixEvent 8.0 0: 32 1 [5]",
                     "MetaSequenceNumberEvent 8.0 0: 0 2 [2, 0]"}));
    EXPECT_EQ(cell(2, 5)->channel, 5);
    EXPECT_EQ(cell(2, 5)->offset, 8.0);
    EXPECT_EQ(cell(2, 4)->link, nullptr);
    EXPECT_EQ(grid->getNumberOfTracks(), 9);
    EXPECT_EQ(grid->getTrackIndex(cell(2, 5)->link), 8U);
    EXPECT_EQ(track(8), Lines{});
    EXPECT_EQ(grid->getLength(), 9.5);
}

TEST_F(MIDIPatternSequenceUpdatingTest, AnEventGoesToTheTrackOfItsOwnChannel)
{
    empty(16);
    cell(0, 5)->addEvent(note(1.0, 2, 60));
    grid->updateTrack(5);
    EXPECT_EQ(track(2), Lines{"1.0 note 2 60 100 64 1.0"});
    EXPECT_EQ(contents(cell(0, 5)->link), Lines{});
}

TEST_F(MIDIPatternSequenceUpdatingTest, AChannelOfSixteenOrMoreIsReported)
{
    grid->updateTrack(16);
    grid->updateTrack(255);
    const std::string line = "Fehler: Mit dem Pattern Index (Kanal) stimmt etwas nicht.";
    EXPECT_EQ(said(), (Lines{line, line}));
    grid->sections[0]->patterns.push_back(std::make_shared<PatternNode>());
    grid->updateSection(0);
    EXPECT_EQ(said(), Lines{line});
    EXPECT_TRUE(cell(0, 16)->isEmpty());
}

TEST_F(MIDIPatternSequenceUpdatingTest, ASectionAboveTheCountIsReported)
{
    grid->updateSection(2);
    EXPECT_EQ(said(), Lines{"Fehler: Mit der Anzahl der Sektionen stimmt etwas nicht."});
    EXPECT_EQ(nodes(0, 0).size(), 2U);
}

TEST_F(MIDIPatternSequenceUpdatingTest, ASectionUpdatesTheOtherSectionsToo)
{
    empty(1);
    grid->createSection();
    grid->updateSection(1);
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_EQ(nodes(0, i).size(), 2U);
        EXPECT_EQ(nodes(1, i).size(), 2U);
    }
    EXPECT_EQ(grid->getNumberOfTracks(), 33);
}

TEST_F(MIDIPatternSequenceUpdatingTest, TheMetasOfOneSectionPileUpFromUpdateToUpdate)
{
    const Lines first = track(0);
    ASSERT_EQ(first.size(), 32U);
    grid->updateSequence();
    EXPECT_EQ(track(0).size(), 32U + 64U);
    EXPECT_EQ(nodes(0, 7).size(), 4U);
    grid->updateSequence();
    EXPECT_EQ(track(0).size(), 32U + 64U + 96U);
    EXPECT_EQ(grid->getNumberOfTracks(), 16);
    EXPECT_EQ(said(), Lines{});
}

TEST_F(MIDIPatternSequenceUpdatingTest, ATrackWithALengthIsClearedBeforeItIsWritten)
{
    cell(0, 0)->addEvent(note(1.0, 0, 60));
    grid->updateSequence();
    EXPECT_EQ(track(0).size(), 32U + 64U + 1U);
    grid->updateSequence();
    EXPECT_EQ(track(0).size(), 96U + 1U);
    EXPECT_EQ(grid->getLength(), 1.0);
}

TEST_F(MIDIPatternSequenceUpdatingTest, TheOffsetIsAddedAtEveryUpdate)
{
    empty(16);
    grid->createSection();
    cell(1, 5)->addEvent(note(1.0, 5, 60));
    grid->updateSequence(); // two sections update each track twice
    EXPECT_EQ(track(5), (Lines{"5.0 note 5 60 100 64 1.0", "9.0 note 5 60 100 64 1.0"}));
    grid->updateSequence();
    EXPECT_EQ(track(5), (Lines{"13.0 note 5 60 100 64 1.0", "17.0 note 5 60 100 64 1.0"}));
    EXPECT_EQ(nodes(1, 5)[0], "MidiNoteEvent 17.0 5: 60 100 64 1.0");
    EXPECT_EQ(nodes(1, 5)[1], "MetaChannelPrefixEvent 16.0 0: 32 1 [5]");
}

TEST_F(MIDIPatternSequenceUpdatingTest, ATrackThatCannotBeMadeTakesNoEvents)
{
    empty(1);
    fail(Operation::MusicSequenceNewTrack);
    grid->updateTrack(3);
    const std::string noTrack = "MIDISequence::Fehler: Die Ziel Spur ist undefiniert.";
    EXPECT_EQ(said(), join({reported("MIDISequence::Fehler: Die Spur konnte nicht erzeugt werden. : -7"),
                            {noTrack, noTrack}}));
    EXPECT_EQ(cell(0, 3)->link, nullptr);
    EXPECT_EQ(track(0), Lines{});
    grid->updateTrack(3);
    EXPECT_EQ(track(0).size(), 4U);
    EXPECT_EQ(grid->getTrackIndex(cell(0, 3)->link), 1U);
}

TEST_F(MIDIPatternSequenceUpdatingTest, APatternIsWrittenWithItsOffsetAndNothingIsCleared)
{
    empty(3);
    const auto pattern = std::make_shared<PatternNode>();
    pattern->addEvent(note(1.0, 2, 60));
    pattern->offset = 0.5;
    grid->patternNodeToMusicTrack(pattern, grid->getTrack(0));
    grid->patternNodeToMusicTrack(pattern, grid->getTrack(0));
    EXPECT_EQ(track(2), (Lines{"1.5 note 2 60 100 64 1.0", "2.0 note 2 60 100 64 1.0"}));
    EXPECT_EQ(track(0), Lines{});
}

TEST_F(MIDIPatternSequenceUpdatingTest, APatternNeedsASequenceANodeAndATrack)
{
    const MusicTrack first = grid->getTrack(0);
    const auto pattern = std::make_shared<PatternNode>();
    pattern->addEvent(note(1.0, 0, 60));
    grid->patternNodeToMusicTrack(nullptr, first);
    EXPECT_EQ(said(), Lines{"Fehler: Das Quell Pattern ist undefiniert."});
    grid->patternNodeToMusicTrack(pattern, nullptr);
    EXPECT_EQ(said(), Lines{"MIDISequence::Fehler: Die Ziel Spur ist undefiniert."});
    grid->musicSequence = nullptr;
    grid->patternNodeToMusicTrack(nullptr, first);
    grid->updateTrack(3);
    const std::string noSequence = "Fehler: Die Ziel Sequenz ist undefiniert.";
    EXPECT_EQ(said(), (Lines{noSequence, noSequence}));
}

TEST_F(MIDIPatternSequenceUpdatingDeathTest, WhatIsAbsentStopsAnUpdate)
{
    const auto pattern = std::make_shared<PatternNode>();
    pattern->events.push_back(nullptr);
    EXPECT_STOP(grid->patternNodeToMusicTrack(pattern, grid->getTrack(0)), nilMessage);
    grid->musicSequence = nullptr;
    EXPECT_STOP(grid->updateSequence(), rangeMessage, {"MIDISequence::Fehler: Die Sequenz ist undefiniert."});
}

TEST_F(MIDIPatternSequenceUpdatingDeathTest, AnEventOfAChannelWithoutATrackStops)
{
    empty(1);
    cell(0, 0)->addEvent(note(1.0, 9, 60));
    EXPECT_STOP(grid->updateTrack(0), nilMessage,
                {"MIDISequence::Fehler: -10859. \nFür den Index konnte keine Spur gefunden werden.",
                 "Fehler: -10859", "The operation could not be completed (status -10859).",
                 "Falscher Spur Index."});
}

// The steps one by one, on lists of lines.
class PlainGrid {
public:
    struct Event {
        double position;
        std::size_t track;
        std::string text;
        double duration;
    };

    struct Track {
        std::vector<Event> events;
        double length = 0.0;
    };

    std::vector<std::array<std::vector<Event>, 16>> rows{1};
    std::array<Track, 16> tracks;

    void updateSequence()
    {
        for (Track& each : tracks) {
            if (each.length > 0.0) {
                each.events.clear();
            }
        }
        for (std::size_t pass = 0; pass < rows.size(); ++pass) {
            for (std::size_t channel = 0; channel < 16; ++channel) {
                updateTrack(channel);
            }
        }
    }

    void updateTrack(std::size_t channel)
    {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            auto& events = rows[i].at(channel);
            events.push_back({0.0, 0, concat("meta 32 [", channel, "]"), 0.0});
            events.push_back({0.0, 0, concat("meta 0 [", i, ", 0]"), 0.0});
            for (Event& event : events) {
                event.position += 4.0 * static_cast<double>(i);
                Track& target = tracks.at(event.track);
                target.events.push_back(event);
                target.length = std::max(target.length, event.position + event.duration);
            }
        }
    }

    Lines lines(std::size_t track) const
    {
        auto sorted = tracks.at(track).events;
        std::ranges::stable_sort(sorted, {}, &Event::position);
        Lines result;
        for (const Event& event : sorted) {
            result.push_back(concat(event.position, " ", event.text));
        }
        return result;
    }
};

class MIDIPatternSequenceUpdatingEditsTest : public GridFixture {
protected:
    int draw(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random); }

    void addNote(std::uint16_t row, std::uint8_t column)
    {
        const auto channel = static_cast<std::uint8_t>(draw(16));
        const double position = draw(16) / 4.0;
        cell(row, column)->addEvent(note(position, channel, 60));
        plain.rows[row].at(column).push_back(
            {position, channel, concat("note ", channel, " 60 100 64 1.0"), 1.0});
    }

    void changeSections(std::uint16_t row)
    {
        if (plain.rows.size() < 2 || (plain.rows.size() < 4 && draw(2) == 0)) {
            grid->createSection();
            plain.rows.emplace_back();
        } else {
            grid->deleteSection(row);
            plain.rows.erase(plain.rows.begin() + row);
        }
    }

    void edit()
    {
        const auto row = static_cast<std::uint16_t>(draw(static_cast<int>(plain.rows.size())));
        const auto column = static_cast<std::uint8_t>(draw(16));
        switch (draw(6)) {
        case 0:
            return changeSections(row);
        case 1:
            grid->clearPattern(row, column);
            return plain.rows[row].at(column).clear();
        case 2:
            grid->updateTrack(column);
            return plain.updateTrack(column);
        case 3:
            grid->updateSequence();
            return plain.updateSequence();
        default:
            addNote(row, column);
        }
    }

    std::mt19937 random{38};
    PlainGrid plain;
};

TEST_F(MIDIPatternSequenceUpdatingEditsTest, ManyEditsAndUpdatesFillTheTracksAsTheStepsSay)
{
    plain.updateSequence();
    for (int step = 0; step < 60; ++step) {
        edit();
        for (int i = 0; i < 16; ++i) {
            ASSERT_EQ(track(i), plain.lines(static_cast<std::size_t>(i))) << step << " " << i;
        }
    }
}

} // namespace
} // namespace volvelle::test
