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

bool readDrumBar(const ScoreBar& bar, int key, Score& score, std::string& error)
{
    const auto cells = characters(bar.text);
    if (cells.size() != cellsInBar) {
        error =
            atBar(bar.line, bar.number) + "a bar of drums has 16 cells, not " + std::to_string(cells.size());
        return false;
    }
    for (int cell = 0; cell < cellsInBar; ++cell) {
        const std::string_view shown = cells[static_cast<std::size_t>(cell)];
        const char hit = shown.front();
        if (hit == '.') {
            continue;
        }
        if (hit < '1' || hit > '9') {
            error = atBar(bar.line, bar.number) + "a drum cell is \".\" or 1 to 9, not " + quoted(shown);
            return false;
        }
        const double position = ((bar.number - 1) * cellsInBar + cell) * Score::sixteenth;
        score.notes.push_back({position, Score::sixteenth - Score::gap, static_cast<std::uint8_t>(key),
                               static_cast<std::uint8_t>(hitVelocity(hit)), bar.line});
    }
    return true;
}

bool readDrumRow(const ScoreLine& line, Score& score, std::string& error)
{
    const auto firstBar = std::min(line.text.find('|'), line.text.size());
    const auto head = scoreCells(line.text.substr(0, firstBar));
    const auto bars = scoreBars(line.text.substr(firstBar));
    if (head.size() != 2 || !bars) {
        error = atLine(line.number) + "a row of drums reads: NAME KEY |bar|bar|bar|bar|";
        return false;
    }
    const auto key = wholeNumber(head[1], 0, 127);
    if (!key) {
        error = atLine(line.number) + quoted(head[1]) + " is no key from 0 to 127";
        return false;
    }
    if (bars->size() != Score::bars) {
        error = atLine(line.number) + "a row of drums has 4 bars, not " + std::to_string(bars->size());
        return false;
    }
    for (int bar = 0; bar < Score::bars; ++bar) {
        if (!readDrumBar({line.number, bar + 1, (*bars)[static_cast<std::size_t>(bar)]}, *key, score,
                         error)) {
            return false;
        }
    }
    return true;
}

} // namespace

bool readDrums(const std::vector<ScoreLine>& body, Score& score, std::string& error)
{
    for (const auto& line : body) {
        if (!readDrumRow(line, score, error)) {
            return false;
        }
    }
    if (body.empty()) {
        error = atLine(score.bodyLine) + "the body has no row of drums";
        return false;
    }
    std::ranges::stable_sort(score.notes, {}, &ScoreNote::position);
    return true;
}

} // namespace volvelle::scores
