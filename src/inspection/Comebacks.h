#pragma once

#include <cstddef>
#include <filesystem>
#include <map>

namespace volvelle {

// How soon a phrase is heard again that was picked at random out of its folder. [any]
class Comebacks {
public:
    // The file of a phrase that was picked.
    void add(const std::filesystem::path& file);

    // The press by which one of the phrases heard has come back, as often as not; the most where none was
    // picked twice. Two picks of a folder tell how large it is, each pair of all that were made.
    int medianPress() const;

    static constexpr int mostPresses = 1000;

private:
    // The share of two picks out of a folder that are one phrase.
    static double shareOfSame(const std::map<std::filesystem::path, std::size_t>& picks);

    std::map<std::filesystem::path, std::map<std::filesystem::path, std::size_t>> picksOf; // by folder
};

} // namespace volvelle
