#include "base/Text.h"
#include "scores/ChordName.h"
#include "scores/ScoreBody.h"
#include "scores/ScoreText.h"

namespace volvelle::scores {

namespace {

constexpr int cellsMost = 16;
constexpr int lowestRoot = 48;         // C2
constexpr std::uint8_t velocity = 100; // that of the chord track

// A chord that sounds until the next cell that is not ".".
struct Sounding {
    std::vector<int>
        numbers;      // in the order of the chord's intervals, so that each note leads on to the chord
    double start = 0; // beats
    int line = 0;
};

std::vector<int> closePosition(const ChordName& chord)
{
    std::vector<int> numbers;
    numbers.reserve(chord.intervals.size());
    for (const int interval : chord.intervals) {
        numbers.push_back(lowestRoot + chord.root + interval);
    }
    return numbers;
}

class ChordReader {
public:
    explicit ChordReader(Score& score) : score(score) {}

    Result<> readBar(const ScoreBar& bar);
    void begin(const ChordName& chord, int line, double position);
    void finish(double end);

private:
    Result<> readCell(std::string_view cell, const ScoreBar& bar, double position);
    Result<> readChord(std::string_view name, int line, double position);

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
    return cell == "-" ? Result<>() : readChord(cell, bar.line, position);
}

Result<> ChordReader::readChord(std::string_view name, int line, double position)
{
    if (const auto plain = name.substr(0, name.find_first_of("/=")); plain != name && chordNamed(plain)) {
        return failure(concat(name, ": inversions and velocities of chords are never heard: write ", plain));
    }
    const auto chord = chordNamed(name);
    if (!chord) {
        return failure(quoted(name) + " is no chord name: a root, as C or F#, and one of " + chordTypes());
    }
    if (const auto detected = chordDetected(chord->tones()); detected != name) {
        return failure(concat(name, " is found again as ", detected, ": write ", detected));
    }
    begin(*chord, line, position);
    score.chords.push_back({position, std::string(name)});
    return {};
}

void ChordReader::begin(const ChordName& chord, int line, double position)
{
    finish(position);
    sounding = {closePosition(chord), position, line};
}

void ChordReader::finish(double end)
{
    for (const int number : sounding.numbers) {
        score.notes.push_back({sounding.start, end - sounding.start - Score::gap,
                               static_cast<std::uint8_t>(number), velocity, sounding.line});
    }
    sounding = {};
}

} // namespace

Result<> readChords(const std::vector<ScoreLine>& body, Score& score)
{
    const auto bars = fourBars(body, score.bodyLine);
    if (!bars) {
        return failure(bars.error());
    }
    ChordReader reader(score);
    for (const auto& bar : *bars) {
        if (Result<> read = reader.readBar(bar); !read) {
            return read;
        }
    }
    reader.finish(Score::beats);
    return {};
}

void layOutChords(Score& score)
{
    score.notes.clear();
    ChordReader reader(score);
    for (const ScoreChord& chord : score.chords) {
        if (const auto named = chordNamed(chord.name)) {
            reader.begin(*named, 0, chord.position);
        }
    }
    reader.finish(Score::beats);
}

} // namespace volvelle::scores
