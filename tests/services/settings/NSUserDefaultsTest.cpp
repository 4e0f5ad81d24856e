#include "services/settings/NSUserDefaults.h"
#include "tests/support/Stops.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <thread>
#include <vector>

namespace volvelle::test {

namespace {

using Lines = std::vector<std::string>;

class NSUserDefaultsTest : public testing::Test {
protected:
    NSUserDefaultsTest() { NSUserDefaults::setStoreMaker({}); }

    ~NSUserDefaultsTest() override { NSUserDefaults::setStoreMaker({}); }
};

TEST_F(NSUserDefaultsTest, OneNameIsOneStore)
{
    NSUserDefaults::standardUserDefaults()->setIntegerForKey("a", 1);
    NSUserDefaults::makeWithSuiteName("suite")->setIntegerForKey("a", 2);
    EXPECT_EQ(NSUserDefaults::standardUserDefaults()->integerForKey("a"), 1);
    EXPECT_EQ(NSUserDefaults::makeWithSuiteName("suite")->integerForKey("a"), 2);
    EXPECT_EQ(NSUserDefaults::makeWithSuiteName("other")->integerForKey("a"), 0);
}

TEST_F(NSUserDefaultsTest, TheMakerIsAskedOnceForEachStore)
{
    Lines asked;
    const auto before = NSUserDefaults::standardUserDefaults();
    before->setIntegerForKey("a", 1);
    NSUserDefaults::setStoreMaker([&asked](const std::string& name) {
        asked.push_back(name);
        return std::make_shared<MemorySettingsStore>();
    });
    NSUserDefaults::standardUserDefaults();
    EXPECT_EQ(NSUserDefaults::standardUserDefaults()->integerForKey("a"), 0);
    NSUserDefaults::makeWithSuiteName("suite");
    NSUserDefaults::standardUserDefaults()->addSuiteNamed("suite");
    EXPECT_EQ(asked, (Lines{"", "suite"}));
    EXPECT_EQ(before->integerForKey("a"), 1);
}

TEST_F(NSUserDefaultsTest, SeveralThreadsGetOneStore)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            for (int i = 0; i < 200; ++i) {
                NSUserDefaults::standardUserDefaults()->setIntegerForKey(std::to_string(thread), i);
            }
        });
    }
    std::ranges::for_each(threads, &std::thread::join);
    for (int thread = 0; thread < 4; ++thread) {
        EXPECT_EQ(NSUserDefaults::standardUserDefaults()->integerForKey(std::to_string(thread)), 199);
    }
}

TEST_F(NSUserDefaultsTest, AStoreThatCannotBeMadeIsNoneOrFatal)
{
    NSUserDefaults::setStoreMaker([](const std::string&) { return nullptr; });
    EXPECT_EQ(NSUserDefaults::makeWithSuiteName("suite"), nullptr);
    EXPECT_STOP(NSUserDefaults::standardUserDefaults(),
                "Unexpectedly found nil while unwrapping an Optional value");
    NSUserDefaults settings(std::make_shared<MemorySettingsStore>());
    settings.addSuiteNamed("suite");
    EXPECT_EQ(settings.objectForKey("a"), std::nullopt);
}

TEST_F(NSUserDefaultsTest, ASuiteIsReadAfterTheOwnAndNeverWritten)
{
    const auto settings = NSUserDefaults::standardUserDefaults();
    const auto suite = NSUserDefaults::makeWithSuiteName("suite");
    settings->addSuiteNamed("suite");
    suite->setBoolForKey("a", true);
    suite->setBoolForKey("b", true);
    settings->setIntegerForKey("a", 5);
    EXPECT_EQ(settings->integerForKey("a"), 5);
    EXPECT_TRUE(settings->boolForKey("b"));
    EXPECT_TRUE(suite->boolForKey("a"));
    EXPECT_EQ(settings->dictionaryRepresentation(),
              (std::map<std::string, SettingsValue>{{"a", std::int64_t{5}}, {"b", true}}));
    settings->setValueForKey("b", std::nullopt);
    EXPECT_TRUE(settings->boolForKey("b"));
    EXPECT_FALSE(NSUserDefaults::standardUserDefaults()->boolForKey("b"));
}

