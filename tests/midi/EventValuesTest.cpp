#include "midi/ConvertTempo.h"
#include "midi/KeySignature.h"
#include "midi/PitchBend.h"
#include "midi/SMTPOffset.h"
#include "midi/Tempo.h"
#include "midi/TimeSignature.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(EventValues, StartWithTheirDefaults)
{
    const TimeSignature time;
    EXPECT_EQ(time.numerator, 4);
    EXPECT_EQ(time.denumerator, 4);
    EXPECT_EQ(time._8th, 24);
    EXPECT_EQ(time._32nd, 8);
    const KeySignature key;
    EXPECT_EQ(key.sf + key.mi, 0);
    const SMTPOffset offset;
    EXPECT_EQ(offset.hours + offset.minutes + offset.seconds + offset.frames + offset.fract, 0);
    const Tempo tempo;
    EXPECT_EQ(tempo.b1 + tempo.b2 + tempo.b3, 0);
    EXPECT_EQ(tempo.value, 0U);
    const PitchBend bend;
    EXPECT_EQ(bend.msb + bend.lsb + bend.value, 0);
    EXPECT_EQ(bend.ptr, nullptr);
}

TEST(PitchBend, ReadsItsBytesAsOneLittleEndianNumber)
{
    PitchBend bend;
    bend.lsb = 0x40;
    EXPECT_EQ(bend.getIntValue(), 16384);
    EXPECT_EQ(bend.value, 16384);
    bend.setIntValue(0x1234);
    EXPECT_EQ(bend.msb, 0x34);
    EXPECT_EQ(bend.lsb, 0x12);
    EXPECT_EQ(bend.value, 0x1234);
    EXPECT_EQ(bend.ptr, nullptr);
}

TEST(PitchBend, ConvertsEveryNumberThereAndBack)
{
    PitchBend bend;
    for (unsigned number = 0; number <= 0xFFFF; ++number) {
        bend.setIntValue(static_cast<std::uint16_t>(number));
        ASSERT_EQ(bend.getIntValue(), number);
    }
}

TEST(ConvertTempo, ScalesTheTwoWaysDifferently)
{
    const ConvertTempo convert;
    EXPECT_EQ(convert.tempoToNumber(120.0), 60000000U);
    EXPECT_EQ(convert.numberToTempo(60000000U), 1.0);
    EXPECT_EQ(convert.tempoToBytes(120.0), (Bytes{3, 147, 135, 0}));
    EXPECT_EQ(convert.bytesToTempo({3, 147, 135, 0}), 1.0);
}

TEST(ConvertTempo, WritesFourBytesMostSignificantFirst)
{
    const ConvertTempo convert;
    EXPECT_EQ(convert.numberToBytes(0x01020304), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(convert.bytesToNumber({1, 2, 3, 4}), 0x01020304U);
    EXPECT_EQ(convert.bytesToNumber({0xFF, 0xFE, 0xFD, 0xFC, 9}), 0xFFFEFDFCU);
    EXPECT_EQ(convert.numberToBytes(0), (Bytes{0, 0, 0, 0}));
}

TEST(ConvertTempo, TruncatesTowardZero)
{
    const ConvertTempo convert;
    EXPECT_EQ(convert.tempoToNumber(-0.000001), 0U);
    EXPECT_EQ(convert.tempoToNumber(0.0000039), 1U);
    EXPECT_EQ(convert.tempoToNumber(4294967295.0 / 500000.0), 4294967295U);
}

TEST(ConvertTempoDeathTest, StopsWhereTheNumberDoesNotFit)
{
    const ConvertTempo convert;
    EXPECT_DEATH(convert.tempoToNumber(-1.0), "Not enough bits to represent the passed value");
    EXPECT_DEATH(convert.tempoToNumber(-1.0 / 500000.0), "Not enough bits to represent the passed value");
    EXPECT_DEATH(convert.tempoToNumber(4294967296.0 / 500000.0),
                 "Not enough bits to represent the passed value");
    EXPECT_DEATH(convert.tempoToNumber(std::numeric_limits<double>::infinity()), "Not enough bits");
    EXPECT_DEATH(convert.tempoToNumber(std::nan("")), "Not enough bits");
}

TEST(ConvertTempoDeathTest, StopsAtFewerThanFourBytes)
{
    const ConvertTempo convert;
    EXPECT_DEATH(convert.bytesToNumber({1, 2, 3}), "Index out of range");
    EXPECT_DEATH(convert.bytesToTempo({}), "Index out of range");
}

} // namespace
} // namespace volvelle
