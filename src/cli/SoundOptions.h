#pragma once

#include "base/realtime/AudioSource.h"

#include <filesystem>
#include <optional>
#include <string>

// What the arguments of the commands with sound say.
namespace volvelle {

// The sequencers that play a file: that of the platform, and the one inside the engine.
inline constexpr const char* platformEngine = "platform";
inline constexpr const char* renderEngine = "render";

struct PlayOptions {
    std::optional<std::filesystem::path> file; // none for a list of ports alone
    std::optional<std::string> port;           // part of the name of a MIDI port, or "list"
    std::optional<std::filesystem::path> bank;
    std::string engine = platformEngine;
};

struct RenderOptions {
    std::filesystem::path file;
    std::filesystem::path out; // its ending tells the form: .wav, .flac or .ogg
    std::optional<std::filesystem::path> bank;
    std::string engine = platformEngine;
    int rate = static_cast<int>(AudioSource::sampleRate); // Hz
    int cores = 0;                                        // 0 for all; the engine's sequencer needs but one
};

struct RecordOptions {
    static constexpr double longest = 86'400.0; // seconds

    std::string port;                         // part of the name of a MIDI port, or "list"
    std::optional<std::filesystem::path> out; // "-" for standard output; none for a list of ports alone
    std::optional<double> seconds;            // above 0, up to `longest`; none for no end by itself
};

} // namespace volvelle
