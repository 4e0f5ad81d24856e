#include "audio/MusicSynthesizer.h"

#include "audio/AudioUnitMIDISynth.h"
#include "tests/support/ProjectFolders.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

constexpr int block = 512; // frames

// The greatest value of so many blocks.
float loudestOf(AUAudioUnit& unit, int blocks)
{
    float greatest = 0.0F;
    std::array<float, block> left{};
    std::array<float, block> right{};
    for (int i = 0; i < blocks; ++i) {
        unit.render(left.data(), right.data(), left.data(), right.data(), block);
        for (const auto& side : {left, right}) {
            greatest = std::max({greatest, std::ranges::max(side), -std::ranges::min(side)});
        }
    }
    return greatest;
}

} // namespace

TEST(MusicSynthesizer, RestsWhereItIsAskedToAlone)
{
    const auto bank = buildFolder() / "resources/gs_instruments.dls";
    if (!std::filesystem::exists(bank)) {
        GTEST_SKIP() << "the built-in bank was not made";
    }
    const auto restless = musicSynthesizer(bank)(AudioUnitMIDISynth::cd);
    const auto rested = musicSynthesizer(bank, true)(AudioUnitMIDISynth::cd);
    for (AUAudioUnit* unit : {restless.get(), rested.get()}) {
        EXPECT_EQ(unit->musicDeviceMIDIEvent(0x90, 60, 127, 0), noErr);
        EXPECT_GT(loudestOf(*unit, 10), 0.01F);
        EXPECT_EQ(unit->musicDeviceMIDIEvent(0x80, 60, 0, 0), noErr);
        loudestOf(*unit, 20 * 48'000 / block);
    }
    EXPECT_GT(loudestOf(*restless, 10), 0.0F);
    EXPECT_EQ(loudestOf(*rested, 10), 0.0F);
}

} // namespace volvelle::test
