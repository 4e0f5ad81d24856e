#include "app/control/DateText.h"

#include "base/Text.h"

#include <array>
#include <ctime>
#include <string_view>

namespace volvelle {

namespace {

constexpr std::array<std::string_view, 12> months{"January",   "February", "March",    "April",
                                                  "May",       "June",     "July",     "August",
                                                  "September", "October",  "November", "December"};

std::tm local(std::int64_t time)
{
    const std::time_t seconds = time;
    std::tm parts{};
    localtime_r(&seconds, &parts);
    return parts;
}

bool isSameDay(const std::tm& a, const std::tm& b)
{
    return a.tm_year == b.tm_year && a.tm_yday == b.tm_yday;
}

// Noon of the day before: a day with a clock change has 23 or 25 hours.
std::tm dayBefore(std::tm day)
{
    day.tm_mday -= 1;
    day.tm_hour = 12;
    day.tm_isdst = -1;
    std::mktime(&day);
    return day;
}

std::string twoDigits(int number)
{
    return concat(number < 10 ? "0" : "", number);
}

} // namespace

std::string dateText(std::int64_t time, std::int64_t now)
{
    const std::tm then = local(time);
    const std::tm today = local(now);
    if (isSameDay(then, today)) {
        return concat("Today, ", twoDigits(then.tm_hour), ":", twoDigits(then.tm_min));
    }
    if (isSameDay(then, dayBefore(today))) {
        return "Yesterday";
    }
    const std::string_view month = months[static_cast<std::size_t>(then.tm_mon) % months.size()];
    const std::string day = concat(then.tm_mday, " ", month);
    return then.tm_year == today.tm_year ? day : concat(day, " ", then.tm_year + 1900);
}

std::string notesText(int notes)
{
    return notes < 0 ? "" : counted(notes, "note", "notes");
}

} // namespace volvelle
