#include "wire/HeldSounds.h"

#include <gtest/gtest.h>

#include <vector>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;

// What it takes to end all after these messages.
std::vector<Bytes> ending(const std::vector<Bytes>& messages)
{
    HeldSounds sounds;
    for (const Bytes& message : messages) {
        const int before = sounds.releases();
        const int change = sounds.change(message);
        sounds.apply(message);
        EXPECT_EQ(sounds.releases(), before + change);
    }
    const auto count = static_cast<std::size_t>(sounds.releases());
    std::vector<Bytes> result;
    sounds.end([&result](const auto& message) { result.emplace_back(message.begin(), message.end()); });
    EXPECT_EQ(result.size(), count);
    EXPECT_EQ(sounds.releases(), 0);
    return result;
}

TEST(HeldSounds, EachNoteIsOwedAsManyEndsAsItHasStarts)
{
    EXPECT_EQ(ending({{0x95, 60, 1}, {0x95, 60, 127}, {0x95, 61, 1}, {0x85, 61, 0}, {0x85, 61, 0}}),
              (std::vector<Bytes>{{0x85, 60, 0}, {0x85, 60, 0}}));
    EXPECT_EQ(ending({{0x95, 60, 1}, {0x95, 60, 1}, {0x85, 60, 64}}), std::vector<Bytes>(1, {0x85, 60, 0}));
}

TEST(HeldSounds, ANoteOnOfVelocityZeroIsAnEnd)
{
    EXPECT_EQ(ending({{0x90, 60, 1}, {0x90, 60, 0}, {0x90, 61, 0}}), std::vector<Bytes>{});
}

TEST(HeldSounds, EachChannelStandsForItself)
{
    EXPECT_EQ(ending({{0x90, 60, 1}, {0x81, 60, 0}, {0xB1, 123, 0}, {0xB0, 64, 1}, {0xB1, 64, 0}}),
              (std::vector<Bytes>{{0x80, 60, 0}, {0xB0, 64, 0}}));
}

TEST(HeldSounds, APedalIsLiftedOnceHoweverOftenItWasMoved)
{
    EXPECT_EQ(ending({{0xB4, 64, 1}, {0xB4, 64, 127}, {0xB4, 66, 63}, {0xB4, 69, 127}, {0xB4, 69, 0}}),
              (std::vector<Bytes>{{0xB4, 64, 0}, {0xB4, 66, 0}}));
}

TEST(HeldSounds, NoOtherControllerIsOwedAnything)
{
    for (int controller = 0; controller < 128; ++controller) {
        const bool isPedal = controller == 64 || controller == 66 || controller == 69;
        const Bytes message{0xB0, static_cast<std::uint8_t>(controller), 127};
        EXPECT_EQ(ending({message}).size(), isPedal ? 1U : 0U) << controller;
    }
}

TEST(HeldSounds, TheEndOfAllNotesLeavesThePedalsAndAResetLiftsThemAlone)
{
    const std::vector<Bytes> start{{0x92, 0, 1}, {0x92, 127, 1}, {0xB2, 64, 1}, {0xB2, 69, 1}};
    for (int controller = 0; controller < 128; ++controller) {
        std::vector<Bytes> messages = start;
        messages.push_back({0xB2, static_cast<std::uint8_t>(controller), 0});
        std::vector<Bytes> expected{{0x82, 0, 0}, {0x82, 127, 0}, {0xB2, 64, 0}, {0xB2, 69, 0}};
        if (controller == 120 || controller == 123) {
            expected.erase(expected.begin(), expected.begin() + 2);
        } else if (controller == 121) {
            expected.resize(2);
        } else if (controller == 64) {
            expected.erase(expected.begin() + 2);
        } else if (controller == 69) {
            expected.pop_back();
        }
        EXPECT_EQ(ending(messages), expected) << controller;
    }
}

TEST(HeldSounds, NothingElseCounts)
{
    EXPECT_EQ(
        ending({{0xC0, 60}, {0xA0, 60, 1}, {0xE0, 60, 1}, {0xF2, 60, 1}, {0x90, 60, 1, 1}, {0x90, 60}, {}}),
        std::vector<Bytes>{});
}

TEST(HeldSounds, TellsWhatEndsSomething)
{
    for (int controller = 0; controller < 128; ++controller) {
        const auto number = static_cast<std::uint8_t>(controller);
        const bool isPedal = controller == 64 || controller == 66 || controller == 69;
        const bool isEnd = controller == 120 || controller == 121 || controller == 123;
        for (const std::uint8_t value : Bytes{0, 63, 64, 127}) {
            const Bytes message{0xB7, number, value};
            EXPECT_EQ(HeldSounds::ends(message), isEnd || (isPedal && value < 64)) << controller;
        }
    }
    EXPECT_TRUE(HeldSounds::ends(Bytes{0x80, 60, 127}));
    EXPECT_TRUE(HeldSounds::ends(Bytes{0x9F, 60, 0}));
    for (const std::uint8_t status : Bytes{0x90, 0xA0, 0xC0, 0xD0, 0xE0, 0xF0}) {
        EXPECT_FALSE(HeldSounds::ends(Bytes{status, 64, 1})) << int{status};
    }
    EXPECT_FALSE(HeldSounds::ends(Bytes{0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7}));
}

TEST(HeldSounds, ManyStartsOfOneKeyAreCountedTo255)
{
    EXPECT_EQ(ending(std::vector<Bytes>(255, {0x90, 1, 1})).size(), 255U);
    EXPECT_EQ(ending(std::vector<Bytes>(300, {0x90, 1, 1})).size(), 255U);
}

} // namespace
} // namespace volvelle
