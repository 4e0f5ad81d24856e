#pragma once

#include <string>

namespace volvelle::test {

// A Standard MIDI File of four notes in one beat at 240 beats per minute: a quarter of a second.
inline std::string smallMusic()
{
    using namespace std::string_literals;
    const std::string track = "\x00\xFF\x51\x03\x03\xD0\x90"s // 240 beats per minute
                              "\x00\xC0\x13"s                 // an organ
                              "\x00\x90\x3C\x64\x00\x40\x64"s // two notes
                              "\x60\x80\x3C\x00\x00\x40\x00"s // a beat later
                              "\x00\xFF\x2F\x00"s;
    return "MThd\0\0\0\6\0\0\0\1\0\x60"s + "MTrk\0\0\0"s + static_cast<char>(track.size()) + track;
}

} // namespace volvelle::test
