#include "audio/SoundGraph.h"

#include "base/Paths.h"
#include "tests/support/ProjectFolders.h"
#include "tests/support/TemporaryFolder.h"

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
