#include "wire/SystemExclusive.h"

#include <gtest/gtest.h>
#include <vector>

namespace volvelle::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

const Bytes addressed{0xF0, 0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7};
const Bytes addressedShort{0xF0, 0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7};

Bytes changed(Bytes bytes, std::size_t index, std::uint8_t value)
{
    bytes.at(index) = value;
    return bytes;
}

TEST(SystemExclusive, KnowsTheResets)
{
    const std::vector<Bytes> resets{{0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7},
                                    {0xF0, 0x7E, 0x10, 0x09, 0x03, 0xF7},
                                    addressed,
                                    changed(changed(addressed, 5, 0x00), 8, 0x01),
                                    addressedShort,
                                    changed(changed(addressedShort, 2, 0x1F), 6, 0x7F)};
    for (const Bytes& reset : resets) {
        EXPECT_EQ(effectOf(reset), ExclusiveEffect::reset);
        EXPECT_EQ(settingKey(reset), 0U);
    }
}

TEST(SystemExclusive, KnowsTheSettings)
{
    const std::vector<Bytes> settings{
        {0xF0, 0x7F, 0x7F, 0x04, 0x01, 0x00, 0x7F, 0xF7},
        {0xF0, 0x7F, 0x7F, 0x08, 0x02, 0x00, 0x01, 0x3C, 0x3C, 0x00, 0x00, 0xF7},
        {0xF0, 0x7E, 0x7F, 0x08, 0x01, 0xF7},
        changed(addressed, 7, 0x04),
        changed(addressedShort, 6, 0x04)};
    for (const Bytes& setting : settings) {
        EXPECT_EQ(effectOf(setting), ExclusiveEffect::setting);
        EXPECT_NE(settingKey(setting), 0U);
    }
}

TEST(SystemExclusive, AllElseHasNoLastingEffect)
{
    const std::vector<Bytes> others{{},
                                    {0xF0},
                                    {0xF0, 0xF7},
                                    {0xF0, 0x7E, 0x7F, 0x09, 0xF7},
                                    {0xF0, 0x7E, 0x7F, 0x09, 0x02, 0xF7},
                                    {0xF0, 0x7E, 0x7F, 0x09, 0x04, 0xF7},
                                    {0xF0, 0x7F, 0x7F, 0x09, 0x01, 0xF7},
                                    {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0x00},
                                    {0xF1, 0x7E, 0x7F, 0x09, 0x01, 0xF7},
                                    {0xF0, 0x7D, 0x7F, 0x08, 0x01, 0xF7},
                                    {0xF0, 0x7E, 0x7F, 0x06, 0x01, 0xF7},
                                    changed(addressed, 1, 0x42),
                                    changed(addressed, 3, 0x43),
                                    changed(addressed, 4, 0x11),
                                    {0xF0, 0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0xF7},
                                    changed(addressedShort, 2, 0x20),
                                    changed(addressedShort, 3, 0x4D),
                                    {0xF0, 0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0xF7}};
    for (const Bytes& other : others) {
        EXPECT_EQ(effectOf(other), ExclusiveEffect::none);
        EXPECT_EQ(settingKey(other), 0U);
    }
}

TEST(SystemExclusive, SettingsOfOneAddressTakeTheirPlacesAndOthersDoNot)
{
    const Bytes first = changed(addressed, 7, 0x04);
    for (std::size_t i = 2; i < 10; ++i) {
        const Bytes other = changed(first, i, static_cast<std::uint8_t>(first[i] ^ 0x01));
        const bool isAddress = i < 8;
        if (effectOf(other) == ExclusiveEffect::setting) {
            EXPECT_EQ(settingKey(other) != settingKey(first), isAddress) << i;
        }
    }
    const Bytes second = changed(addressedShort, 6, 0x04);
    EXPECT_EQ(settingKey(second), settingKey(changed(second, 7, 1)));
    EXPECT_NE(settingKey(second), settingKey(changed(second, 6, 5)));
    Bytes longer = second;
    longer.insert(longer.end() - 1, 0x00);
    EXPECT_NE(settingKey(second), settingKey(longer));
    Bytes longByPage = second;
    longByPage.insert(longByPage.end() - 1, 256, 0x00);
    EXPECT_NE(settingKey(second), settingKey(longByPage));
}

