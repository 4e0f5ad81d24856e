#pragma once

#include <filesystem>
#include <optional>

// What the arguments of each command say.
namespace volvelle {

struct CommonOptions {
    std::optional<std::filesystem::path> resources; // the folder of Phrases and Phrases2
    bool verbose = false;                           // console lines on standard output
    bool quiet = false;                             // nothing on standard output but what was asked for
};

struct GenerateOptions {
    std::filesystem::path out = "New MIDI Idea.mid";
    int count = 1;     // files
    int longCount = 1; // arrangements in a file
};

struct InspectOptions {
    std::filesystem::path file;
    bool json = false;
};

struct LibraryCheckOptions {
    std::optional<std::filesystem::path> folder; // the resources in use without a value
    bool ear = false;                            // measure arrangements, too
};

struct LibraryCompileOptions {
    std::filesystem::path scores;
    std::filesystem::path out;
};

} // namespace volvelle
