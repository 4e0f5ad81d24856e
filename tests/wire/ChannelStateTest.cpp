#include "wire/ChannelState.h"

#include "tests/wire/ToldState.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <random>

namespace volvelle::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;

using Lines = std::vector<std::string>;

// What a state tells more than one that nothing was told, and in its place.
Lines news(const ChannelState& state)
{
    const Lines usual = told(ChannelState(), 2);
    Lines lines = told(state, 2);
    std::erase_if(lines,
                  [&](const std::string& line) { return std::ranges::find(usual, line) != usual.end(); });
    return lines;
}

ChannelState after(const std::vector<ShortMessage>& messages)
{
    ChannelState state;
    for (const ShortMessage& message : messages) {
        state.apply(message);
    }
    return state;
}

TEST(ChannelState, AFreshChannelIsToldWhole)
{
    EXPECT_THAT(told(ChannelState(), 2),
                ElementsAre("B2 79 00", "B2 00 00", "B2 20 00", "C2 00", "B2 07 64", "B2 08 40", "B2 0A 40",
                            "B2 27 00", "B2 28 00", "B2 2A 00", "B2 46 40", "B2 47 40", "B2 48 40",
                            "B2 49 40", "B2 4A 40", "B2 4B 40", "B2 4C 40", "B2 4D 40", "B2 4E 40",
                            "B2 4F 40", "B2 5B 00", "B2 5C 00", "B2 5D 00", "B2 5E 00", "B2 5F 00",
                            "B2 65 00", "B2 64 00", "B2 26 00", "B2 06 02", "B2 65 00", "B2 64 01",
                            "B2 26 00", "B2 06 40", "B2 65 00", "B2 64 02", "B2 26 00", "B2 06 40",
                            "B2 65 7F", "B2 64 7F"));
}

TEST(ChannelState, EachControllerHasItsUsualValue)
{
    for (int number = 0; number < 128; ++number) {
        int usual = 0;
        if (number == 8 || number == 10 || (number >= 70 && number <= 79)) {
            usual = 64;
        } else if (number == 7) {
            usual = 100;
        } else if (number == 11 || number == 43 || (number >= 98 && number <= 101)) {
            usual = 127;
        } else if (number == 84 || number >= 120) {
            usual = -1;
        }
        EXPECT_EQ(ChannelState().controller(number), usual) << number;
    }
}

TEST(ChannelState, TheLastValuesAreTold)
{
    EXPECT_THAT(news(after({{0xB2, 11, 50},
                            {0xB2, 1, 10},
                            {0xB2, 1, 11},
                            {0xE2, 5, 70},
                            {0xD2, 33, 0},
                            {0xA2, 60, 7},
                            {0xA2, 61, 8},
                            {0xA2, 61, 0}})),
                ElementsAre("B2 01 0B", "B2 0B 32", "E2 05 46", "D2 21", "A2 3C 07"));
}

TEST(ChannelState, EachControllerThatIsNoModeIsToldWithItsLastValue)
{
    for (int number = 1; number < 120; ++number) {
        const bool isOfOthers =
            number == 6 || number == 32 || number == 38 || (number >= 96 && number <= 101);
        if (isOfOthers) {
            continue;
        }
        const auto controller = static_cast<std::uint8_t>(number);
        EXPECT_THAT(told(after({{0xB2, controller, 3}, {0xB2, controller, 33}}), 2),
                    Contains(hexLine({0xB2, controller, 33})))
            << number;
    }
}

// Of the controllers 1 to 119: what controller 121 leaves as it is.
const std::vector<int> survivors{7,  8,  10, 39, 40, 42, 70, 71, 72, 73, 74,
                                 75, 76, 77, 78, 79, 91, 92, 93, 94, 95};

TEST(ChannelState, TheResetOfControllersResetsWhatItsPracticeSays)
{
    for (int number = 1; number < 120; ++number) {
        const bool isOfOthers =
            number == 6 || number == 32 || number == 38 || (number >= 96 && number <= 101);
        const auto controller = static_cast<std::uint8_t>(number);
        const ChannelState state = after({{0xB2, controller, 33}, {0xB2, 121, 0}});
        const bool survives = std::ranges::find(survivors, number) != survivors.end();
        if (!survives) {
            EXPECT_EQ(state.controller(number), number == 32 ? 33 : ChannelState().controller(number))
                << number;
        }
        if (!isOfOthers) {
            EXPECT_EQ(news(state), survives ? Lines{hexLine({0xB2, controller, 33})} : Lines{}) << number;
        }
    }
}

