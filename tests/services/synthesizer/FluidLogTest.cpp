#include "services/synthesizer/Synthesizer.h"
#include "tests/services/synthesizer/Measuring.h"
#include "tests/services/synthesizer/TinyBank.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

#include <thread>

namespace volvelle::test {

namespace {

// What a rendering thread says of program changes to sounds that the bank does not have.
std::vector<std::string> linesOfChanges(int count)
{
    const TemporaryFolder folder;
    const auto synthesizer = drySynthesizer(folder.write("tiny.dls", tinyBankBytes()));
    ConsoleCapture console;
    std::thread renderer([&] {
        for (int i = 0; i < count; ++i) {
            synthesizer->program(1, 60, 0);
            renderFrames(*synthesizer, 64);
        }
    });
    renderer.join();
    return console.take();
}

constexpr const char* noSuchSound =
    "Synthesizer: Instrument not found on channel 1 [bank=0 prog=60], substituted [bank=0 prog=0]";

} // namespace

TEST(FluidLog, LinesOfARenderingThreadReachTheConsole)
{
    EXPECT_EQ(linesOfChanges(2), (std::vector<std::string>{noSuchSound, noSuchSound}));
}

TEST(FluidLog, LinesOfARenderingThreadThatFindNoRoomAreCounted)
{
    std::vector<std::string> expected(256, noSuchSound);
    expected.emplace_back("Lines of the rendering threads that found no room: 44");
    EXPECT_EQ(linesOfChanges(300), expected);
}

} // namespace volvelle::test
