#include "scores/ScoreBody.h"

#include "base/Text.h"
#include "scores/ScoreText.h"

#include <array>
#include <utility>

namespace volvelle::scores {

Result<std::vector<ScoreBar>> fourBars(const std::vector<ScoreLine>& body, int opened)
{
    std::vector<ScoreBar> bars;
    for (const auto& line : body) {
        const auto texts = scoreBars(line.text);
        if (!texts) {
            return failure(atLine(line.number) + "a line of bars begins and ends with \"|\"");
        }
        for (const auto text : *texts) {
            const int number = static_cast<int>(bars.size()) + 1;
            if (number > Score::bars) {
                return failure(atLine(line.number) + "a phrase has 4 bars, and this is one more");
            }
            bars.push_back({line.number, number, text});
        }
    }
    if (bars.size() == Score::bars) {
        return bars;
    }
    return failure(atLine(body.empty() ? opened : body.back().number) + "the body has " +
                   counted(bars.size(), "bar", "bars") + ", not 4");
}

std::optional<int> dynamicsLevel(std::string_view word)
{
    constexpr std::array<std::pair<std::string_view, int>, 6> levels = {
        {{"pp", 40}, {"p", 52}, {"mp", 64}, {"mf", 76}, {"f", 88}, {"ff", 100}}};
    for (const auto& [name, velocity] : levels) {
        if (name == word) {
            return velocity;
        }
    }
    return std::nullopt;
}

} // namespace volvelle::scores