TEST(ChannelState, TheResetOfControllersResetsBendAndPressures)
{
    EXPECT_THAT(news(after({{0xE2, 5, 70}, {0xD2, 33, 0}, {0xA2, 60, 7}, {0xB2, 121, 0}})), ElementsAre());
}

TEST(ChannelState, TheResetOfControllersLeavesProgramBankAndParameters)
{
    EXPECT_THAT(news(after({{0xB2, 0, 8},
                            {0xC2, 5, 0},
                            {0xB2, 101, 0},
                            {0xB2, 100, 0},
                            {0xB2, 6, 12},
                            {0xB2, 121, 0},
                            {0xB2, 6, 33}})),
                ElementsAre("B2 00 08", "C2 05", "B2 06 0C"));
}

TEST(ChannelState, AProgramKeepsTheBankThatWasSelectedForIt)
{
    const Lines lines =
        told(after({{0xB2, 0, 8}, {0xB2, 32, 1}, {0xC2, 5, 0}, {0xB2, 0, 9}, {0xB2, 32, 2}}), 2);
    EXPECT_EQ(Lines(lines.begin() + 1, lines.begin() + 6),
              (Lines{"B2 00 08", "B2 20 01", "C2 05", "B2 00 09", "B2 20 02"}));
}

TEST(ChannelState, ParametersAreToldByTheirNumbers)
{
    EXPECT_THAT(news(after({{0xB2, 101, 0}, {0xB2, 100, 0}, {0xB2, 6, 12}, {0xB2, 100, 2}, {0xB2, 6, 60}})),
                ElementsAre("B2 06 0C", "B2 06 3C"));
    EXPECT_THAT(news(after({{0xB2, 99, 1}, {0xB2, 98, 8}, {0xB2, 6, 60}, {0xB2, 98, 9}, {0xB2, 6, 61}})),
                ElementsAre("B2 63 01", "B2 62 08", "B2 06 3C", "B2 63 01", "B2 62 09", "B2 06 3D",
                            "B2 63 01", "B2 62 09"));
}

TEST(ChannelState, DataWithoutAParameterSetsNone)
{
    EXPECT_THAT(news(after({{0xB2, 6, 12},
                            {0xB2, 101, 0},
                            {0xB2, 100, 0},
                            {0xB2, 101, 127},
                            {0xB2, 100, 127},
                            {0xB2, 6, 99}})),
                ElementsAre());
}

TEST(ChannelState, FineDataIsToldOnTheSideOfTheCoarseWhereItCame)
{
    const Lines before = told(after({{0xB2, 101, 0}, {0xB2, 100, 1}, {0xB2, 38, 5}, {0xB2, 6, 70}}), 2);
    const auto place = std::ranges::find(before, "B2 64 01");
    EXPECT_EQ(Lines(place, place + 3), (Lines{"B2 64 01", "B2 26 05", "B2 06 46"}));
    const Lines behind = told(after({{0xB2, 101, 0}, {0xB2, 100, 1}, {0xB2, 6, 70}, {0xB2, 38, 5}}), 2);
    const auto other = std::ranges::find(behind, "B2 64 01");
    EXPECT_EQ(Lines(other, other + 3), (Lines{"B2 64 01", "B2 06 46", "B2 26 05"}));
}

TEST(ChannelState, FineDataOfAnotherParameterIsBroughtWithoutChangingAny)
{
    const Lines lines =
        told(after({{0xB2, 101, 0}, {0xB2, 100, 1}, {0xB2, 38, 5}, {0xB2, 100, 2}, {0xB2, 6, 70}}), 2);
    EXPECT_EQ(Lines(lines.begin() + 29, lines.end()),
              (Lines{"B2 65 00", "B2 64 01", "B2 06 40", "B2 26 05", "B2 65 00", "B2 64 02", "B2 06 46",
                     "B2 26 00", "B2 65 7F", "B2 64 7F", "B2 26 05", "B2 65 00", "B2 64 02"}));
}

TEST(ChannelState, CoarseDataFindsTheFineThatStoodThereWhenItCame)
{
    const Lines lines = told(after({{0xB2, 101, 0},
                                    {0xB2, 100, 1},
                                    {0xB2, 6, 70},
                                    {0xB2, 38, 5},
                                    {0xB2, 100, 0},
                                    {0xB2, 6, 12},
                                    {0xB2, 38, 3}}),
                             2);
    const auto coarse = std::ranges::find(lines, "B2 06 0C");
    ASSERT_GE(coarse - lines.begin(), 5);
    EXPECT_EQ(Lines(coarse - 5, coarse + 2),
              (Lines{"B2 65 7F", "B2 64 7F", "B2 26 05", "B2 65 00", "B2 64 00", "B2 06 0C", "B2 26 03"}));
}

