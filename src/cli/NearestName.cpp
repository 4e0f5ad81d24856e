#include "cli/NearestName.h"

#include <algorithm>
#include <numeric>

namespace volvelle {

namespace {

// How many letters must be put in, left out or exchanged to turn one into the other.
std::size_t distance(const std::string& one, const std::string& other)
{
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < one.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < other.size(); ++j) {
            const std::size_t exchanged = diagonal + (one[i] == other[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

} // namespace

std::string nearestName(const std::string& word, const std::vector<std::string>& names)
{
    std::size_t least =
        std::min<std::size_t>(2, (word.size() - std::min<std::size_t>(1, word.size())) / 2) + 1;
    std::string nearest;
    for (const std::string& name : names) {
        const std::size_t away = !word.empty() && name.starts_with(word) ? 0 : distance(word, name);
        if (away < least) {
            least = away;
            nearest = name;
        }
    }
    return nearest;
}

} // namespace volvelle
