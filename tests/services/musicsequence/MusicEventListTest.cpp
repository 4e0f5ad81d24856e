#include "services/musicsequence/MusicEventList.h"
#include "tests/support/AllocationCount.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace volvelle::test {

namespace {

constexpr auto userData = kMusicEventType_User;

class MusicEventLists : public testing::Test {
protected:
    // Events whose records are that many words of their number.
    void add(int count, std::size_t words)
    {
        for (int i = 0; i < count; ++i) {
            const std::vector<std::uint64_t> record(words, static_cast<std::uint64_t>(number));
            const std::size_t size = words * sizeof(std::uint64_t);
            list.append(number++, userData, static_cast<std::uint32_t>(size), record.data(), size);
        }
    }

    // Deletes the first events that are left; tells how many allocations that took.
    std::size_t eraseFirst(std::size_t count)
    {
        std::size_t end = 0;
        for (const MusicEvent& event : list.allWithMarked()) {
            count -= event.isDeleted() || count == 0 ? 0U : 1U;
            ++end;
            if (count == 0) {
                break;
            }
        }
        const AllocationCount allocations;
        list.eraseRun(0, end);
        return allocations.count;
    }

    std::size_t stored() { return list.allWithMarked().size(); }

    // The numbers in the records of the events that live.
    std::vector<std::uint64_t> records()
    {
        std::vector<std::uint64_t> result;
        for (const MusicEvent& event : list.all()) {
            const auto* const words = static_cast<const std::uint64_t*>(list.payload(event));
            const std::size_t count = event.size / sizeof(std::uint64_t);
            EXPECT_EQ(words[0], words[count - 1]);
            result.push_back(words[0]);
        }
        return result;
    }

    MusicEventList list;
    int number = 0; // of the next event
};

TEST_F(MusicEventLists, DeletedEventsAreTakenOutOnceTheyAreMoreThanHalfOfAll)
{
    add(100, 1);
    eraseFirst(50);
    EXPECT_EQ(stored(), 100U);
    eraseFirst(1);
    EXPECT_EQ(stored(), 49U);
    EXPECT_EQ(records().front(), 51U);
}

TEST_F(MusicEventLists, ThirtyTwoDeletedEventsMayStayHoweverFewLive)
{
    add(40, 1);
    eraseFirst(32);
    EXPECT_EQ(stored(), 40U);
    eraseFirst(1);
    EXPECT_EQ(stored(), 7U);
    EXPECT_EQ(records(), (std::vector<std::uint64_t>{33, 34, 35, 36, 37, 38, 39}));
}

TEST_F(MusicEventLists, DeletedEventsBehindTheLastLiveOneGoAtOnce)
{
    add(4, 1);
    list.eraseRun(1, 2);
    EXPECT_EQ(stored(), 4U);
    list.eraseRun(3, 4);
    EXPECT_EQ(stored(), 3U);
    list.eraseRun(2, 3);
    EXPECT_EQ(stored(), 1U);
}

TEST_F(MusicEventLists, RecordsOfDeletedEventsAreTakenOutOnceTheyAreMoreThanHalfOfAll)
{
    add(10, 100);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(eraseFirst(1), 0U) << i;
    }
    EXPECT_GT(eraseFirst(1), 0U);
    EXPECT_EQ(eraseFirst(2), 0U);
    EXPECT_GT(eraseFirst(1), 0U);
    EXPECT_EQ(records(), std::vector<std::uint64_t>{9});
}

TEST_F(MusicEventLists, AsManyWordsOfDeletedRecordsAsThereAreEventsMayStay)
{
    add(10, 2);
    add(8, 1);
    add(1, 2);
    EXPECT_EQ(eraseFirst(9), 0U);
    EXPECT_GT(eraseFirst(1), 0U);
    EXPECT_EQ(records(), (std::vector<std::uint64_t>{10, 11, 12, 13, 14, 15, 16, 17, 18}));
}

TEST_F(MusicEventLists, AListThatIsFilledAndEmptiedForLongStaysSmall)
{
    add(1, 10);
    const AllocationCount allocations;
    for (int i = 0; i < 10'000; ++i) {
        const std::array<std::uint64_t, 10> record{};
        list.append(number++, userData, sizeof(record), record.data(), sizeof(record));
        list.eraseRun(0, list.allWithMarked().size() - 1);
        ASSERT_LE(list.allWithMarked().size(), 66U);
    }
    EXPECT_LE(allocations.greatest, 16'384U);
}

} // namespace

} // namespace volvelle::test
