#pragma once

#include "base/Result.h"

#include <filesystem>

namespace volvelle {

// How an audio file is written, told by its name and by what is asked for.
struct AudioFileFormat {
    static constexpr int lowestRate = 8000;     // Hz
    static constexpr int highestRate = 192'000; // Hz

    int code = 0; // of the library that writes
    int rate = 0; // Hz

    // The format for "x.wav", "x.flac" or "x.ogg", whatever the case, the first two of 24 bits; a pipe
    // or a device of another name takes WAV. Fails for a file with another ending or a rate that no such file
    // has. [any]
    static Result<AudioFileFormat> of(const std::filesystem::path& path, int rate);
};

} // namespace volvelle
