#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace volvelle {

// The samples of an audio file that holds them as they are.
enum class SampleForm { integer24, float32 };

// How an audio file is written, told by its name and by what is asked for.
struct AudioFileFormat {
    static constexpr int lowestRate = 8000;     // Hz
    static constexpr int highestRate = 192'000; // Hz

    int code = 0; // of the library that writes
    int rate = 0; // Hz

    // The format for "x.wav", "x.flac" or "x.ogg", whatever the case; `form` counts for WAV alone. Nothing,
    // with one plain line in `error`, for another ending or a rate that no such file has. [any thread]
    static std::optional<AudioFileFormat> of(const std::filesystem::path& path, SampleForm form, int rate,
                                             std::string& error);
};

} // namespace volvelle
