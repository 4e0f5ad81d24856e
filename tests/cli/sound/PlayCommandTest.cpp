#include "tests/cli/ProgramRun.h"
#include "tests/rendering/SmallMusic.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace volvelle::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Play : public ProgramRun {
protected:
    Play() { write("small.mid", smallMusic()); }
};

TEST_F(Play, AShortFileIsPlayedThroughWhateverThereIs)
{
    const auto result = volvelle("play small.mid");
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.output, StartsWith("Playing 'small.mid' through "));
    EXPECT_EQ(std::ranges::count(result.output, '\n'), 1);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(volvelle("play --quiet small.mid").output, "");
}

TEST_F(Play, TheTransportTellsItsStates)
{
    const auto result = volvelle("play --verbose small.mid");
    EXPECT_THAT(result.output, HasSubstr("MIDISequencer::start() : The sequencer is playing.\n"));
    EXPECT_THAT(result.output, HasSubstr("MIDISequencer::stop() : The sequencer was stopped.\n"));
}

TEST_F(Play, TheSequencerInsideTheEnginePlaysThroughAsWell)
{
    const auto result = volvelle("play small.mid --engine render");
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.output, StartsWith("Playing 'small.mid' through "));
    EXPECT_EQ(std::ranges::count(result.output, '\n'), 1);
    EXPECT_EQ(result.error, "");
    const auto lines = volvelle("play --verbose small.mid --engine render");
    EXPECT_THAT(lines.output, HasSubstr("AUMIDISequencer::start() at 0\n"));
    EXPECT_THAT(lines.output, Not(HasSubstr("MIDISequencer::start() :")));
    EXPECT_THAT(volvelle("play --verbose small.mid --engine platform").output,
                Not(HasSubstr("AUMIDISequencer::start()")));
}

TEST_F(Play, AnotherEngineIsAQuestionOfUsage)
{
    for (const char* command : {"play small.mid --engine other", "play small.mid --engine",
                                "render small.mid --out small.wav --engine RENDER"}) {
        const auto result = volvelle(command);
        EXPECT_EQ(result.status, 2) << command;
        EXPECT_THAT(result.error, HasSubstr("--engine")) << command;
        EXPECT_EQ(result.output, "") << command;
    }
    EXPECT_THAT(names(), testing::ElementsAre("small.mid"));
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
    const auto result = volvelle("play");
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.error, "");
    EXPECT_NE(volvelle("play --port list").status, 2);
}

} // namespace
} // namespace volvelle::test
