#include "app/shell/SettingsFile.h"

#include "app/control/PersistentAppData.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>
#include <thread>
#include <vector>

namespace volvelle::test {
namespace {

struct SettingsFileTest : testing::Test {
    SettingsFileTest()
    {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, pathOf(folder.path));
    }

    static QString pathOf(const std::filesystem::path& path) { return QString::fromStdString(path.string()); }

    TemporaryFolder folder;
};

TEST_F(SettingsFileTest, KeepsValuesWithTheirTypesOverARestart)
{
    const std::map<std::string, SettingsValue> values{
        {"text", std::string("Grün, \"quoted\"; = @x\n")},
        {"number as text", std::string("12")},
        {"empty", std::string()},
        {"at", std::string("@Invalid()")},
        {"integer", std::numeric_limits<std::int64_t>::min()},
        {"float", 0.1F},
        {"double", 1.0 / 3.0},
        {"truth", true},
        {"url", SettingsURL{"file:///a%20b"}},
        {"odd text", std::string("a\xE9\0b", 4)},
        {"odd url", SettingsURL{"file:///a\xFF"}},
        {"marked", std::string("\uFEFFa")},
        {"marked url", SettingsURL{"\uFEFF"}},
        {"zero", std::string("a\0b", 3)},
        {"frame", SettingsFrame{{"left", 0.5F}, {"a=b&c", -1.0F}}},
        {"no frame", SettingsFrame{}},
        {"bytes", std::vector<std::uint8_t>{0, 255, 10}},
        {"a/b %2F Ü", std::int64_t{1}},
        {"General", std::int64_t{2}}};
    {
        SettingsFile before("own");
        for (const auto& [key, value] : values) {
            before.setValue(key, value);
        }
    }
    EXPECT_EQ(SettingsFile("own").entries(), values);
}

TEST_F(SettingsFileTest, ForgetsAKeyWithoutAValue)
{
    SettingsFile settings("own");
    settings.setValue("key", std::int64_t{3});
    settings.setValue("key", std::nullopt);
    EXPECT_EQ(settings.value("key"), std::nullopt);
    EXPECT_TRUE(settings.entries().empty());
}

TEST_F(SettingsFileTest, TakesPlainTextsThatWereWrittenByHand)
{
    folder.write("volvelle/own.ini", "[General]\nplain=3\nlist=a,b,c\nodd=colour,red\nappearance=dark\n"
                                     "helpSite=https://example.invalid/a,b\nquoted=\"a;b,c\"\n"
                                     "long=text,a,b\nends=a,\nwritten=integer, 5\n");
    EXPECT_EQ(SettingsFile("own").entries(),
              (std::map<std::string, SettingsValue>{{"plain", "3"},
                                                    {"list", "a,b,c"},
                                                    {"odd", "colour,red"},
                                                    {"appearance", "dark"},
                                                    {"helpSite", "https://example.invalid/a,b"},
                                                    {"quoted", "a;b,c"},
                                                    {"long", "text,a,b"},
                                                    {"ends", "a,"},
                                                    {"written", std::int64_t{5}}}));
}

TEST_F(SettingsFileTest, ReadsTheRestBesideWhatIsNoText)
{
    folder.write("volvelle/own.ini",
                 "[General]\nfirst=1\n=nothing\n%=percent\n\xE9\xFFodd=2\nvalue=\xE9\n[\xFF]\nin=3\nno line\n"
                 "[General]\nlast=4\n");
    {
        SettingsFile settings("own");
        EXPECT_EQ(settings.value("first"), SettingsValue("1"));
        EXPECT_EQ(settings.value("last"), SettingsValue("4"));
        EXPECT_TRUE(settings.value("value").has_value());
        EXPECT_GE(settings.entries().size(), 3U);
        settings.setValue("new", std::int64_t{5});
        settings.setValue("", std::int64_t{6});
        settings.setValue("\xE9", std::int64_t{7});
        settings.setValue("\xE8", std::int64_t{8});
        EXPECT_EQ(settings.value(""), SettingsValue(std::int64_t{6}));
    }
    SettingsFile settings("own");
    EXPECT_EQ(settings.value("first"), SettingsValue("1"));
    EXPECT_EQ(settings.value("last"), SettingsValue("4"));
    EXPECT_EQ(settings.value("new"), SettingsValue(std::int64_t{5}));
    EXPECT_EQ(settings.value(""), SettingsValue(std::int64_t{6}));
    EXPECT_EQ(settings.value("\xE9"), SettingsValue(std::int64_t{7}));
    EXPECT_EQ(settings.entries().at("\xE8"), SettingsValue(std::int64_t{8}));
}

TEST_F(SettingsFileTest, KeepsAFileThatIsNoTextBeforeItIsWrittenAnew)
{
    const std::string written = "[General]\nname=a\xE9\n";
    const auto kept = folder.path / "volvelle/own.kept.ini";
    const auto file = folder.write("volvelle/own.ini", written);
    const auto contentOf = [](const std::filesystem::path& of) {
        std::ifstream stream(of);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    ConsoleCapture console;
    EXPECT_TRUE(SettingsFile("own").value("name").has_value());
    EXPECT_FALSE(std::filesystem::exists(kept));
    for (int round = 0; round < 2; ++round) {
        folder.write("volvelle/own.ini", written);
        SettingsFile("own").setValue("new", std::int64_t{1});
        EXPECT_EQ(contentOf(kept), written);
        EXPECT_NE(contentOf(file), written);
    }
    EXPECT_EQ(folder.names().size(), 1U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path / "volvelle"), {}), 2);
    EXPECT_EQ(console.take(), (std::vector<std::string>(2, "SettingsFile::setValue() : '" + file.string() +
                                                               "' is not in UTF-8; it was kept as '" +
                                                               kept.string() + "'.")));
}

