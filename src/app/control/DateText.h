#pragma once

#include <cstdint>
#include <string>

namespace volvelle {

// A time as the browser tells it, seen from `now`, both in seconds since 1970 and told in local time: "Today,
// 14:32", "Yesterday", "18 November", "18 November 2025" for another year. [main]
std::string dateText(std::int64_t time, std::int64_t now);

// "213 notes", "1 note"; empty for a number below 0.
std::string notesText(int notes);

} // namespace volvelle
