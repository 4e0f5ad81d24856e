#include "services/settings/SettingsStore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

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

TEST(SettingsStore, TakesSeveralThreads)
{
    MemorySettingsStore store;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&store, thread] {
            for (std::int64_t i = 0; i < 500; ++i) {
                store.setValue(std::to_string(i % 7), i);
                store.setValue(std::to_string(thread) + "a" + std::to_string(i), i);
                EXPECT_TRUE(store.value(std::to_string(i % 7)).has_value());
            }
        });
    }
    std::ranges::for_each(threads, &std::thread::join);
    EXPECT_EQ(store.entries().size(), 2007U);
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