TEST(ChannelState, OfTooManyParametersTheOneNamedFirstGoes)
{
    ChannelState state;
    state.apply({0xB2, 99, 1});
    for (std::size_t i = 0; i <= ChannelState::maximumParameters; ++i) {
        state.apply({0xB2, 98, static_cast<std::uint8_t>(i)});
        state.apply({0xB2, 6, 1});
    }
    const Lines lines = told(state, 2);
    EXPECT_EQ(std::ranges::count(lines, "B2 62 00"), 0);
    EXPECT_EQ(std::ranges::count(lines, "B2 62 01"), 1);
    EXPECT_EQ(std::ranges::count(lines, "B2 62 40"), 2);
    EXPECT_THAT(lines, IsSupersetOf({"B2 64 00", "B2 64 01", "B2 64 02"}));
}

TEST(ChannelState, ATuningProgramKeepsTheBankThatWasSelectedForIt)
{
    const Lines lines = told(after({{0xB2, 101, 0},
                                    {0xB2, 100, 4},
                                    {0xB2, 6, 1},
                                    {0xB2, 100, 3},
                                    {0xB2, 6, 7},
                                    {0xB2, 100, 4},
                                    {0xB2, 6, 2}}),
                             2);
    const auto bank = std::ranges::find(lines, "B2 64 04");
    EXPECT_EQ(*(bank + 1), "B2 06 02");
    const auto own = std::find(bank + 1, lines.end(), "B2 64 04");
    EXPECT_EQ(Lines(own, own + 8), (Lines{"B2 64 04", "B2 06 01", "B2 65 00", "B2 64 03", "B2 06 07",
                                          "B2 65 00", "B2 64 04", "B2 06 02"}));
}

TEST(ChannelState, AKeyToGlideFromWaitsForTheNextNote)
{
    EXPECT_THAT(news(after({{0xB2, 84, 50}})), ElementsAre("B2 54 32"));
    EXPECT_THAT(news(after({{0xB2, 84, 50}, {0x92, 60, 0}})), ElementsAre("B2 54 32"));
    EXPECT_THAT(news(after({{0xB2, 84, 50}, {0x92, 60, 1}})), ElementsAre());
}

TEST(ChannelState, OfTheModesOnlyMonoAndPolyAreTold)
{
    EXPECT_THAT(news(after({{0xB2, 120, 0}, {0xB2, 122, 0}, {0xB2, 123, 0}, {0xB2, 124, 0}, {0xB2, 125, 0}})),
                ElementsAre());
    EXPECT_THAT(news(after({{0xB2, 127, 0}, {0xB2, 126, 3}})), ElementsAre("B2 7E 03"));
    EXPECT_THAT(news(after({{0xB2, 126, 3}, {0xB2, 127, 0}})), ElementsAre("B2 7F 00"));
}

TEST(ChannelState, ATunedOctaveEndsTheTuningProgram)
{
    ChannelState state = after({{0xB2, 101, 0}, {0xB2, 100, 3}, {0xB2, 6, 7}});
    state.endTuningProgram();
    EXPECT_EQ(std::ranges::count(told(state, 2), "B2 06 07"), 0);
}

ShortMessage randomMessage(std::mt19937& random, const std::vector<std::uint8_t>& dataNumbers)
{
    const auto below = [&](unsigned end) { return static_cast<std::uint8_t>(random() % end); };
    if (random() % 2 == 0) {
        return {0xB0, dataNumbers[below(static_cast<unsigned>(dataNumbers.size()))], below(3)};
    }
    return {static_cast<std::uint8_t>(0x80 + 0x10 * below(7)), below(96), below(128)};
}

TEST(ChannelState, ADeviceInAnyStateThatIsToldAnotherHasIt)
{
    std::mt19937 random(11);
    for (int run = 0; run < 300; ++run) {
        ChannelState state;
        ChannelState device;
        device.apply({0xB0, 101, 0});
        device.apply({0xB0, 100, 0});
        for (int i = 0; i < 60; ++i) {
            state.apply(randomMessage(random, {6, 38, 98, 99, 100, 101, 0, 32}));
            const ShortMessage other = randomMessage(random, {6, 38, 100, 0, 32});
            device.apply(other);
        }
        ChannelMessages messages;
        state.tell(0, messages);
        for (const ShortMessage& message : messages.all()) {
            device.apply(message);
        }
        EXPECT_THAT(told(device, 0), testing::UnorderedElementsAreArray(told(state, 0)));
    }
}

} // namespace

} // namespace volvelle::test
