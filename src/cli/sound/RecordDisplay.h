#pragma once

#include <span>
#include <string>

namespace volvelle {

// The line that shows what a recording hears: "12.3 seconds  45 events  C3 E3 G3". Tenths begun are not
// counted; the notes are those that sound.
std::string recordLine(double seconds, int events, std::span<const int> keys);

} // namespace volvelle
