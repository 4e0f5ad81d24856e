#include "inspection/Comebacks.h"

#include <algorithm>

namespace volvelle {

void Comebacks::add(const std::filesystem::path& file)
{
    ++picksOf[file.parent_path()][file];
}

int Comebacks::medianPress() const
{
    double noneIsBack = 1.0;
    for (int press = 2; press < mostPresses; ++press) {
        for (const auto& [folder, picks] : picksOf) {
            noneIsBack *= std::max(0.0, 1.0 - (press - 1) * shareOfSame(picks));
        }
        if (noneIsBack <= 0.5) {
            return press;
        }
    }
    return mostPresses;
}

double Comebacks::shareOfSame(const std::map<std::filesystem::path, std::size_t>& picks)
{
    std::size_t all = 0;
    std::size_t same = 0; // pairs, both counted twice
    for (const auto& [file, count] : picks) {
        all += count;
        same += count * (count - 1);
    }
    return all < 2 ? 0.0
                   : static_cast<double>(same) / (static_cast<double>(all) * static_cast<double>(all - 1));
}

} // namespace volvelle