TEST(SystemExclusive, DeviceControlsAreToldApartByTheirKind)
{
    const Bytes volume{0xF0, 0x7F, 0x7F, 0x04, 0x01, 0x00, 0x7F, 0xF7};
    EXPECT_EQ(settingKey(volume), settingKey(changed(volume, 6, 1)));
    EXPECT_EQ(settingKey(volume), settingKey(changed(volume, 5, 1)));
    EXPECT_NE(settingKey(volume), settingKey(changed(volume, 4, 2)));
    const Bytes effect{0xF0, 0x7F, 0x7F, 0x04, 0x05, 0x01, 0x01, 0x01, 0x01, 0x01, 0x00, 0x05, 0xF7};
    EXPECT_EQ(settingKey(effect), settingKey(changed(effect, 11, 6)));
    EXPECT_NE(settingKey(effect), settingKey(changed(effect, 10, 1)));
}

TEST(SystemExclusive, TuningsAreToldApartByProgramKeysAndChannels)
{
    const Bytes single{0xF0, 0x7F, 0x7F, 0x08, 0x02, 0x05, 0x01, 0x3C, 0x3C, 0x10, 0x00, 0xF7};
    EXPECT_EQ(settingKey(single), settingKey(changed(single, 8, 0x3D)));
    EXPECT_EQ(settingKey(single), settingKey(changed(single, 10, 0x01)));
    EXPECT_NE(settingKey(single), settingKey(changed(single, 7, 0x3D)));
    EXPECT_NE(settingKey(single), settingKey(changed(single, 5, 0x06)));
    const Bytes inBank{0xF0, 0x7F, 0x7F, 0x08, 0x07, 0x01, 0x05, 0x01, 0x3C, 0x3C, 0x10, 0x00, 0xF7};
    EXPECT_EQ(settingKey(inBank), settingKey(changed(inBank, 9, 0x3D)));
    EXPECT_NE(settingKey(inBank), settingKey(changed(inBank, 8, 0x3D)));
    EXPECT_NE(settingKey(inBank), settingKey(changed(inBank, 6, 0x06)));
}

Bytes octave(std::uint8_t kind, std::size_t size)
{
    Bytes bytes{0xF0, 0x7E, 0x7F, 0x08, kind, 0x02, 0x41, 0x05};
    bytes.resize(size - 1, 0x40);
    bytes.push_back(0xF7);
    return bytes;
}

TEST(SystemExclusive, ATuningIsChangedInItsSlot)
{
    const auto slotOf = [](std::uint8_t kind, std::size_t size) {
        Bytes bytes{0xF0, 0x7E, 0x7F, 0x08, kind, 0x05, 0x06};
        bytes.resize(size - 1);
        bytes.push_back(0xF7);
        const auto slot = changedTuning(bytes);
        return slot ? slot->bank * 128 + slot->program : -1;
    };
    for (const int kind : {1, 2}) {
        EXPECT_EQ(slotOf(static_cast<std::uint8_t>(kind), 12), 5) << kind;
    }
    for (const int kind : {4, 5, 6, 7}) {
        EXPECT_EQ(slotOf(static_cast<std::uint8_t>(kind), 12), 5 * 128 + 6) << kind;
    }
    for (const int kind : {0, 3, 8, 9, 10}) {
        EXPECT_EQ(slotOf(static_cast<std::uint8_t>(kind), 12), -1) << kind;
    }
    EXPECT_EQ(slotOf(2, 8), 5);
    EXPECT_EQ(changedTuning(Bytes{0xF0, 0x7E, 0x7F, 0x08, 0x02, 0x05, 0xF7}), std::nullopt);
    EXPECT_EQ(changedTuning(Bytes{0xF0, 0x7E, 0x7F, 0x09, 0x02, 0x05, 0x06, 0xF7}), std::nullopt);
}

TEST(SystemExclusive, AnOctaveIsTunedForTheChannelsOfTheMask)
{
    EXPECT_EQ(octaveTunedChannels(octave(8, 21)), 0b10'1000001'0000101);
    EXPECT_EQ(octaveTunedChannels(octave(9, 33)), 0b10'1000001'0000101);
    EXPECT_EQ(octaveTunedChannels(octave(8, 22)), 0);
    EXPECT_EQ(octaveTunedChannels(octave(8, 20)), 0);
    EXPECT_EQ(octaveTunedChannels(octave(9, 32)), 0);
    EXPECT_EQ(octaveTunedChannels(octave(7, 21)), 0);
    EXPECT_EQ(octaveTunedChannels(changed(octave(8, 21), 3, 0x09)), 0);
    EXPECT_EQ(octaveTunedChannels({}), 0);
    EXPECT_EQ(settingKey(octave(8, 21)), settingKey(changed(octave(8, 21), 8, 1)));
    EXPECT_NE(settingKey(octave(8, 21)), settingKey(changed(octave(8, 21), 7, 1)));
}

} // namespace

} // namespace volvelle::test
