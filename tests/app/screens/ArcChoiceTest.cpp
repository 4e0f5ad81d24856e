#include "app/screens/ArcChoice.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <numbers>
#include <ranges>

namespace volvelle {
namespace {

constexpr double costly = 2.0 * std::numbers::pi; // the sweep of a whole turn

CircleArc arcOf(double radius, double startAngle, double sweep)
{
    CircleArc arc;
    arc.radius = radius;
    arc.startAngle = startAngle;
    arc.sweep = sweep;
    arc.width = 2.0;
    return arc;
}

// Of so many rings, one arc after the other.
CircleDrawing ringsOf(int count, int rings, double sweep)
{
    CircleDrawing drawing;
    for (int i = 0; i < count; ++i) {
        drawing.arcs.push_back(arcOf(100.0 + i % rings, 0.001 * i, sweep));
    }
    return drawing;
}

std::ptrdiff_t countOf(const std::vector<bool>& chosen)
{
    return std::ranges::count(chosen, true);
}

TEST(ArcChoice, AllArcsArePaintedWhereThatIsDoneInTime)
{
    const CircleDrawing drawing = ringsOf(1000, 13, 0.1);
    EXPECT_EQ(chooseArcs(drawing, 1.0), std::vector<bool>(1000, true));
    EXPECT_EQ(chooseArcs({}, 1.0), std::vector<bool>());
}

TEST(ArcChoice, OfArcsThatLookAlikeTheTopmostIsPainted)
{
    CircleDrawing drawing;
    for (int i = 0; i < 8000; ++i) {
        drawing.arcs.push_back(arcOf(100.0 + i % 16, 1e-9 * i, costly));
    }
    std::vector<bool> expected(8000, false);
    std::fill(expected.end() - 16, expected.end(), true);
    EXPECT_EQ(chooseArcs(drawing, 1.0), expected);
    drawing.arcs[3].color.red = 0.5;
    drawing.arcs[4].width = 1.0;
    drawing.arcs[5].startAngle = 0.01;
    drawing.arcs[6].sweep = 1.0;
    expected[3] = expected[4] = expected[5] = expected[6] = true;
    EXPECT_EQ(chooseArcs(drawing, 1.0), expected);
}

TEST(ArcChoice, NoRingIsLeftOutWhateverTheRhythm)
{
    for (const int rings : {1, 2, 3, 4, 8, 13, 16, 64}) {
        for (const int count : {6000, 20'000, 100'000}) {
            const CircleDrawing drawing = ringsOf(count, rings, costly);
            const std::vector<bool> chosen = chooseArcs(drawing, 1.0);
            std::map<double, int> found;
            for (std::size_t i = 0; i < chosen.size(); ++i) {
                found[drawing.arcs[i].radius] += chosen[i] ? 1 : 0;
            }
            const auto [least, most] = std::ranges::minmax(found | std::views::values);
            EXPECT_GE(least, 1) << rings << " rings of " << count;
            EXPECT_GE(least + 3, most * 9 / 10) << rings << " rings of " << count;
            EXPECT_LT(countOf(chosen), 5000);
            EXPECT_GT(countOf(chosen), 2000);
        }
    }
}

TEST(ArcChoice, ARingOfOneNoteAmongThousandsStays)
{
    CircleDrawing drawing = ringsOf(50'000, 2, costly);
    drawing.arcs[77].radius = 300.0;
    EXPECT_TRUE(chooseArcs(drawing, 1.0)[77]);
}

TEST(ArcChoice, WhatHasNoPlaceCostsNothing)
{
    CircleDrawing drawing = ringsOf(100'000, 13, costly);
    for (CircleArc& arc : drawing.arcs) {
        arc.radius = std::numeric_limits<double>::infinity();
    }
    EXPECT_EQ(countOf(chooseArcs(drawing, 1.0)), 100'000);
}

} // namespace
} // namespace volvelle
