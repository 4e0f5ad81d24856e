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

// At 240 beats per minute, on each beat an organ note on one of three channels, and a drum: twenty-four
// seconds unless more is asked for, at most 3,900 beats.
inline std::string longMusic(int beats = 96)
{
    using namespace std::string_literals;
    std::string track = "\x00\xFF\x51\x03\x03\xD0\x90\x00\xC0\x13\x00\xC1\x30\x00\xC2\x58"s;
    for (int beat = 0; beat < beats; ++beat) {
        const auto channel = static_cast<char>(beat % 3);
        const auto key = static_cast<char>(48 + beat * 7 % 30);
        const auto on = static_cast<char>(0x90 | channel);
        const auto off = static_cast<char>(0x80 | channel);
        track += "\0"s + on + key + "\x50\0\x99"s + static_cast<char>(36 + beat % 12) + "\x60"s;
        track += "\x60"s + off + key + "\0"s;
    }
    track += "\x00\xFF\x2F\x00"s;
    const auto high = static_cast<char>(track.size() >> 8U);
    const auto low = static_cast<char>(track.size() & 0xFFU);
    return "MThd\0\0\0\6\0\0\0\1\0\x60"s + "MTrk\0\0"s + high + low + track;
}

} // namespace volvelle::test
