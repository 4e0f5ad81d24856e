#pragma once

#include <cstddef>
#include <string>

namespace volvelle::test {

// Notes one after another, each as long as the next, in a Standard MIDI File of one track at 120 beats per
// minute. Keys go up from 48 to 71 and begin anew.
struct NoteRow {
    static constexpr int ticksPerSecond = 192;

    int count = 0;
    int ticks = 48;             // of each note: a quarter of a second
    bool changesSounds = false; // a new program before each note, from 16 on; else an organ throughout

    static int key(int index) { return 48 + index % 24; }

    double seconds() const { return static_cast<double>(count) * ticks / ticksPerSecond; }

    std::string file() const
    {
        using namespace std::string_literals;
        std::string track = "\x00\xC0\x13"s;
        for (int i = 0; i < count; ++i) {
            if (changesSounds) {
                track += "\x00\xC0"s + static_cast<char>(16 + i % 8);
            }
            track += "\x00\x90"s + static_cast<char>(key(i)) + "\x64"s;
            track += length(ticks) + "\x80"s + static_cast<char>(key(i)) + "\x00"s;
        }
        track += "\x00\xFF\x2F\x00"s;
        std::string size = "\0\0"s;
        size += static_cast<char>(track.size() / 256);
        size += static_cast<char>(track.size() % 256);
        return "MThd\0\0\0\6\0\0\0\1\0\x60MTrk"s + size + track;
    }

private:
    static std::string length(int ticks)
    {
        std::string bytes(1, static_cast<char>(ticks % 128));
        for (int rest = ticks / 128; rest > 0; rest /= 128) {
            bytes.insert(bytes.begin(), static_cast<char>(128 + rest % 128));
        }
        return bytes;
    }
};

} // namespace volvelle::test
