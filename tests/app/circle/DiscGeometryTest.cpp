#include "app/circle/DiscGeometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace volvelle {
namespace {

constexpr double pi = std::numbers::pi;
using Step = DiscGeometry::Step;

DiscContent fourBars()
{
    DiscContent content;
    content.chords = {{0.0, "Am7"}, {4.0, "F"}, {8.0, "C"}, {14.0, "Gsus4"}};
    return content;
}

int count(const DiscGeometry& disc, Step step)
{
    return static_cast<int>(
        std::ranges::count_if(disc.ticks, [&](const auto& tick) { return tick.step == step; }));
}

TEST(DiscGeometry, AUnitIsAShareOfTheSide)
{
    EXPECT_EQ(DiscGeometry(fourBars(), 1208.0).unit, 2.0);
    DiscContent small;
    small.isSmall = true;
    EXPECT_EQ(DiscGeometry(small, 267.0).unit, 0.5);
}

TEST(DiscGeometry, AngleZeroIsTwelveAndAQuarterIsThree)
{
    EXPECT_NEAR(DiscGeometry::place(0.0, 10.0).y, -10.0, 1e-12);
    EXPECT_NEAR(DiscGeometry::place(pi / 2.0, 10.0).x, 10.0, 1e-12);
}

TEST(DiscGeometry, ThePartOfARingHasALeastRectangleAroundIt)
{
    const auto expectNear = [](const CGRect& found, const CGRect& wanted) {
        EXPECT_NEAR(found.x, wanted.x, 1e-9);
        EXPECT_NEAR(found.y, wanted.y, 1e-9);
        EXPECT_NEAR(found.width, wanted.width, 1e-9);
        EXPECT_NEAR(found.height, wanted.height, 1e-9);
    };
    expectNear(DiscGeometry::around({0.0, pi / 2.0}, 10.0, 20.0), {0.0, -20.0, 20.0, 20.0});
    expectNear(DiscGeometry::around({pi / 6.0, pi / 6.0}, 0.0, 2.0),
               {0.0, -std::sqrt(3.0), std::sqrt(3.0), std::sqrt(3.0)});
    expectNear(DiscGeometry::around({pi / 4.0, pi}, 1.0, 2.0),
               {-std::sqrt(2.0), -std::sqrt(2.0), 2.0 + std::sqrt(2.0), 2.0 + std::sqrt(2.0)});
    expectNear(DiscGeometry::around({0.0, 2.0 * pi}, 3.0, 5.0), {-5.0, -5.0, 10.0, 10.0});
    expectNear(DiscGeometry::around({pi / 2.0, 0.0}, 4.0, 4.0), {4.0, 0.0, 0.0, 0.0});
}

TEST(DiscGeometry, TheScaleHasEachTickOnce)
{
    const DiscGeometry disc(fourBars(), 728.0);
    EXPECT_EQ(disc.ticks.size(), 64U);
    EXPECT_EQ(count(disc, Step::sixteenth), 48);
    EXPECT_EQ(count(disc, Step::beat), 12);
    EXPECT_EQ(count(disc, Step::bar), 4);
    EXPECT_EQ(disc.ticks.back(), (DiscGeometry::Tick{1.5 * pi, Step::bar, 267.0}));
    EXPECT_EQ(disc.spokes, (std::vector<double>{0.0, pi / 2.0, pi, 1.5 * pi}));
    EXPECT_EQ(disc.octaves, (std::vector<double>{120, 144, 168, 192, 216, 240}));
}

TEST(DiscGeometry, SmallOrLongDiscsHaveNoSixteenths)
{
    DiscContent content = fourBars();
    EXPECT_EQ(count(DiscGeometry(content, 399.0), Step::sixteenth), 0);
    EXPECT_EQ(count(DiscGeometry(content, 400.0), Step::sixteenth), 48);
    content.beats = 33.0;
    EXPECT_EQ(count(DiscGeometry(content, 728.0), Step::sixteenth), 0);
}

TEST(DiscGeometry, TicksNeverStandTooClose)
{
    DiscContent content;
    content.beats = 1e7;
    const DiscGeometry disc(content, 728.0);
    EXPECT_EQ(count(disc, Step::beat), 0);
    EXPECT_LE(disc.ticks.size(), 500U);
    EXPECT_GE(disc.ticks.size(), 200U);
}

TEST(DiscGeometry, AChordOwnsTheRingUpToTheNext)
{
    const DiscGeometry disc(fourBars(), 728.0);
    ASSERT_EQ(disc.chords.size(), 4U);
    EXPECT_EQ(disc.chords[0].sector, (DiscGeometry::Sector{0.0, pi / 2.0}));
    EXPECT_NEAR(disc.chords[2].sector.sweep, 0.75 * pi, 1e-12);
    EXPECT_NEAR(disc.chords[0].nameAngle, pi / 4.0, 1e-12);
    EXPECT_NEAR(disc.chords[2].nameAngle, 1.25 * pi, 1e-12);
    EXPECT_NEAR(disc.chords[3].nameAngle, 1.875 * pi, 1e-12);
    EXPECT_NEAR(disc.chords[0].room, 283.0 * pi / 2.0, 1e-9);
    EXPECT_FALSE(disc.chords[0].isFlipped);
    EXPECT_TRUE(disc.chords[1].isFlipped);
    EXPECT_TRUE(disc.chords[2].isFlipped);
    EXPECT_FALSE(disc.chords[3].isFlipped);
}

TEST(DiscGeometry, ANameStandsTwoBeatsBehindItsStartOrInTheMiddle)
{
    DiscContent content;
    content.chords = {{0.0, "Am7"}, {4.5, "F"}, {8.0, "C"}};
    const DiscGeometry disc(content, 728.0);
    EXPECT_NEAR(disc.chords.at(0).nameAngle, 2.0 / 16.0 * 2.0 * pi, 1e-12);
    EXPECT_NEAR(disc.chords.at(1).nameAngle, 6.25 / 16.0 * 2.0 * pi, 1e-12);
}

TEST(DiscGeometry, TheHubTellsChordPositionAndTempo)
{
    DiscContent content = fourBars();
    content.position = 5.75;
    content.tempo = 92.46;
    const DiscGeometry disc(content, 728.0);
    EXPECT_EQ(disc.chordName, "F");
    EXPECT_EQ(disc.positionText, "2.2");
    EXPECT_EQ(disc.tempoText, "92.5 bpm");
    EXPECT_EQ(disc.soundingChord, 1U);
    EXPECT_EQ(DiscGeometry(fourBars(), 728.0).positionText, "1.1");
    EXPECT_EQ(DiscGeometry(fourBars(), 728.0).tempoText, "120 bpm");
}

TEST(DiscGeometry, OnlyAPlayingDiscMoves)
{
    DiscContent content = fourBars();
    content.position = 5.0;
    const DiscGeometry rest(content, 728.0);
    EXPECT_FALSE(rest.wedge || rest.elapsed || rest.sounding);
    content.isPlaying = true;
    const DiscGeometry playing(content, 728.0);
    EXPECT_NEAR(playing.wedge->start, 0.625 * pi, 1e-12);
    EXPECT_NEAR(playing.wedge->sweep, 0.125 * pi, 1e-12);
    EXPECT_NEAR(playing.elapsed->sweep, 0.625 * pi, 1e-12);
    EXPECT_EQ(playing.sounding, playing.chords[1].sector);
}

TEST(DiscGeometry, MovingIsBeingMadeAnewElsewhere)
{
    DiscContent content = fourBars();
    DiscGeometry moved(content, 728.0);
    for (const double position : {0.0, 3.999, 4.0, 5.0, 15.999, 16.0, -1.0}) {
        for (const bool isPlaying : {true, false}) {
            content.position = position;
            content.isPlaying = isPlaying;
            moved.move(content);
            const DiscGeometry made(content, 728.0);
            EXPECT_EQ(moved.positionText, made.positionText);
            EXPECT_EQ(moved.chordName, made.chordName);
            EXPECT_EQ(moved.soundingChord, made.soundingChord);
            EXPECT_EQ(moved.sounding, made.sounding);
            EXPECT_EQ(moved.wedge, made.wedge);
            EXPECT_EQ(moved.elapsed, made.elapsed);
        }
    }
    EXPECT_EQ(moved.soundingChord, std::nullopt);
}

TEST(DiscGeometry, PastTheEndTheArcIsFullAndTheWedgeIsGone)
{
    DiscContent content = fourBars();
    content.isPlaying = true;
    content.position = 15.5;
    EXPECT_NEAR(DiscGeometry(content, 728.0).wedge->sweep, pi / 16.0, 1e-12);
    content.position = 20.0;
    const DiscGeometry disc(content, 728.0);
    EXPECT_FALSE(disc.wedge);
    EXPECT_NEAR(disc.elapsed->sweep, 2.0 * pi, 1e-12);
    EXPECT_FALSE(disc.sounding);
}

TEST(DiscGeometry, TheIndexMarkIsElevenPixelsWideAtLeast)
{
    const DiscGeometry large(fourBars(), 1208.0);
    EXPECT_EQ(large.index[0], (CGPoint{0.0, -254.5}));
    EXPECT_EQ(large.index[1].x, 5.5);
    const DiscGeometry little(fourBars(), 302.0);
    EXPECT_EQ((little.index[1].x - little.index[2].x) * little.unit, 11.0);
}

TEST(DiscGeometry, WhatIsNoNumberIsLeftOut)
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const double value : {0.0, -1.0, none, std::numeric_limits<double>::infinity()}) {
        DiscContent content = fourBars();
        content.isPlaying = true;
        content.beats = value;
        const DiscGeometry disc(content, 728.0);
        EXPECT_TRUE(disc.ticks.empty() && disc.chords.empty() && !disc.wedge);
        content = fourBars();
        content.isPlaying = true;
        content.beatsPerBar = content.tempo = content.position = value;
        EXPECT_FALSE(DiscGeometry(content, 728.0).positionText.empty());
        EXPECT_TRUE(DiscGeometry(content, 0.0).ticks.empty());
    }
}

} // namespace
} // namespace volvelle
