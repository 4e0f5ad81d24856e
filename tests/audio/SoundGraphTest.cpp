#include "audio/SoundGraph.h"

#include "base/Paths.h"
#include "tests/services/audiograph/sequencer/Song.h"
#include "tests/support/ProjectFolders.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>

namespace volvelle::test {

namespace {

class SoundGraphTest : public testing::Test {
protected:
    SoundGraphTest() { setResourcesFolder(buildFolder() / "resources"); }

    ~SoundGraphTest() override { setResourcesFolder(std::nullopt); }

    static std::filesystem::path bankOf(const SoundGraph& graph)
    {
        return std::dynamic_pointer_cast<MIDISynthUnit>(graph.instrument->auAudioUnit())->soundBank();
    }

    std::filesystem::path copyOfTheBank() const
    {
        const auto copy = folder.path / "other.dls";
        std::filesystem::copy_file(buildFolder() / "resources/gs_instruments.dls", copy);
        return copy;
    }

    TemporaryFolder folder;
};

TEST_F(SoundGraphTest, EachHasTheBankThatItWasGiven)
{
    const auto other = copyOfTheBank();
    SoundGraph first;
    SoundGraph second;
    ASSERT_EQ(first.connectSynthesizer(buildFolder() / "resources/gs_instruments.dls").error(), "");
    ASSERT_EQ(second.connectSynthesizer(other).error(), "");
    SoundGraph third;
    ASSERT_EQ(third.connectSynthesizer(std::nullopt).error(), "");
    EXPECT_EQ(bankOf(first), buildFolder() / "resources/gs_instruments.dls");
    EXPECT_EQ(bankOf(second), other);
    EXPECT_NE(bankOf(third), other);
}

TEST_F(SoundGraphTest, ABankThatCannotBeLoadedIsOnePlainLine)
{
    SoundGraph graph;
    EXPECT_EQ(graph.connectSynthesizer(folder.path / "none.sf2").error(),
              "The sound bank '" + (folder.path / "none.sf2").string() + "' could not be loaded.");
}

TEST_F(SoundGraphTest, ASequencedOneHasTheSynthesizerInItsUnit)
{
    EXPECT_EQ(SoundGraph().sequencedUnit, nullptr);
    SoundGraph graph(true, true);
    ASSERT_EQ(graph.connectSynthesizer(std::nullopt).error(), "");
    ASSERT_NE(graph.sequencedUnit, nullptr);
    EXPECT_EQ(graph.instrument->auAudioUnit(), graph.sequencedUnit);
    ASSERT_EQ(graph.engine->enableManualRenderingMode(512), noErr);
    ASSERT_EQ(graph.engine->start().error(), "");
    ASSERT_EQ(graph.sequencedUnit->load(Song().note(0.0, 0, 60, 100, 1.0).file()).error(), "");
    graph.sequencedUnit->start();
    std::array<float, 512> left{};
    std::array<float, 512> right{};
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(graph.engine->renderOffline(512, left.data(), right.data()), noErr);
    }
    EXPECT_GT(graph.activeVoices(), 0);
    EXPECT_GT(*std::ranges::max_element(left), 1.0e-3F);
}

TEST_F(SoundGraphTest, ABankOfASequencedOneIsNamedAsWell)
{
    SoundGraph graph(true, true);
    EXPECT_EQ(graph.connectSynthesizer(folder.path / "none.sf2").error(),
              "The sound bank '" + (folder.path / "none.sf2").string() + "' could not be loaded.");
}

TEST_F(SoundGraphTest, APortThatIsNotThereIsOnePlainLine)
{
    SoundGraph graph;
    const Result<> connected = graph.connectPort("volvelle-no-such-port");
    EXPECT_FALSE(connected);
    EXPECT_NE(connected.error(), "");
    EXPECT_EQ(graph.instrument, nullptr);
}

} // namespace

} // namespace volvelle::test
