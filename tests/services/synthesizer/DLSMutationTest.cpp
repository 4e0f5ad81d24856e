#include "services/synthesizer/DLSReader.h"

#include "tests/services/synthesizer/Measuring.h"
#include "tests/services/synthesizer/TinyBank.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <random>

namespace volvelle::test {

namespace {

std::vector<std::uint8_t> mutated(std::mt19937& random)
{
    std::vector<std::uint8_t> bytes = tinyBankBytes();
    const auto draw = [&](std::size_t below) { return static_cast<std::size_t>(random()) % below; };
    for (std::size_t count = 1 + draw(6); count > 0; --count) {
        const std::size_t at = draw(bytes.size() - 4);
        switch (draw(4)) {
        case 0:
            bytes[at] = static_cast<std::uint8_t>(draw(256));
            break;
        case 1:
            put32(bytes, at & ~std::size_t{1}, draw(2) == 0 ? 0xFFFFFFFFU : 0x80000000U);
            break;
        case 2:
            bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                        bytes.begin() + static_cast<std::ptrdiff_t>(at + 2));
            break;
        default:
            put32(bytes, at & ~std::size_t{1}, static_cast<std::uint32_t>(draw(700)));
            break;
        }
    }
    return bytes;
}

} // namespace

TEST(DLSMutation, EveryMutatedBankIsRefusedOrPlaysFiniteSound)
{
    ConsoleCapture console;
    const TemporaryFolder folder;
    std::mt19937 random(20240);
    int played = 0;
    const auto before = std::chrono::steady_clock::now();
    for (int i = 0; i < 300; ++i) {
        SynthesizerOptions options;
        options.reverb = false;
        options.chorus = false;
        const auto path = folder.write("mutated.dls", mutated(random));
        auto made = Synthesizer::make(path, options);
        if (!made) {
            EXPECT_FALSE(made.error().empty());
            continue;
        }
        const auto synthesizer = *std::move(made);
        for (const int channel : {0, 9}) {
            for (const int key : {0, 38, 60, 127}) {
                synthesizer->noteOn(channel, key, 100);
            }
        }
        synthesizer->controller(0, 1, 127, 700);
        const Stereo sound = renderFrames(*synthesizer, 2048);
        EXPECT_TRUE(std::isfinite(level(sound, 0, 2048))) << i;
        played += 1;
    }
    EXPECT_GT(played, 50);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(60));
}

} // namespace volvelle::test
