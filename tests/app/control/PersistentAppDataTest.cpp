#include "app/control/PersistentAppData.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/Stops.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

using Storage = PersistentAppData::Storage;
using Lines = std::vector<std::string>;

// The object over stores of its own; that of the process may have been made over others.
class PersistentAppDataTest : public testing::Test {
protected:
    PersistentAppDataTest() { NSUserDefaults::setStoreMaker({}); }

    ~PersistentAppDataTest() override { NSUserDefaults::setStoreMaker({}); }

    std::unique_ptr<PersistentAppData> make() { return std::make_unique<PersistentAppData>(); }

    ConsoleCapture console;
};

TEST_F(PersistentAppDataTest, AStorageHasANumber)
{
    EXPECT_EQ(sharedContainer, "group.com.orvane.audio");
    EXPECT_EQ(PersistentAppData::storage(0), Storage::defaults);
    EXPECT_EQ(PersistentAppData::storage(1), Storage::shared);
    EXPECT_EQ(PersistentAppData::storage(2), Storage::combined);
    EXPECT_EQ(PersistentAppData::storage(3), std::nullopt);
    EXPECT_EQ(PersistentAppData::storage(-1), std::nullopt);
}

TEST_F(PersistentAppDataTest, WhatIsSharedIsReadThroughBothViewsAndNotAsOnesOwn)
{
    const auto data = make();
    data->setString("key", "shared", Storage::shared);
    EXPECT_EQ(data->getString("key", Storage::shared), "shared");
    EXPECT_EQ(data->getString("key", Storage::combined), "shared");
    EXPECT_EQ(data->getString("key"), std::nullopt);
    data->setString("key", "own");
    EXPECT_EQ(data->getString("key", Storage::combined), "own");
    EXPECT_EQ(data->getString("key", Storage::shared), "shared");
    data->setObject("key", std::nullopt);
    EXPECT_EQ(data->getString("key", Storage::combined), "shared");
}

TEST_F(PersistentAppDataTest, TheCombinedViewWritesOnesOwn)
{
    const auto data = make();
    data->setInteger("key", 3, Storage::combined);
    EXPECT_EQ(data->getInteger("key"), 3);
    EXPECT_EQ(data->getInteger("key", Storage::shared), 0);
}

TEST_F(PersistentAppDataTest, EachTypeComesBack)
{
    const auto data = make();
    data->setString("string", "a");
    data->setInteger("integer", -5'000'000'000);
    data->setFloat("float", 0.25F);
    data->setBool("bool", true);
    data->setURL("url", SettingsURL{"file:///a"});
    data->setObject("object", std::vector<std::uint8_t>{1, 2});
    EXPECT_EQ(data->getString("string"), "a");
    EXPECT_EQ(data->getInteger("integer"), -5'000'000'000);
    EXPECT_EQ(data->getFloat("float"), 0.25F);
    EXPECT_TRUE(data->getBool("bool"));
    EXPECT_EQ(data->getUrl("url"), SettingsURL{"file:///a"});
    EXPECT_EQ(data->getObject("object"), SettingsValue(std::vector<std::uint8_t>{1, 2}));
    EXPECT_EQ(data->getObject("bool"), SettingsValue(true));
    EXPECT_EQ(data->getObject("float"), SettingsValue(0.25F));
    data->setURL("url", std::nullopt);
    EXPECT_EQ(data->getUrl("url"), std::nullopt);
}

TEST_F(PersistentAppDataTest, AMissingKeyIsNothingZeroOrFalse)
{
    const auto data = make();
    for (const Storage storage : {Storage::defaults, Storage::shared, Storage::combined}) {
        EXPECT_EQ(data->getString("key", storage), std::nullopt);
        EXPECT_EQ(data->getInteger("key", storage), 0);
        EXPECT_EQ(data->getFloat("key", storage), 0.0F);
        EXPECT_FALSE(data->getBool("key", storage));
        EXPECT_EQ(data->getUrl("key", storage), std::nullopt);
        EXPECT_EQ(data->getObject("key", storage), std::nullopt);
    }
}

TEST_F(PersistentAppDataTest, AFrameIsADictionaryAndComesBack)
{
    const SettingsFrame frame = PersistentAppData::frameToDictionary({10, 20, 300, 400});
    EXPECT_EQ(frame, (SettingsFrame{{"left", 10}, {"top", 20}, {"width", 300}, {"height", 400}}));
    PersistentAppData& data = PersistentAppData::sharedInstance();
    data.setObject("frame", frame);
    EXPECT_EQ(PersistentAppData::dictionaryToFrame("frame"), (CGRect{10, 20, 300, 400}));
    data.setObject("frame", SettingsFrame{{"left", 5.0F}, {"depth", 7.0F}});
    EXPECT_EQ(PersistentAppData::dictionaryToFrame("frame"), (CGRect{5, 0, 100, 100}));
    data.setObject("frame", SettingsFrame{});
    EXPECT_EQ(PersistentAppData::dictionaryToFrame("frame"), (CGRect{0, 0, 100, 100}));
    data.setString("frame", "10 20");
    EXPECT_EQ(PersistentAppData::dictionaryToFrame("frame"), std::nullopt);
    data.setObject("frame", std::nullopt);
    EXPECT_EQ(PersistentAppData::dictionaryToFrame("frame"), std::nullopt);
}

TEST_F(PersistentAppDataTest, OneObjectServesAll)
{
    EXPECT_EQ(&PersistentAppData::sharedInstance(), &PersistentAppData::sharedInstance());
}

TEST_F(PersistentAppDataTest, ADumpTellsAllThree)
{
    const auto data = make();
    data->setBool("b", true);
    data->setString("a", "text");
    data->setFloat("c", 120.0F, Storage::shared);
    data->setInteger("a", 7, Storage::shared);
    data->dumpout();
    EXPECT_EQ(console.take(),
              (Lines{"PersistentAppData::dumpout() : UserDefaults.standard : ", "a = text \n", "b = true \n",
                     "PersistentAppData::dumpout() : UserDefaults.shared : ", "a = 7 \n", "c = 120.0 \n",
                     "PersistentAppData::dumpout() : UserDefaults.combined : ", "a = text \n", "b = true \n",
                     "c = 120.0 \n"}));
}

TEST_F(PersistentAppDataTest, SharedSettingsThatCannotBeMadeAreFatal)
{
    NSUserDefaults::setStoreMaker([](const std::string& name) {
        return name.empty() ? std::make_shared<MemorySettingsStore>() : nullptr;
    });
    EXPECT_STOP(make(), "Unexpectedly found nil while unwrapping an Optional value");
}

} // namespace

} // namespace volvelle::test
