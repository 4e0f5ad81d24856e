#include "cli/sound/RecordTake.h"
#include "base/Text.h"
#include "services/musicsequence/FaultPoint.h"
#include "tests/cli/sound/TakeLines.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace volvelle::test {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Keys = std::vector<int>;
using Moment = RecordTake::Moment;

// Half a second is a beat of the file.
Moment at(double seconds)
{
    return Moment(std::chrono::seconds(1000)) +
           std::chrono::round<Moment::duration>(std::chrono::duration<double>(seconds));
}

Bytes exclusiveOf(std::size_t length)
{
    Bytes bytes(length, 0x11);
    bytes.front() = 0xF0;
    bytes.back() = 0xF7;
    return bytes;
}

class RecordTakeTest : public testing::Test {
protected:
    RecordTakeTest() { take.begin(at(0.0)); }

    void hear(double seconds, const Bytes& bytes)
    {
        take.inbox->receive(at(seconds), bytes);
        take.collect(Moment::max());
    }

    Lines linesOfFile()
    {
        const auto file = take.file();
        EXPECT_TRUE(file) << file.error();
        return takeLines(*file);
    }

    RecordTake take;
};

TEST_F(RecordTakeTest, MessagesOfEachKindStandInTheFileWhereTheyCame)
{
    hear(0.0, {0xC0, 5});
    hear(0.25, {0x90, 60, 100});
    hear(0.5, {0xA0, 60, 7});
    hear(0.5, {0xB0, 1, 64});
    hear(0.75, {0xD0, 9});
    hear(1.0, {0xE0, 1, 65});
    hear(1.25, {0x80, 60, 30});
    hear(1.5, {0xF0, 0x7E, 0x7F, 9, 1, 0xF7});
    hear(2.0, {0x9F, 61, 1});
    hear(2.5, {0x9F, 61, 0});
    EXPECT_EQ(take.events(), 10);
    EXPECT_EQ(linesOfFile(), (Lines{"0.0 message 192 5 0", "0.5 note 0 60 100 30 2.0", "1.0 message 160 60 7",
                                    "1.0 message 176 1 64", "1.5 message 208 9 0", "2.0 message 224 1 65",
                                    "3.0 raw [240, 126, 127, 9, 1, 247]", "4.0 note 15 61 1 64 1.0"}));
}

TEST_F(RecordTakeTest, AnExclusiveInPiecesStandsInTheFileWhole)
{
    hear(0.0, {0xF0, 1, 2});
    hear(0.1, {3, 4});
    EXPECT_EQ(take.events(), 0);
    hear(0.5, {5, 0xF7});
    EXPECT_EQ(take.events(), 1);
    EXPECT_EQ(linesOfFile(), Lines{"1.0 raw [240, 1, 2, 3, 4, 5, 247]"});
}