TEST_F(SettingsFileTest, TakesSeveralThreads)
{
    SettingsFile settings("own");
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread) {
        threads.emplace_back([&settings, thread] {
            for (std::int64_t i = 0; i < 100; ++i) {
                settings.setValue(std::to_string(thread), i);
                EXPECT_TRUE(settings.value(std::to_string(thread)).has_value());
            }
        });
    }
    std::ranges::for_each(threads, &std::thread::join);
    EXPECT_EQ(settings.entries().size(), 3U);
}

TEST_F(SettingsFileTest, StoresTheApplicationsAndTheSharedSettingsApart)
{
    NSUserDefaults::setStoreMaker(openSettings);
    {
        PersistentAppData data;
        data.setInteger("number", 1);
        data.setInteger("number", 2, PersistentAppData::Storage::shared);
        data.setString("only shared", "x", PersistentAppData::Storage::shared);
    }
    NSUserDefaults::setStoreMaker(openSettings);
    PersistentAppData data;
    EXPECT_EQ(data.getInteger("number"), 1);
    EXPECT_EQ(data.getInteger("number", PersistentAppData::Storage::shared), 2);
    EXPECT_EQ(data.getInteger("number", PersistentAppData::Storage::combined), 1);
    EXPECT_EQ(data.getString("only shared"), std::nullopt);
    EXPECT_EQ(data.getString("only shared", PersistentAppData::Storage::combined), "x");
    NSUserDefaults::setStoreMaker({});
}

TEST_F(SettingsFileTest, LastsAsLongAsTheProcessWhereItCannotBeWritten)
{
    const auto file = folder.write("file", "");
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, pathOf(file));
    EXPECT_EQ(openSettings("suite"), nullptr);
    const auto own = openSettings("");
    ASSERT_NE(own, nullptr);
    own->setValue("key", std::int64_t{3});
    EXPECT_EQ(own->value("key"), SettingsValue(std::int64_t{3}));
}

} // namespace
} // namespace volvelle::test
