#include "tests/cli/ProgramRun.h"
#include "tests/cli/sound/SmallMusic.h"

#include <gmock/gmock.h>

namespace volvelle::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class Play : public ProgramRun {
protected:
    Play() { write("small.mid", smallMusic()); }
};

TEST_F(Play, WithoutADeviceTheMusicStillRunsToItsEnd)
{
    const auto result = volvelle("play small.mid");
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.output, StartsWith("Playing 'small.mid' through "));
}

TEST_F(Play, TheTransportTellsItsStates)
{
    const auto result = volvelle("play --verbose small.mid");
    EXPECT_THAT(result.output, HasSubstr("MIDISequencer::start() : The sequencer is playing.\n"));
    EXPECT_THAT(result.output, HasSubstr("MIDISequencer::stop() : The sequencer was stopped.\n"));
}

TEST_F(Play, FailuresAreOneLine)
{
    EXPECT_EQ(volvelle("play gone.mid").error, "There is no file 'gone.mid'.\n");
    const auto bank = volvelle("play small.mid --bank nobank.sf2");
    EXPECT_EQ(bank.status, 1);
    EXPECT_EQ(bank.error, "The sound bank 'nobank.sf2' could not be loaded.\n");
    const auto port = volvelle("play small.mid --port 'No Such Port'");
    EXPECT_EQ(port.status, 1);
    EXPECT_EQ(std::ranges::count(port.error, '\n'), 1);
}

TEST_F(Play, AFileIsNeededUnlessPortsAreListed)
{
    EXPECT_EQ(volvelle("play").status, 2);
    const auto list = volvelle("play --port list");
    EXPECT_LE(list.status, 1);
    EXPECT_EQ(std::ranges::count(list.error, '\n'), list.status);
}

} // namespace
} // namespace volvelle::test