TEST_F(RecordTakeTest, ExclusivesOfAnyLengthStandInTheFileWhole)
{
    Lines expected;
    double seconds = 0.0;
    for (const std::size_t length : {1023U, 1024U, 1025U, 1026U, 65'535U}) {
        hear(seconds, exclusiveOf(length));
        expected.push_back(concat(seconds * 2.0, " raw ", text(exclusiveOf(length))));
        seconds += 0.5;
    }
    EXPECT_EQ(take.events(), 5);
    EXPECT_EQ(take.dropped(), 0U);
    EXPECT_EQ(linesOfFile(), expected);
    EXPECT_EQ(linesOfFile(), expected);
}

TEST_F(RecordTakeTest, ALongExclusiveKeepsItsPlaceAmongWhatCameWithIt)
{
    hear(0.5, {0xB0, 7, 1});
    hear(0.5, exclusiveOf(1502));
    hear(0.5, {0xF0, 0x22, 0xF7});
    hear(0.5, {0xB0, 7, 2});
    hear(0.5, exclusiveOf(1503));
    hear(0.5, {0x90, 60, 1});
    hear(0.5, {0xC0, 5});
    hear(1.0, {0x80, 60, 2});
    EXPECT_EQ(linesOfFile(), (Lines{"1.0 message 176 7 1", concat("1.0 raw ", text(exclusiveOf(1502))),
                                    "1.0 raw [240, 34, 247]", "1.0 message 176 7 2",
                                    concat("1.0 raw ", text(exclusiveOf(1503))), "1.0 message 192 5 0",
                                    "1.0 note 0 60 1 2 1.0"}));
}

TEST_F(RecordTakeTest, ALongExclusiveThatCannotBeWrittenIsAFailure)
{
    hear(0.0, exclusiveOf(1502));
    hear(0.5, exclusiveOf(1503));
    setFault(MusicSequenceOperation::MusicTrackNewMIDIRawDataEvent, {-1, 0, 1});
    const auto file = take.file();
    clearFaults();
    EXPECT_EQ(file.error(), "The recording could not be turned into a MIDI file.");
    EXPECT_TRUE(take.file());
}

TEST_F(RecordTakeTest, ALongerExclusiveIsCounted)
{
    hear(0.0, exclusiveOf(65'536));
    EXPECT_EQ(take.events(), 0);
    EXPECT_EQ(take.dropped(), 1U);
}

TEST_F(RecordTakeTest, ClockAndActiveSensingAreNoEvents)
{
    hear(0.0, {0xF8, 0xFE, 0xF6, 0xF1, 1, 0xF2, 1, 2, 0xF3, 1, 0xFF, 0xFD});
    EXPECT_EQ(take.events(), 0);
}

TEST_F(RecordTakeTest, TwoNotesOfOneKeyAreTwoNotesTheFirstEndsFirst)
{
    hear(0.0, {0x90, 60, 1});
    hear(0.5, {0x90, 60, 2});
    EXPECT_EQ(take.keys(), Keys{60});
    hear(1.0, {0x80, 60, 3});
    EXPECT_EQ(take.keys(), Keys{60});
    hear(2.0, {0x80, 60, 4});
    EXPECT_EQ(take.keys(), Keys{});
    EXPECT_EQ(linesOfFile(), (Lines{"0.0 note 0 60 1 3 2.0", "1.0 note 0 60 2 4 3.0"}));
}

TEST_F(RecordTakeTest, NotesOfKeyZeroAreLeftOut)
{
    hear(0.0, {0x90, 0, 1});
    hear(0.5, {0x80, 0, 1});
    EXPECT_EQ(take.events(), 0);
    EXPECT_EQ(take.keys(), Keys{});
    take.end(at(1.0));
    EXPECT_FALSE(take.file());
    EXPECT_EQ(take.file().error(), "The recording could not be turned into a MIDI file.");
    hear(1.0, {0xB0, 0, 3});
    EXPECT_EQ(take.events(), 1);
}

TEST_F(RecordTakeTest, WhatSoundsAtTheEndEndsThere)
{
    hear(0.0, {0x90, 60, 1, 0x90, 60, 2, 0x91, 60, 3, 0x9F, 127, 4});
    hear(0.5, {0xB0, 64, 127, 0x81, 60, 9});
    EXPECT_EQ(take.keys(), (Keys{60, 127}));
    take.end(at(2.0));
    EXPECT_EQ(take.keys(), Keys{});
    EXPECT_EQ(take.events(), 6);
    EXPECT_EQ(linesOfFile(),
              (Lines{"0.0 note 0 60 1 0 4.0", "0.0 note 0 60 2 0 4.0", "1.0 message 176 64 127",
                     "4.0 message 176 64 0", "0.0 note 1 60 3 9 1.0", "0.0 note 15 127 4 0 4.0"}));
}

TEST_F(RecordTakeTest, EachStrikeOfAKeyWithoutEndsIsANote)
{
    constexpr int strikes = 3000;
    for (int i = 0; i < strikes; ++i) {
        hear(i * 0.01, {0x99, 36, 100});
    }
    hear(30.0, {0x89, 36, 1});
    EXPECT_EQ(take.keys(), Keys{36});
    take.end(at(60.0));
    EXPECT_EQ(take.keys(), Keys{});
    const Lines lines = linesOfFile();
    ASSERT_EQ(lines.size(), std::size_t{strikes});
    EXPECT_EQ(lines.front(), "0.0 note 9 36 100 1 60.0");
    EXPECT_EQ(lines[500], "10.0 note 9 36 100 0 110.0");
}

TEST_F(RecordTakeTest, EachEndIsThatOfTheFirstStrikeOfItsKeyHoweverManyAreOpen)
{
    constexpr int strikes = 60'000;
    constexpr int keys = 40;
    for (int i = 0; i < strikes; ++i) {
        hear(i * 0.001, {0x99, static_cast<std::uint8_t>(36 + i % keys), 100});
    }
    for (int i = 0; i < strikes; ++i) {
        hear(60.0 + i * 0.001, {0x89, static_cast<std::uint8_t>(36 + i % keys), 1});
    }
    EXPECT_EQ(take.keys(), Keys{});
    const Lines lines = linesOfFile();
    ASSERT_EQ(lines.size(), std::size_t{strikes});
    EXPECT_EQ(lines[500], "1.0 note 9 56 100 1 120.0");
    EXPECT_EQ(lines[50'000], "100.0 note 9 36 100 1 120.0");
}

TEST_F(RecordTakeTest, AMessageThatEndsAllNotesEndsThoseOfItsChannel)
{
    for (const int controller : {120, 123}) {
        RecordTake other;
        other.begin(at(0.0));
        other.inbox->receive(at(0.0), Bytes{0x90, 60, 1, 0x90, 60, 1, 0x91, 62, 1});
        other.inbox->receive(at(0.5), Bytes{0xB0, static_cast<std::uint8_t>(controller), 0});
        other.collect(Moment::max());
        EXPECT_EQ(other.keys(), Keys{62});
        EXPECT_EQ(other.events(), 4);
        other.end(at(1.0));
        EXPECT_EQ(takeLines(*other.file()),
                  (Lines{"0.0 note 0 60 1 0 1.0", "0.0 note 0 60 1 0 1.0",
                         "1.0 message 176 " + std::to_string(controller) + " 0", "0.0 note 1 62 1 0 2.0"}));
    }
}

TEST_F(RecordTakeTest, ANoteThatEndsWhereItBeginsLastsATick)
{
    hear(0.5, {0x90, 60, 1, 0x80, 60, 1});
    hear(0.5, {0x90, 61, 1});
    take.end(at(0.5));
    EXPECT_EQ(linesOfFile(), (Lines{"1.0 note 0 60 1 1 0.0020833334", "1.0 note 0 61 1 0 0.0020833334"}));
}

TEST_F(RecordTakeTest, AnEndWithoutABeginningIsAnEventAndNoNote)
{
    hear(0.5, {0x80, 60, 1, 0xB0, 7, 3, 0xA0, 60, 0});
    EXPECT_EQ(take.events(), 3);
    EXPECT_EQ(linesOfFile(), (Lines{"1.0 message 176 7 3", "1.0 message 160 60 0"}));
}

TEST_F(RecordTakeTest, WhatCameBeforeTheBeginningCameWithItAndWhatCameTooLateIsLeftOut)
{
    take.inbox->receive(at(-1.0), Bytes{0xB0, 7, 1});
    take.inbox->receive(at(2.0), Bytes{0xB0, 7, 2});
    take.inbox->receive(at(2.001), Bytes{0xB0, 7, 3});
    take.collect(at(2.0));
    EXPECT_EQ(take.events(), 2);
    EXPECT_EQ(linesOfFile(), (Lines{"0.0 message 176 7 1", "4.0 message 176 7 2"}));
}

TEST_F(RecordTakeTest, TheEndTakesWhatStillWaits)
{
    take.inbox->receive(at(0.5), Bytes{0x90, 60, 1});
    take.inbox->receive(at(1.5), Bytes{0x90, 61, 1});
    take.end(at(1.0));
    EXPECT_EQ(take.events(), 1);
    EXPECT_EQ(linesOfFile(), Lines{"1.0 note 0 60 1 0 1.0"});
}

TEST_F(RecordTakeTest, AfterADayTimesAreStillExact)
{
    hear(86'399.0, {0x90, 60, 1});
    hear(86'399.5, {0x80, 60, 1});
    EXPECT_EQ(linesOfFile(), Lines{"172798.0 note 0 60 1 1 1.0"});
}

} // namespace
} // namespace volvelle::test
