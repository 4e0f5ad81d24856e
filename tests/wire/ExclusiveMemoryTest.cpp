#include "wire/ExclusiveMemory.h"

#include <gmock/gmock.h>

namespace volvelle::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

// A setting of `size` bytes by an address of three.
Bytes setting(std::uint8_t address, std::size_t size = 12, std::uint8_t value = 0)
{
    Bytes bytes{0xF0, 0x41, 0x10, 0x42, 0x12, 0x40, 0x01, address};
    bytes.resize(size - 1, value);
    bytes.push_back(0xF7);
    return bytes;
}

std::vector<Bytes> held(const ExclusiveMemory& memory)
{
    std::vector<Bytes> result;
    for (std::size_t i = 0; i < memory.size(); ++i) {
        result.emplace_back(memory[i].begin(), memory[i].end());
    }
    return result;
}

const Bytes reset{0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7};

TEST(ExclusiveMemory, KeepsTheLastOfEachSettingInTheOrderOfTheirComing)
{
    ExclusiveMemory memory;
    memory.apply(setting(1, 12, 5));
    memory.apply(setting(2, 14, 6));
    memory.apply(Bytes{0xF0, 0x7D, 1, 2, 3, 0xF7});
    memory.apply(setting(1, 12, 7));
    EXPECT_EQ(held(memory), (std::vector<Bytes>{setting(2, 14, 6), setting(1, 12, 7)}));
}

TEST(ExclusiveMemory, AResetTakesThePlaceOfAllBefore)
{
    ExclusiveMemory memory;
    memory.apply(setting(1));
    memory.apply(reset);
    memory.apply(setting(2));
    memory.apply(reset);
    memory.apply(setting(3));
    EXPECT_EQ(held(memory), (std::vector<Bytes>{reset, setting(3)}));
    memory.clear();
    EXPECT_EQ(memory.size(), 0U);
}

TEST(ExclusiveMemory, WhereItIsFullTheOldestGo)
{
    ExclusiveMemory memory;
    for (std::size_t i = 0; i <= ExclusiveMemory::maximumMessages; ++i) {
        memory.apply(setting(static_cast<std::uint8_t>(i % 128), 12 + i / 128));
    }
    ASSERT_EQ(memory.size(), ExclusiveMemory::maximumMessages);
    EXPECT_EQ(held(memory).front(), setting(1));
    EXPECT_EQ(held(memory).back(), setting(0, 16));
}

TEST(ExclusiveMemory, TheResetStaysWhereSettingsGo)
{
    ExclusiveMemory memory;
    memory.apply(reset);
    for (std::size_t i = 0; i < ExclusiveMemory::maximumMessages; ++i) {
        memory.apply(setting(static_cast<std::uint8_t>(i % 128), 12 + i / 128));
    }
    ASSERT_EQ(memory.size(), ExclusiveMemory::maximumMessages);
    EXPECT_EQ(held(memory)[0], reset);
    EXPECT_EQ(held(memory)[1], setting(1));
}

TEST(ExclusiveMemory, TheOldestMakeRoomForTheBytesOfNewOnes)
{
    ExclusiveMemory memory;
    memory.apply(setting(1, ExclusiveMemory::maximumBytes / 2));
    memory.apply(setting(2, ExclusiveMemory::maximumBytes / 2));
    EXPECT_EQ(memory.size(), 2U);
    memory.apply(setting(3));
    EXPECT_EQ(held(memory), (std::vector<Bytes>{setting(2, ExclusiveMemory::maximumBytes / 2), setting(3)}));
    memory.apply(setting(4, ExclusiveMemory::maximumBytes));
    EXPECT_EQ(held(memory), (std::vector<Bytes>{setting(4, ExclusiveMemory::maximumBytes)}));
    memory.apply(setting(5, ExclusiveMemory::maximumBytes + 1));
    EXPECT_EQ(held(memory), (std::vector<Bytes>{setting(4, ExclusiveMemory::maximumBytes)}));
}

TEST(ExclusiveMemory, AResetGivesAllRoomBack)
{
    ExclusiveMemory memory;
    memory.apply(setting(1, ExclusiveMemory::maximumBytes));
    memory.apply(reset);
    const Bytes large = setting(2, ExclusiveMemory::maximumBytes - reset.size());
    memory.apply(large);
    EXPECT_EQ(held(memory), (std::vector<Bytes>{reset, large}));
}

TEST(ExclusiveMemory, ASettingThatLeavesNoRoomForTheResetTakesItsPlace)
{
    ExclusiveMemory memory;
    memory.apply(reset);
    const Bytes large = setting(2, ExclusiveMemory::maximumBytes);
    memory.apply(large);
    EXPECT_EQ(held(memory), (std::vector<Bytes>{large}));
}

} // namespace

} // namespace volvelle::test
