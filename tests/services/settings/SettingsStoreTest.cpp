#include "services/settings/SettingsStore.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

TEST(SettingsStore, KeepsWhatWasPutIntoIt)
{
    MemorySettingsStore store;
    EXPECT_EQ(store.value("a"), std::nullopt);
    store.setValue("b", true);
    store.setValue("a", std::int64_t{1});
    store.setValue("a", "text");
    EXPECT_EQ(store.value("a"), SettingsValue("text"));
    EXPECT_EQ(store.entries(), (std::map<std::string, SettingsValue>{{"a", "text"}, {"b", true}}));
    store.setValue("a", std::nullopt);
    store.setValue("c", std::nullopt);
    EXPECT_EQ(store.entries().size(), 1U);
}

TEST(SettingsStore, AValueHasAText)
{
    EXPECT_EQ(text(SettingsValue("a b")), "a b");
    EXPECT_EQ(text(SettingsValue(std::int64_t{-3})), "-3");
    EXPECT_EQ(text(SettingsValue(0.1F)), "0.1");
    EXPECT_EQ(text(SettingsValue(120.0)), "120.0");
    EXPECT_EQ(text(SettingsValue(false)), "false");
    EXPECT_EQ(text(SettingsValue(SettingsURL{"file:///a"})), "file:///a");
    EXPECT_EQ(text(SettingsValue(SettingsFrame{})), "[]");
    EXPECT_EQ(text(SettingsValue(SettingsFrame{{"left", 5.0F}, {"top", 0.5F}})), "[left: 5.0, top: 0.5]");
    EXPECT_EQ(text(SettingsValue(std::vector<std::uint8_t>(4))), "4 bytes");
}

} // namespace

} // namespace volvelle::test
