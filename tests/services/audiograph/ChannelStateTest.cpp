#include "services/audiograph/ChannelState.h"

#include "base/Text.h"

#include <gmock/gmock.h>

namespace volvelle::test {

namespace {

using testing::ElementsAre;

std::vector<std::string> told(const ChannelState& state)
{
    ChannelMessages messages;
    state.tell(2, messages);
    std::vector<std::string> lines;
    for (int i = 0; i < messages.count; ++i) {
        const auto& bytes = messages.list[static_cast<std::size_t>(i)];
        lines.push_back(hexadecimal(bytes[0]) + " " + hexadecimal(bytes[1]) + " " + hexadecimal(bytes[2]));
    }
    return lines;
}

TEST(ChannelState, WithoutEventsOnlyTheControllersAreReset)
{
    EXPECT_THAT(told(ChannelState()), ElementsAre("B2 79 00"));
}

TEST(ChannelState, TheLastValuesAreTold)
{
    ChannelState state;
    state.apply({0xB2, 32, 3});
    state.apply({0xC2, 9, 0});
    state.apply({0xB2, 11, 50});
    state.apply({0xB2, 1, 10});
    state.apply({0xB2, 1, 11});
    state.apply({0xE2, 5, 70});
    state.apply({0xD2, 33, 0});
    EXPECT_THAT(told(state), ElementsAre("B2 79 00", "B2 20 03", "C2 09 00", "B2 01 0B", "B2 0B 32",
                                         "E2 05 46", "D2 21 00"));
}

TEST(ChannelState, WhatOnlyComesLaterGetsItsUsualValue)
{
    ChannelState state;
    state.touch({0xB2, 0, 3});
    state.touch({0xC2, 9, 0});
    state.touch({0xB2, 7, 3});
    state.touch({0xB2, 74, 3});
    state.touch({0xB2, 91, 3});
    state.touch({0xB2, 1, 3});
    state.touch({0xE2, 5, 70});
    state.touch({0xD2, 33, 0});
    EXPECT_THAT(told(state), ElementsAre("B2 79 00", "B2 00 00", "C2 00 00", "B2 07 64", "B2 4A 40",
                                         "B2 5B 00", "E2 00 40", "D2 00 00"));
}

TEST(ChannelState, RegisteredParametersAreToldWithTheirSelection)
{
    ChannelState state;
    state.apply({0xB2, 101, 0});
    state.apply({0xB2, 100, 0});
    state.apply({0xB2, 6, 12});
    state.apply({0xB2, 100, 2});
    state.apply({0xB2, 6, 60});
    state.apply({0xB2, 101, 127});
    state.apply({0xB2, 100, 127});
    state.apply({0xB2, 6, 99});
    EXPECT_THAT(told(state), ElementsAre("B2 79 00", "B2 65 00", "B2 64 00", "B2 06 0C", "B2 65 00",
                                         "B2 64 02", "B2 06 3C", "B2 65 7F", "B2 64 7F"));
}

TEST(ChannelState, ARegisteredParameterThatOnlyComesLaterGetsItsUsualValue)
{
    ChannelState state;
    state.touch({0xB2, 101, 0});
    state.touch({0xB2, 100, 0});
    state.touch({0xB2, 6, 12});
    state.touch({0xB2, 38, 1});
    EXPECT_THAT(told(state), ElementsAre("B2 79 00", "B2 65 00", "B2 64 00", "B2 06 02", "B2 26 00"));
}

TEST(ChannelState, DataForOtherParametersIsNotMixedIn)
{
    ChannelState state;
    state.apply({0xB2, 101, 0});
    state.apply({0xB2, 100, 0});
    state.apply({0xB2, 99, 1});
    state.apply({0xB2, 98, 2});
    state.apply({0xB2, 6, 12});
    EXPECT_THAT(told(state), ElementsAre("B2 79 00", "B2 63 01", "B2 62 02"));
}

} // namespace

} // namespace volvelle::test
