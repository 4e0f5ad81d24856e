#include "scores/ScoreParser.h"

#include "base/Text.h"
#include "scores/PitchNames.h"
#include "scores/ScoreBody.h"
#include "scores/ScoreText.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <utility>

namespace volvelle {

namespace {

using namespace scores;

std::string bodyLine(ScoreKind kind)
{
    return std::string(scoreBodyWord(kind)) + ":";
}

// In any case of its letters.
bool isBodyWord(std::string_view key)
{
    std::string word(key);
    std::ranges::transform(word, word.begin(),
                           [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return word == "chords" || word == "notes" || word == "drums";
}

class HeaderReader {
public:
    HeaderReader(Score& score, ScoreSettings& settings) : score(score), settings(settings) {}

    Result<> read(const ScoreLine& line);

private:
    Result<> take(std::string_view key, std::string_view value, int line);
    Result<> takeDynamics(std::string_view value);
    Result<> takeLowest(std::string_view value);

    Score& score;
    ScoreSettings& settings;
    std::set<std::string, std::less<>> seen;
};

Result<> HeaderReader::read(const ScoreLine& line)
{
    const auto colon = line.text.find(':');
    const auto key = trimmed(line.text.substr(0, colon));
    const auto value =
        colon == std::string_view::npos ? std::string_view() : trimmed(line.text.substr(colon + 1));
    const std::string place = atLine(line.number);
    if (colon == std::string_view::npos || key.empty()) {
        return failure(place + "a header line reads \"key: value\"");
    }
    if (value.empty() && isBodyWord(key)) {
        return failure(
            concat(place, "the body opens with ", quoted(bodyLine(score.kind)), ", not ", quoted(line.text)));
    }
    if (value.empty()) {
        return failure(place + quoted(key) + " has no value");
    }
    if (!seen.emplace(key).second) {
        return failure(place + quoted(key) + " stands twice");
    }
    Result<> taken = take(key, value, line.number);
    return taken ? taken : failure(place + taken.error());
}

Result<> HeaderReader::take(std::string_view key, std::string_view value, int line)
{
    const bool pattern = score.kind == ScoreKind::chordPattern;
    if (key == "title") {
        score.title = value;
        score.titleLine = line;
    } else if (key == "style") {
        score.style = value;
    } else if (key == "machine" && value == "yes") {
        score.machine = true;
    } else if (key == "machine") {
        return failure("\"machine\" is \"yes\" or left out");
    } else if (key == "from" && pattern) {
        return takeLowest(value);
    } else if (key == "dynamics" && pattern) {
        return takeDynamics(value);
    } else {
        return failure("the key " + quoted(key) + " is not known here");
    }
    return {};
}

Result<> HeaderReader::takeDynamics(std::string_view value)
{
    settings.dynamics.clear();
    for (const auto word : scoreCells(value)) {
        const auto level = dynamicsLevel(word);
        if (!level) {
            return failure(quoted(word) + " is no level: pp p mp mf f ff");
        }
        settings.dynamics.push_back(*level);
    }
    if (settings.dynamics.size() > Score::bars) {
        return failure("\"dynamics\" has one level for each of 4 bars at most");
    }
    return {};
}

Result<> HeaderReader::takeLowest(std::string_view value)
{
    constexpr int most = 104;
    const auto number = pitchNumber(value);
    if (!number || *number > most) {
        return failure(quoted(value) + " is no pitch from C-2 to G#6");
    }
    settings.lowest = *number;
    return {};
}

bool opensBody(std::string_view line)
{
    return line == "chords:" || line == "notes:" || line == "drums:";
}

Result<> readBody(const std::vector<ScoreLine>& body, const ScoreSettings& settings, Score& score)
{
    switch (score.kind) {
    case ScoreKind::chordPattern:
        return readChords(body, settings, score);
    case ScoreKind::drums:
        return readDrums(body, score);
    default:
        return readNotes(body, score);
    }
}

Result<> readHeader(const std::vector<ScoreLine>& head, Score& score, ScoreSettings& settings)
{
    HeaderReader reader(score, settings);
    for (const ScoreLine& line : head) {
        if (Result<> read = reader.read(line); !read) {
            return read;
        }
    }
    return {};
}

Result<> checkOpening(const ScoreLine& opening, const Score& score)
{
    const auto place = atLine(opening.number);
    if (opening.text != bodyLine(score.kind)) {
        return failure(concat(place, "the body opens with ", quoted(bodyLine(score.kind)), ", not ",
                              quoted(opening.text)));
    }
    if (score.title.empty()) {
        return failure(place + "the title is missing: write \"title: ...\" above");
    }
    if (score.style.empty()) {
        return failure(place + "the style is missing: write \"style: ...\" above");
    }
    return {};
}

} // namespace

Result<Score> parseScore(std::string_view text, ScoreKind kind)
{
    Score score;
    score.kind = kind;
    ScoreSettings settings;
    const auto lines = scoreLines(text);
    const auto opening = std::ranges::find_if(lines, opensBody, &ScoreLine::text);
    Result<> read = checkBytes(text);
    if (read) {
        read = readHeader({lines.begin(), opening}, score, settings);
    }
    if (read && opening == lines.end()) {
        read = failure(concat(atLine(lineCount(text)), "the body is missing: there is no line ",
                              quoted(bodyLine(kind))));
    }
    if (read) {
        score.bodyLine = opening->number;
        read = checkOpening(*opening, score);
    }
    if (read) {
        read = readBody({opening + 1, lines.end()}, settings, score);
    }
    return read ? Result<Score>(std::move(score)) : failure(read.error());
}

} // namespace volvelle
