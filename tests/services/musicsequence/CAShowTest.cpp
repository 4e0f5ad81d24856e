#include "tests/services/musicsequence/SequenceTools.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

TEST(CAShow, PrintsTheSequenceWithALineForEveryEvent)
{
    const MusicSequence sequence = newSequence();
    const MusicTrack track = newTrack(sequence);
    newTrack(sequence);
    addTempo(sequence, 0.0, 90.0);
    addNote(track, 0.0, 60, 0.5F, 3, 100, 64);
    addMessage(track, 1.0, 0xB0, 7, 100);
    addMeta(track, 2.0, 0x03, hex("\"Bass\""));
    addRawData(track, 3.0, hex("F0 F7"));
    EXPECT_EQ(tryUserData(track, 4.0, hex("01")), noErr);
    EXPECT_EQ(MusicTrackNewExtendedNoteEvent(track, 5.0, {1, 2, 0.5F, {}}), noErr);
    EXPECT_EQ(MusicTrackNewParameterEvent(track, 6.0, {7, 0, 0, 0.25F}), noErr);
    EXPECT_EQ(MusicTrackNewAUPresetEvent(track, 7.0, {12}), noErr);
    ConsoleCapture capture;
    CAShow(sequence);
    EXPECT_EQ(capture.take(),
              (Lines{"MusicSequence: 2 tracks", "Tempo track: 1 events, length 0.0", "  0.0  tempo 90.0",
                     "Track 0: 8 events, length 7.0",
                     "  0.0  note, channel 3, number 60, velocity 100, release 64, duration 0.5",
                     "  1.0  message B0 07 64", "  2.0  meta 03, 4 bytes", "  3.0  raw data, 2 bytes",
                     "  4.0  user data, 1 bytes", "  5.0  extended note, duration 0.5",
                     "  6.0  parameter 7, value 0.25", "  7.0  preset 12", "Track 1: 0 events, length 0.0"}));
}

TEST(CAShow, OfNoSequencePrintsSo)
{
    ConsoleCapture capture;
    CAShow(nullptr);
    EXPECT_EQ(capture.take(), Lines{"MusicSequence: none"});
}

} // namespace

} // namespace volvelle::test
