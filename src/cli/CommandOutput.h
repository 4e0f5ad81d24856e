#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace volvelle {

inline constexpr int exitDone = 0;
inline constexpr int exitFailed = 1;
inline constexpr int exitUsage = 2;

// The name of a file to write that is none: its bytes go to standard output, alone.
inline constexpr const char* standardOutputName = "-";

// What a command says: results and remarks on standard output, failures on standard error. [main]
class CommandOutput {
public:
    explicit CommandOutput(bool isQuiet) : quiet(isQuiet) {}

    bool isQuiet() const { return quiet; }

    // A line that the user asked for; a remark, which a quiet command leaves out.
    void result(std::string_view line);
    void remark(std::string_view line);

    // The one line of a command that could not; returns exitFailed.
    int failure(std::string_view line);

    // The one line of a command that was asked wrongly; returns exitUsage.
    int misuse(std::string_view line);

    // The status of a command at its end: a failure, too, where its output could not be written.
    int finish(int status);

    // A bar on a terminal's standard error, overwritten by the next line or bar and gone once all is done;
    // nothing elsewhere.
    void progress(int done, int of);

private:
    void tell(std::string_view line);
    void endBar();

    bool quiet;
    bool hasBar = false; // on the terminal
};

// "[#########                     ] 3 of 10", shorter where there are fewer columns.
std::string progressBar(int done, int of, std::size_t columns);

// Why a file could not be read, as a sentence.
std::string readFailure(const std::filesystem::path& file, OSStatus status);

// The sentence for a MIDI file without any track.
std::string trackFailure(const std::filesystem::path& file);

} // namespace volvelle
