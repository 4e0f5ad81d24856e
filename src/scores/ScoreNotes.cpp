#include "scores/PitchNames.h"
#include "scores/ScoreBody.h"
#include "scores/ScoreText.h"

#include <algorithm>

namespace volvelle::scores {

namespace {

constexpr int sixteenthsInBar = 16;
constexpr int accentRaise = 15;
constexpr int ghostDrop = 35;
constexpr int leastGhost = 15;
constexpr std::string_view cellForm =
    " is no cell: PITCH:LEN, [PITCH PITCH]:LEN, r:LEN, ~:LEN or a level pp p mp mf f ff";

// What was struck last and may still be lengthened.
struct Struck {
    std::vector<int> numbers; // empty for a rest
    int start = 0;            // sixteenths
    int length = 0;           // sixteenths
    int velocity = 76;
    bool staccato = false;
    int line = 0;
};

// What stands after the length of a cell.
struct Touch {
    bool staccato = false;
    int raise = 0;
    std::optional<int> velocity;
};

// The number after "=" that is none from 1 to 127.
std::optional<std::string_view> wrongVelocity(std::string_view marks)
{
    const auto at = marks.find('=');
    if (at == std::string_view::npos) {
        return std::nullopt;
    }
    const auto number = marks.substr(at + 1);
    const bool isNumber = number.find_first_not_of("0123456789") == std::string_view::npos;
    return isNumber && !wholeNumber(number, 1, 127) ? std::optional(number) : std::nullopt;
}

class NoteReader {
public:
    explicit NoteReader(Score& score) : score(score) {}

    Result<> readBar(const ScoreBar& bar);
    void finish();

private:
    Result<> readCell(std::string_view cell, bool firstOfBar);
    Result<> readTie(int length, std::string_view behind, bool firstOfBar);
    Result<> readStruck(std::string_view head, int length, std::string_view behind);

    Score& score;
    Struck struck;
    int at = 0; // sixteenths
    int line = 0;
    int level = 76;
};

std::optional<Touch> touchOf(std::string_view marks)
{
    Touch touch;
    while (!marks.empty()) {
        const char mark = marks.front();
        marks.remove_prefix(1);
        if (mark == '=') {
            touch.velocity = wholeNumber(marks, 1, 127);
            return touch.velocity ? std::optional(touch) : std::nullopt;
        }
        if (mark == '\'' && !touch.staccato) {
            touch.staccato = true;
        } else if (mark == '>' && touch.raise == 0) {
            touch.raise = accentRaise;
        } else if (mark == '_' && touch.raise == 0) {
            touch.raise = -ghostDrop;
        } else {
            return std::nullopt;
        }
    }
    return touch;
}

int velocityOf(const Touch& touch, int level)
{
    if (touch.velocity) {
        return *touch.velocity;
    }
    return std::clamp(level + touch.raise, touch.raise < 0 ? leastGhost : 1, 127);
}

Result<> NoteReader::readBar(const ScoreBar& bar)
{
    const int start = at;
    line = bar.line;
    bool first = true;
    for (const auto cell : scoreCells(bar.text)) {
        if (Result<> read = readCell(cell, first); !read) {
            return failure(atBar(bar.line, bar.number) + read.error());
        }
        first = first && at == start;
    }
    if (at - start == sixteenthsInBar) {
        return {};
    }
    return failure(atBar(bar.line, bar.number) + "the cells add up to " + std::to_string(at - start) +
                   " sixteenths, not 16");
}

Result<> NoteReader::readCell(std::string_view cell, bool firstOfBar)
{
    if (const auto word = dynamicsLevel(cell)) {
        level = *word;
        return {};
    }
    const auto colon = cell.find(':');
    if (colon == std::string_view::npos) {
        return failure(quoted(cell) + std::string(cellForm));
    }
    const auto behind = cell.substr(colon + 1);
    const auto digits = std::min(behind.find_first_not_of("0123456789"), behind.size());
    const auto length = wholeNumber(behind.substr(0, digits), 1, sixteenthsInBar);
    if (!length) {
        return failure(quoted(cell) + " has no length from 1 to 16");
    }
    if (cell.starts_with("~:")) {
        return readTie(*length, behind.substr(digits), firstOfBar);
    }
    return readStruck(cell.substr(0, colon), *length, behind.substr(digits));
}

Result<> NoteReader::readTie(int length, std::string_view behind, bool firstOfBar)
{
    if (!firstOfBar) {
        return failure("a tie stands as the first cell of a bar");
    }
    if (struck.numbers.empty()) {
        return failure("there is no note to lengthen");
    }
    if (!behind.empty()) {
        return failure("a tie has nothing behind its length");
    }
    struck.length += length;
    at += length;
    return {};
}

Result<> NoteReader::readStruck(std::string_view head, int length, std::string_view behind)
{
    const bool rest = head == "r";
    const auto touch = touchOf(behind);
    if (const auto velocity = wrongVelocity(behind); velocity && !rest) {
        return failure(quoted(*velocity) + " is no velocity from 1 to 127");
    }
    if (!touch || (rest && !behind.empty())) {
        return failure(quoted(behind) + " cannot stand behind a length");
    }
    Struck next{{}, at, length, velocityOf(*touch, level), touch->staccato, line};
    const bool several = head.size() > 2 && head.front() == '[' && head.back() == ']';
    const auto names = several ? scoreCells(head.substr(1, head.size() - 2)) : std::vector{head};
    if (names.empty()) {
        return failure(quoted(head) + " holds no pitch");
    }
    for (std::size_t i = 0; !rest && i < names.size(); ++i) {
        const auto number = pitchNumber(names[i]);
        if (!number) {
            return failure(quoted(names[i]) + " is no pitch from C-2 to G8");
        }
        next.numbers.push_back(*number);
    }
    finish();
    struck = std::move(next);
    at += length;
    return {};
}

void NoteReader::finish()
{
    const double whole = struck.length * Score::sixteenth;
    const double sounding = struck.staccato ? std::max(whole / 2, Score::sixteenth) : whole;
    for (const int number : struck.numbers) {
        score.notes.push_back({struck.start * Score::sixteenth, sounding - Score::gap,
                               static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(struck.velocity),
                               struck.line});
    }
    struck = {};
}

} // namespace

Result<> readNotes(const std::vector<ScoreLine>& body, Score& score)
{
    const auto bars = fourBars(body, score.bodyLine);
    if (!bars) {
        return failure(bars.error());
    }
    NoteReader reader(score);
    for (const auto& bar : *bars) {
        if (Result<> read = reader.readBar(bar); !read) {
            return read;
        }
    }
    reader.finish();
    return {};
}

} // namespace volvelle::scores
