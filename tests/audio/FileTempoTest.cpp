#include "audio/FileTempo.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace volvelle::test {

namespace {

// The sample that is due after so many frames, without any rounding.
double exactSample(const std::vector<std::pair<double, double>>& tempi, double frame)
{
    double beat = 0.0;
    double begin = 0.0;
    double bpm = 120.0;
    for (const auto& [at, next] : tempi) {
        const double end = begin + (at - beat) * 60.0 / bpm * 48000.0;
        if (end > frame) {
            break;
        }
        beat = at;
        begin = end;
        bpm = next;
    }
    return (beat + (frame - begin) / 48000.0 * bpm / 60.0) * 24000.0;
}

TEST(FileTempo, WithoutATempoAFrameIsASample)
{
    const FileTempo tempo;
    for (const std::int64_t frame : {0LL, 1LL, 511LL, 48000LL, 1LL << 40}) {
        EXPECT_EQ(tempo.step(frame, 333).frames, 333);
        EXPECT_EQ(tempo.step(frame, 333).sample, frame + 333);
    }
    EXPECT_EQ(tempo.frameAt(4.0), 96000.0);
}

TEST(FileTempo, AtAnotherRateTheBeatHasItsSamples)
{
    FileTempo tempo(44100.0);
    EXPECT_EQ(tempo.frameAt(2.0), 44100.0);
    tempo.add(2.0, 60.0);
    EXPECT_EQ(tempo.frameAt(3.0), 88200.0);
    EXPECT_EQ(tempo.step(44000, 512).frames, 100);
    EXPECT_EQ(tempo.step(44000, 512).sample, 44100);
}

TEST(FileTempo, AStepEndsWhereTheTempoChanges)
{
    FileTempo tempo;
    tempo.add(1.0, 240.0);
    tempo.add(2.0, 60.0);
    EXPECT_EQ(tempo.step(23900, 512).frames, 100);
    EXPECT_EQ(tempo.step(23900, 512).sample, 24000);
    EXPECT_EQ(tempo.step(24000, 512).frames, 512);
    EXPECT_EQ(tempo.step(24000, 512).sample, 24000 + 1024);
    EXPECT_EQ(tempo.step(35999, 512).frames, 1);
    EXPECT_EQ(tempo.step(35999, 512).sample, 48000);
    EXPECT_EQ(tempo.step(36000, 512).sample, 48000 + 256);
}

TEST(FileTempo, BeyondItsLimitsTheNearestCounts)
{
    FileTempo tempo;
    tempo.add(0.0, 5000.0);
    EXPECT_EQ(tempo.frameAt(10.0), 24000.0);
    tempo.add(10.0, 1.0);
    EXPECT_EQ(tempo.frameAt(11.0), 24000.0 + 240000.0);
}

TEST(FileTempo, WhatIsNoTempoIsPassedOver)
{
    FileTempo tempo;
    for (const double bpm :
         {0.0, -90.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        tempo.add(0.0, bpm);
    }
    EXPECT_EQ(tempo.frameAt(1.0), 24000.0);
}

TEST(FileTempo, ASecondTempoAtOneBeatWins)
{
    FileTempo tempo;
    tempo.add(1.0, 30.0);
    tempo.add(1.0, 240.0);
    EXPECT_EQ(tempo.frameAt(2.0), 36000.0);
    EXPECT_EQ(tempo.step(24000, 512).frames, 512);
}

TEST(FileTempo, ItIsReadWithoutRounding)
{
    MusicSequence sequence;
    MusicTrack track;
    ASSERT_EQ(NewMusicSequence(sequence), noErr);
    ASSERT_EQ(MusicSequenceGetTempoTrack(sequence, track), noErr);
    ASSERT_EQ(MusicTrackNewExtendedTempoEvent(track, 0.0, 300.0), noErr);
    ASSERT_EQ(MusicTrackNewExtendedTempoEvent(track, 4.0, 93.75), noErr);
    FileTempo tempo;
    EXPECT_EQ(tempo.read(sequence), noErr);
    EXPECT_EQ(tempo.frameAt(4.0), 38400.0);
    EXPECT_EQ(tempo.frameAt(5.0), 38400.0 + 30720.0);
    EXPECT_NE(FileTempo().read(nullptr), noErr);
}

TEST(FileTempo, StepsNeverDriftAndNeverGoBack)
{
    std::mt19937 random(7); // NOLINT(bugprone-random-generator-seed)
    for (int round = 0; round < 200; ++round) {
        FileTempo tempo;
        std::vector<std::pair<double, double>> tempi;
        double beat = 0.0;
        for (int i = 0; i < 8; ++i) {
            tempi.emplace_back(beat, 12.0 + static_cast<double>(random() % 118801) / 100.0);
            tempo.add(beat, tempi.back().second);
            beat += static_cast<double>(random() % 2000) / 480.0;
        }
        std::int64_t frame = 0;
        std::int64_t before = 0;
        while (frame < 200'000) {
            const int asked = 1 + static_cast<int>(random() % 512);
            const FileStep step = tempo.step(frame, asked);
            ASSERT_GT(step.frames, 0);
            ASSERT_LE(step.frames, asked);
            ASSERT_GE(step.sample, before);
            frame += step.frames;
            before = step.sample;
            const auto place = static_cast<double>(frame);
            ASSERT_GE(static_cast<double>(step.sample), exactSample(tempi, place - 1.0) - 1.0) << frame;
            ASSERT_LE(static_cast<double>(step.sample), exactSample(tempi, place + 1.0) + 1.0) << frame;
        }
    }
}

} // namespace

} // namespace volvelle::test
