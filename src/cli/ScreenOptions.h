#pragma once

#include <filesystem>
#include <optional>
#include <vector>

// What the arguments of the program with a window say.
namespace volvelle {

struct PictureOptions {
    static constexpr int smallest = 64; // pixels
    static constexpr int largest = 8192;

    std::filesystem::path file;
    std::filesystem::path out;  // a PNG; "-" for standard output
    int size = 1024;            // pixels of a side
    std::optional<double> beat; // the position that is shown; at rest without one
};

struct AppOptions {
    std::vector<std::filesystem::path> files; // the first is opened
    bool isSelfTest = false;
};

} // namespace volvelle