TEST_F(NSUserDefaultsTest, NumbersAreGivenAsEachOther)
{
    const auto settings = NSUserDefaults::standardUserDefaults();
    settings->setObjectForKey("double", 2.75);
    EXPECT_EQ(settings->integerForKey("double"), 2);
    EXPECT_EQ(settings->floatForKey("double"), 2.75F);
    EXPECT_TRUE(settings->boolForKey("double"));
    EXPECT_EQ(settings->stringForKey("double"), "2.75");
    settings->setBoolForKey("truth", true);
    EXPECT_EQ(settings->integerForKey("truth"), 1);
    EXPECT_EQ(settings->floatForKey("truth"), 1.0F);
    EXPECT_EQ(settings->stringForKey("truth"), "1");
    settings->setIntegerForKey("whole", std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(settings->integerForKey("whole"), std::numeric_limits<std::int64_t>::max());
    settings->setFloatForKey("zero", 0.0F);
    EXPECT_FALSE(settings->boolForKey("zero"));
}

TEST_F(NSUserDefaultsTest, NumbersTooLargeForAnIntegerEndAtItsLimits)
{
    const auto settings = NSUserDefaults::standardUserDefaults();
    const auto whole = [&settings](double value) {
        settings->setObjectForKey("key", value);
        return settings->integerForKey("key");
    };
    EXPECT_EQ(whole(1e300), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(whole(-1e300), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(whole(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(whole(-2.9), -2);
}

TEST_F(NSUserDefaultsTest, ATextThatIsANumberCountsAsOne)
{
    const auto settings = NSUserDefaults::standardUserDefaults();
    settings->setValueForKey("key", "12.5");
    EXPECT_EQ(settings->integerForKey("key"), 12);
    EXPECT_EQ(settings->floatForKey("key"), 12.5F);
    EXPECT_TRUE(settings->boolForKey("key"));
    for (const char* word : {"YES", "yes", "true", "1"}) {
        settings->setValueForKey("key", word);
        EXPECT_TRUE(settings->boolForKey("key")) << word;
    }
    for (const char* word : {"NO", "false", "0", "", "word"}) {
        settings->setValueForKey("key", word);
        EXPECT_FALSE(settings->boolForKey("key")) << word;
        EXPECT_EQ(settings->integerForKey("key"), 0) << word;
    }
}

TEST_F(NSUserDefaultsTest, ATextIsReadAsAWholeNumberWithoutLoss)
{
    const auto settings = NSUserDefaults::standardUserDefaults();
    for (const auto& [words, whole] : std::vector<std::pair<std::string, std::int64_t>>{
             {"9007199254740993", 9'007'199'254'740'993},
             {"-9007199254740993.9", -9'007'199'254'740'993},
             {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
             {"9223372036854775808", std::numeric_limits<std::int64_t>::max()},
             {"-9223372036854775809", std::numeric_limits<std::int64_t>::min()},
             {"+12", 12},
             {" \t12", 12},
             {" -12 ideas", -12},
             {"1.5e3", 1500},
             {"1e300", std::numeric_limits<std::int64_t>::max()},
             {"12e", 12},
             {".5", 0},
             {"+-12", 0},
             {"- 12", 0},
             {"inf", 0},
             {"nan", 0}}) {
        settings->setValueForKey("key", words);
        EXPECT_EQ(settings->integerForKey("key"), whole) << words;
    }
    settings->setValueForKey("key", " +12.5");
    EXPECT_EQ(settings->floatForKey("key"), 12.5F);
    settings->setValueForKey("key", "infinite");
    EXPECT_EQ(settings->floatForKey("key"), 0.0F);
}

TEST_F(NSUserDefaultsTest, AWordForYesIsTrueInAnyCase)
{
    const auto settings = NSUserDefaults::standardUserDefaults();
    for (const char* word : {"Yes", "YES", "True", "TRUE", "tRuE", "Y", "y", "T", "t", " yes ", "+1", " 1",
                             "-1", "0.5", "9007199254740993"}) {
        settings->setValueForKey("key", word);
        EXPECT_TRUE(settings->boolForKey("key")) << word;
    }
    for (const char* word :
         {"No", "False", "n", "f", "yesterday", "tune", "Nantes", "nan", "infinite", "+", " ", "0.0", "-0"}) {
        settings->setValueForKey("key", word);
        EXPECT_FALSE(settings->boolForKey("key")) << word;
    }
}

TEST_F(NSUserDefaultsTest, WhatIsNoTextOrLocationGivesNone)
{
    const auto settings = NSUserDefaults::standardUserDefaults();
    settings->setObjectForKey("bytes", std::vector<std::uint8_t>{1});
    settings->setObjectForKey("frame", SettingsFrame{{"left", 1.0F}});
    settings->setURLForKey("url", SettingsURL{"file:///a"});
    settings->setValueForKey("path", "/a");
    for (const char* key : {"bytes", "frame", "url", "nothing"}) {
        EXPECT_EQ(settings->stringForKey(key), std::nullopt) << key;
        EXPECT_EQ(settings->integerForKey(key), 0) << key;
        EXPECT_FALSE(settings->boolForKey(key)) << key;
    }
    EXPECT_EQ(settings->URLForKey("url"), SettingsURL{"file:///a"});
    EXPECT_EQ(settings->URLForKey("path"), SettingsURL{"/a"});
    EXPECT_EQ(settings->URLForKey("bytes"), std::nullopt);
    settings->setURLForKey("url", std::nullopt);
    EXPECT_EQ(settings->objectForKey("url"), std::nullopt);
}

TEST_F(NSUserDefaultsTest, AValueKeepsItsType)
{
    const auto settings = NSUserDefaults::standardUserDefaults();
    settings->setBoolForKey("a", true);
    settings->setFloatForKey("b", 1.0F);
    settings->setIntegerForKey("c", 1);
    settings->setValueForKey("d", "1");
    settings->setObjectForKey("e", 1.0);
    EXPECT_TRUE(std::holds_alternative<bool>(*settings->objectForKey("a")));
    EXPECT_TRUE(std::holds_alternative<float>(*settings->objectForKey("b")));
    EXPECT_TRUE(std::holds_alternative<std::int64_t>(*settings->objectForKey("c")));
    EXPECT_TRUE(std::holds_alternative<std::string>(*settings->objectForKey("d")));
    EXPECT_TRUE(std::holds_alternative<double>(*settings->objectForKey("e")));
}

} // namespace

} // namespace volvelle::test
