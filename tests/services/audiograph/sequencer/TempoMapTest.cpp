#include "services/audiograph/sequencer/TempoMap.h"

#include <cmath>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

TEST(TempoMap, WithoutATempoABeatLastsHalfASecond)
{
    const TempoMap map;
    EXPECT_EQ(map.seconds(3.0), 1.5);
    EXPECT_EQ(map.beats(1.5), 3.0);
    EXPECT_EQ(map.firstTempo(), 120.0);
}

TEST(TempoMap, TemposHoldUntilTheNextAndTheLastForEver)
{
    TempoMap map;
    map.add(0.0, 60.0);
    map.add(2.0, 240.0);
    map.add(4.0, 30.0);
    EXPECT_EQ(map.firstTempo(), 60.0);
    EXPECT_EQ(map.seconds(1.0), 1.0);
    EXPECT_EQ(map.seconds(2.0), 2.0);
    EXPECT_EQ(map.seconds(4.0), 2.5);
    EXPECT_EQ(map.seconds(104.0), 202.5);
    EXPECT_EQ(map.beats(2.25), 3.0);
    EXPECT_EQ(map.beats(202.5), 104.0);
}

TEST(TempoMap, ALaterTempoAtTheSameBeatWinsAndImpossibleOnesAreIgnored)
{
    TempoMap map;
    map.add(1.0, 60.0);
    map.add(1.0, 240.0);
    map.add(2.0, 0.0);
    map.add(2.0, -5.0);
    map.add(2.0, std::nan(""));
    EXPECT_EQ(map.seconds(5.0), 1.5);
}

} // namespace

} // namespace volvelle::test
