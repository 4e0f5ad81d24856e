#include "scores/ChordName.h"
#include "scores/PitchNames.h"
#include "scores/ScoreBody.h"
#include "scores/ScoreText.h"

#include <algorithm>
#include <array>

namespace volvelle::scores {

namespace {

constexpr int cellsMost = 16;

// A chord that sounds until the next cell that is not ".".
struct Sounding {
    std::vector<int>
        numbers;      // in the order of the chord's intervals, so that each note leads on to the chord
    double start = 0; // beats
    int velocity = 76;
    int line = 0;
};

// A chord cell taken apart: NAME, "/" and the lowest tone, "=" and the velocity.
struct ChordCell {
    std::string_view name;
    std::optional<std::string_view> lowest;
    std::optional<std::string_view> velocity;
};

ChordCell takenApart(std::string_view cell)
{
    ChordCell parts{cell, std::nullopt, std::nullopt};
    if (const auto at = parts.name.find('='); at != std::string_view::npos) {
        parts.velocity = parts.name.substr(at + 1);
        parts.name = parts.name.substr(0, at);
    }
    if (const auto at = parts.name.find('/'); at != std::string_view::npos) {
        parts.lowest = parts.name.substr(at + 1);
        parts.name = parts.name.substr(0, at);
    }
    return parts;
}

std::vector<int> closePosition(const ChordName& chord, int lowestTone, int from)
{
    const int bottom = from + (lowestTone - from % 12 + 12) % 12;
    std::vector<int> numbers;
    numbers.reserve(chord.intervals.size());
    for (const int interval : chord.intervals) {
        numbers.push_back(bottom + (chord.root + interval - lowestTone + 24) % 12);
    }
    return numbers;
}

class ChordReader {
public:
    ChordReader(const ScoreSettings& settings, Score& score) : settings(settings), score(score) {}

    Result<> readBar(const ScoreBar& bar);
    void finish(double end);

private:
    Result<> readCell(std::string_view cell, const ScoreBar& bar, double position);
    Result<> readChord(const ChordCell& cell, const ScoreBar& bar, double position);
    int levelAt(int bar, double position) const;

    const ScoreSettings& settings;
    Score& score;
    Sounding sounding;
};

Result<> ChordReader::readBar(const ScoreBar& bar)
{
    const auto cells = scoreCells(bar.text);
    const int count = static_cast<int>(cells.size());
    if (count < 1 || count > cellsMost || cellsMost % count != 0) {
        return failure(atBar(bar.line, bar.number) + "a bar holds 1, 2, 4, 8 or 16 cells, not " +
                       std::to_string(count));
    }
    double position = (bar.number - 1) * 4.0;
    for (const auto cell : cells) {
        if (Result<> read = readCell(cell, bar, position); !read) {
            return failure(atBar(bar.line, bar.number) + read.error());
        }
        position += 4.0 / count;
    }
    return {};
}

Result<> ChordReader::readCell(std::string_view cell, const ScoreBar& bar, double position)
{
    if (cell == ".") {
        return sounding.numbers.empty() ? failure("there is no chord that could go on") : Result<>();
    }
    finish(position);
    return cell == "-" ? Result<>() : readChord(takenApart(cell), bar, position);
}

Result<> ChordReader::readChord(const ChordCell& cell, const ScoreBar& bar, double position)
{
    const auto chord = chordNamed(cell.name);
    if (!chord) {
        return failure(quoted(cell.name) + " is no chord name: a root, as C or F#, and one of " +
                       chordTypes());
    }
    const auto detected = chordDetected(chord->tones());
    if (detected != cell.name) {
        return failure(std::string(cell.name) + " is found again as " + detected + ": write " + detected);
    }
    const auto lowest = cell.lowest ? pitchClass(*cell.lowest) : chord->root;
    if (!lowest || (chord->tones() & (1u << *lowest)) == 0) {
        return failure(quoted(cell.lowest.value_or("")) + " is no tone of " + std::string(cell.name));
    }
    const auto velocity = cell.velocity ? wholeNumber(*cell.velocity, 1, 127) : levelAt(bar.number, position);
    if (!velocity) {
        return failure(quoted(cell.velocity.value_or("")) + " is no velocity from 1 to 127");
    }
    sounding = {closePosition(*chord, *lowest, settings.lowest), position, *velocity, bar.line};
    score.chords.push_back({position, std::string(cell.name)});
    return {};
}

int ChordReader::levelAt(int bar, double position) const
{
    constexpr int onBar = 6;
    constexpr int ahead = 10;
    const auto last = settings.dynamics.size() - 1;
    const int level = settings.dynamics[std::min(static_cast<std::size_t>(bar - 1), last)];
    const double inBar = position - (bar - 1) * 4.0;
    if (inBar == 0) {
        return level + onBar;
    }
    return inBar == static_cast<int>(inBar) ? level : level + ahead;
}

void ChordReader::finish(double end)
{
    constexpr std::array<int, 4> touch = {0, -9, -5, 4}; // bottom, inner, inner, top
    const auto count = sounding.numbers.size();
    for (const int number : sounding.numbers) {
        const auto voice = static_cast<std::size_t>(
            std::ranges::count_if(sounding.numbers, [number](int other) { return other < number; }));
        const int shift = touch[voice + 1 == count && voice > 0 ? 3 : voice];
        const int velocity = std::clamp(sounding.velocity + shift, 1, 127);
        score.notes.push_back({sounding.start, end - sounding.start - Score::gap,
                               static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(velocity),
                               sounding.line});
    }
    sounding = {};
}

} // namespace

Result<> readChords(const std::vector<ScoreLine>& body, const ScoreSettings& settings, Score& score)
{
    const auto bars = fourBars(body, score.bodyLine);
    if (!bars) {
        return failure(bars.error());
    }
    ChordReader reader(settings, score);
    for (const auto& bar : *bars) {
        if (Result<> read = reader.readBar(bar); !read) {
            return read;
        }
    }
    reader.finish(Score::beats);
    return {};
}

} // namespace volvelle::scores
