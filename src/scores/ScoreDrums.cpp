#include "scores/ScoreBody.h"
#include "scores/ScoreText.h"

#include <algorithm>

namespace volvelle::scores {

namespace {

constexpr int cellsInBar = 16;

int hitVelocity(char digit)
{
    constexpr int velocities[] = {16, 29, 41, 54, 67, 79, 92, 105, 118};
    return velocities[digit - '1'];
}

Result<> readDrumBar(const ScoreBar& bar, int key, Score& score)
{
    const auto cells = characters(bar.text);
    if (cells.size() != cellsInBar) {
        return failure(atBar(bar.line, bar.number) + "a bar of drums has 16 cells, not " +
                       std::to_string(cells.size()));
    }
    for (int cell = 0; cell < cellsInBar; ++cell) {
        const std::string_view shown = cells[static_cast<std::size_t>(cell)];
        const char hit = shown.front();
        if (hit == '.') {
            continue;
        }
        if (hit < '1' || hit > '9') {
            return failure(atBar(bar.line, bar.number) + "a drum cell is \".\" or 1 to 9, not " +
                           quoted(shown));
        }
        const double position = ((bar.number - 1) * cellsInBar + cell) * Score::sixteenth;
        score.notes.push_back({position, Score::sixteenth - Score::gap, static_cast<std::uint8_t>(key),
                               static_cast<std::uint8_t>(hitVelocity(hit)), bar.line});
    }
    return {};
}

Result<> readDrumRow(const ScoreLine& line, Score& score)
{
    const auto firstBar = std::min(line.text.find('|'), line.text.size());
    const auto head = scoreCells(line.text.substr(0, firstBar));
    const auto bars = scoreBars(line.text.substr(firstBar));
    if (head.size() != 2 || !bars) {
        return failure(atLine(line.number) + "a row of drums reads: NAME KEY |bar|bar|bar|bar|");
    }
    const auto key = wholeNumber(head[1], 0, 127);
    if (!key) {
        return failure(atLine(line.number) + quoted(head[1]) + " is no key from 0 to 127");
    }
    if (bars->size() != Score::bars) {
        return failure(atLine(line.number) + "a row of drums has 4 bars, not " +
                       std::to_string(bars->size()));
    }
    for (int bar = 0; bar < Score::bars; ++bar) {
        const std::string_view cells = (*bars)[static_cast<std::size_t>(bar)];
        if (Result<> read = readDrumBar({line.number, bar + 1, cells}, *key, score); !read) {
            return read;
        }
    }
    return {};
}

} // namespace

Result<> readDrums(const std::vector<ScoreLine>& body, Score& score)
{
    for (const auto& line : body) {
        if (Result<> read = readDrumRow(line, score); !read) {
            return read;
        }
    }
    if (body.empty()) {
        return failure(atLine(score.bodyLine) + "the body has no row of drums");
    }
    std::ranges::stable_sort(score.notes, {}, &ScoreNote::position);
    return {};
}

} // namespace volvelle::scores
