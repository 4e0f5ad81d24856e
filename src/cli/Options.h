#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// What the arguments of each command say.
namespace volvelle {

struct CommonOptions {
    std::optional<std::filesystem::path> resources; // the folder of Phrases and Phrases2
    bool verbose = false;                           // console lines on standard output
    bool quiet = false;                             // nothing on standard output but what was asked for
};

struct GenerateOptions {
    static constexpr int longest = 10'000; // arrangements in a file: some 350 MB of memory

    std::optional<std::filesystem::path> out; // "-" for standard output; the next free name without a value
    int count = 1;                            // files
    int longCount = 1;                        // arrangements in a file, up to `longest`
    std::optional<std::filesystem::path> png; // a picture of each, and its sound
    std::optional<std::filesystem::path> wav;
};

struct InspectOptions {
    std::vector<std::filesystem::path> files;
    bool json = false;
};

struct LibraryCheckOptions {
    // Of phrases or of scores, or one score; the resources in use without a value.
    std::optional<std::filesystem::path> folder;
    bool ear = false; // measure arrangements, too
};

struct LibraryCompileOptions {
    std::filesystem::path scores;
    std::filesystem::path out;
};

struct LibraryHearOptions {
    std::filesystem::path score;
    std::optional<std::filesystem::path> out; // a folder that keeps the arrangements
    std::optional<std::string> port;          // as play has them
    std::optional<std::filesystem::path> bank;
};

} // namespace volvelle
