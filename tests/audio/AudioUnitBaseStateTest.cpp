#include "audio/PropertyList.h"
#include "tests/audio/UnitFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>
#include <iterator>

namespace volvelle::test {
namespace {

class AudioUnitBaseStateTest : public UnitTest {
protected:
    void SetUp() override
    {
        wrapper->create("Lead");
        console.take();
        listener->created.reset();
    }

    static std::string contentOf(const std::filesystem::path& path)
    {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static std::string notRead(std::string_view reason)
    {
        return concat("AudioUnitBase::loadFullState(): FEHLER: Die Datei konnte nicht eingelesen werden: ",
                      reason, ", Format: 100");
    }

    TemporaryFolder folder;
    const std::filesystem::path file = folder.path / "state.plist";
};

TEST_F(AudioUnitBaseStateTest, AStateThatIsSavedComesBack)
{
    wrapper->setParameter(7, 4.5F);
    const PropertyDictionary saved = component.unit->fullState();
    wrapper->saveFullState(file);
    wrapper->setParameter(7, 2.0F);
    wrapper->loadFullState(file);
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_EQ(wrapper->getParameter(7), 4.5F);
    EXPECT_EQ(component.unit->states, std::vector<PropertyDictionary>{saved});
}

TEST_F(AudioUnitBaseStateTest, TheFileIsAnXMLPropertyList)
{
    component.unit->ownState = PropertyDictionary{{"level", {0.25}}};
    wrapper->saveFullState(file);
    EXPECT_EQ(contentOf(file), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
                               "\t<key>level</key>\n\t<real>0.25</real>\n</dict>\n</plist>\n");
}

TEST_F(AudioUnitBaseStateTest, SavingReplacesTheFileAsAWhole)
{
    folder.write("state.plist", "something older");
    wrapper->saveFullState(file);
    const std::string content = contentOf(file);
    const std::vector<std::uint8_t> bytes(content.begin(), content.end());
    EXPECT_EQ(*propertyListFromData(bytes), component.unit->fullState());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
}

TEST_F(AudioUnitBaseStateTest, AStateThatNoFileCanHoldIsToldAndTheOldFileStays)
{
    folder.write("state.plist", "old");
    component.unit->ownState = PropertyDictionary{{"name", {std::string("\x01")}}};
    wrapper->saveFullState(file);
    EXPECT_EQ(console.take(),
              Lines{"AudioUnitBase::saveFullState(): FEHLER: Die Daten konnten nicht serialisiert werden."});
    EXPECT_EQ(contentOf(file), "old");
}

TEST_F(AudioUnitBaseStateTest, AFileThatCannotBeWrittenIsToldAndChangesNothing)
{
    wrapper->saveFullState(folder.path / "none" / "state.plist");
    EXPECT_EQ(console.take(), Lines{"AudioUnitBase::saveFullState(): ERROR: The file could not be written."});
    EXPECT_TRUE(std::filesystem::is_empty(folder.path));
}

TEST_F(AudioUnitBaseStateTest, WithoutAUnitThereIsNoState)
{
    const auto fresh = AudioUnitBase::make(engine);
    fresh->saveFullState(file);
    fresh->loadFullState(file);
    EXPECT_EQ(console.take(),
              (Lines{"AudioUnitBase::saveFullState(): ERROR: The audio unit (AudioUnitBase) is nil.",
                     "AudioUnitBase::loadFullState(): ERROR: The audio unit (AudioUnitBase) is nil."}));
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(AudioUnitBaseStateTest, APathThatDoesNotExistIsNamed)
{
    wrapper->loadFullState(file);
    EXPECT_EQ(console.take(), Lines{concat("AudioUnitBase::loadFullState(): ERROR: The path ", file.string(),
                                           " for loading presets does not exist.")});
    EXPECT_TRUE(component.unit->states.empty());
}

TEST_F(AudioUnitBaseStateTest, AFolderIsNoReadableFile)
{
    wrapper->loadFullState(folder.path);
    EXPECT_EQ(console.take(), Lines{"AudioUnitBase::loadFullState(): ERROR: The file is not readable."});
    EXPECT_TRUE(component.unit->states.empty());
}

TEST_F(AudioUnitBaseStateTest, RubbishIsToldAndLeavesTheUnitAlone)
{
    wrapper->loadFullState(folder.write("empty.plist", ""));
    wrapper->loadFullState(folder.write("rubbish.plist", "MThd\1\2\3"));
    wrapper->loadFullState(folder.write("list.plist", "<plist><array/></plist>"));
    const std::string noDictionary = notRead("The file holds no property list with a dictionary.");
    EXPECT_EQ(console.take(), (Lines{notRead("No document element found (at byte 0)."),
                                     notRead("No document element found (at byte 7)."), noDictionary}));
    EXPECT_TRUE(component.unit->states.empty());
}

TEST_F(AudioUnitBaseStateTest, AStateOfAnotherUnitChangesOnlyWhatThisOneKnows)
{
    wrapper->loadFullState(folder.write("other.plist",
                                        "<plist><dict><key>parameters</key><dict><key>9</key>"
                                        "<integer>1</integer><key>77</key><real>3</real></dict>"
                                        "</dict></plist>"));
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_EQ(wrapper->getParameter(7), 1.0F);
    EXPECT_EQ(wrapper->getParameter(9), 1.0F);
}

} // namespace
} // namespace volvelle::test
