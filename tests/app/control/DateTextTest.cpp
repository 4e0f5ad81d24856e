#include "app/control/DateText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace volvelle::test {

namespace {

// A place whose clocks change: in 2026 forward on 29 March, back on 25 October.
class DateText : public testing::Test {
protected:
    DateText()
    {
        setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
        tzset();
    }

    ~DateText() override
    {
        unsetenv("TZ");
        tzset();
    }

    static std::int64_t at(int year, int month, int day, int hour, int minute = 0)
    {
        std::tm parts{};
        parts.tm_year = year - 1900;
        parts.tm_mon = month - 1;
        parts.tm_mday = day;
        parts.tm_hour = hour;
        parts.tm_min = minute;
        parts.tm_isdst = -1;
        return std::mktime(&parts);
    }

    const std::int64_t now = at(2026, 11, 19, 15);
};

TEST_F(DateText, TodayHasATime)
{
    EXPECT_EQ(dateText(at(2026, 11, 19, 14, 32), now), "Today, 14:32");
    EXPECT_EQ(dateText(at(2026, 11, 19, 0, 5), now), "Today, 00:05");
    EXPECT_EQ(dateText(at(2026, 11, 19, 23, 59), now), "Today, 23:59");
}

TEST_F(DateText, TheDayBeforeIsYesterday)
{
    EXPECT_EQ(dateText(at(2026, 11, 18, 0), now), "Yesterday");
    EXPECT_EQ(dateText(at(2026, 11, 18, 23, 59), now), "Yesterday");
    EXPECT_EQ(dateText(at(2025, 12, 31, 12), at(2026, 1, 1, 0, 1)), "Yesterday");
    EXPECT_EQ(dateText(at(2026, 2, 28, 12), at(2026, 3, 1, 12)), "Yesterday");
}

TEST_F(DateText, YesterdayIsTheDayBeforeWhereTheClocksChangeToo)
{
    EXPECT_EQ(dateText(at(2026, 3, 28, 23, 30), at(2026, 3, 29, 0, 10)), "Yesterday");
    EXPECT_EQ(dateText(at(2026, 3, 29, 0, 30), at(2026, 3, 30, 0, 10)), "Yesterday");
    EXPECT_EQ(dateText(at(2026, 10, 24, 0, 10), at(2026, 10, 25, 23, 50)), "Yesterday");
    EXPECT_EQ(dateText(at(2026, 10, 25, 0, 10), at(2026, 10, 26, 23, 50)), "Yesterday");
}

TEST_F(DateText, OtherDaysHaveAMonthAndOtherYearsTheYear)
{
    EXPECT_EQ(dateText(at(2026, 11, 17, 12), now), "17 November");
    EXPECT_EQ(dateText(at(2026, 1, 1, 12), now), "1 January");
    EXPECT_EQ(dateText(at(2026, 11, 20, 12), now), "20 November");
    EXPECT_EQ(dateText(at(2025, 11, 18, 12), now), "18 November 2025");
    EXPECT_EQ(dateText(at(2027, 1, 2, 12), now), "2 January 2027");
    EXPECT_EQ(dateText(0, now), "1 January 1970");
}

TEST_F(DateText, NotesAreCounted)
{
    EXPECT_EQ(notesText(213), "213 notes");
    EXPECT_EQ(notesText(1), "1 note");
    EXPECT_EQ(notesText(0), "0 notes");
    EXPECT_EQ(notesText(-1), "");
}

} // namespace

} // namespace volvelle::test
