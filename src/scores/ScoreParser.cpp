#include "scores/ScoreParser.h"

#include "base/Text.h"
#include "scores/PitchNames.h"
#include "scores/ScoreBody.h"
#include "scores/ScoreText.h"

#include <algorithm>
#include <cctype>
#include <set>

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

    bool read(const ScoreLine& line, std::string& error);

private:
    std::string take(std::string_view key, std::string_view value, int line);
    std::string takeDynamics(std::string_view value);
    std::string takeLowest(std::string_view value);

    Score& score;
    ScoreSettings& settings;
    std::set<std::string, std::less<>> seen;
};

bool HeaderReader::read(const ScoreLine& line, std::string& error)
{
    const auto colon = line.text.find(':');
    const auto key = trimmed(line.text.substr(0, colon));
    const auto value =
        colon == std::string_view::npos ? std::string_view() : trimmed(line.text.substr(colon + 1));
    std::string fault;
    if (colon == std::string_view::npos || key.empty()) {
        fault = "a header line reads \"key: value\"";
    } else if (value.empty() && isBodyWord(key)) {
        fault = concat("the body opens with ", quoted(bodyLine(score.kind)), ", not ", quoted(line.text));
    } else if (value.empty()) {
        fault = quoted(key) + " has no value";
    } else if (!seen.emplace(key).second) {
        fault = quoted(key) + " stands twice";
    } else {
        fault = take(key, value, line.number);
    }
    if (!fault.empty()) {
        error = atLine(line.number) + fault;
    }
    return fault.empty();
}

std::string HeaderReader::take(std::string_view key, std::string_view value, int line)
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
        return "\"machine\" is \"yes\" or left out";
    } else if (key == "from" && pattern) {
        return takeLowest(value);
    } else if (key == "dynamics" && pattern) {
        return takeDynamics(value);
    } else {
        return "the key " + quoted(key) + " is not known here";
    }
    return {};
}

std::string HeaderReader::takeDynamics(std::string_view value)
{
    settings.dynamics.clear();
    for (const auto word : scoreCells(value)) {
        const auto level = dynamicsLevel(word);
        if (!level) {
            return quoted(word) + " is no level: pp p mp mf f ff";
        }
        settings.dynamics.push_back(*level);
    }
    return settings.dynamics.size() > Score::bars ? "\"dynamics\" has one level for each of 4 bars at most"
                                                  : "";
}

std::string HeaderReader::takeLowest(std::string_view value)
{
    constexpr int most = 104;
    const auto number = pitchNumber(value);
    if (!number || *number > most) {
        return quoted(value) + " is no pitch from C-2 to G#6";
    }
    settings.lowest = *number;
    return {};
}

bool opensBody(std::string_view line)
{
    return line == "chords:" || line == "notes:" || line == "drums:";
}

bool readBody(const std::vector<ScoreLine>& body, const ScoreSettings& settings, Score& score,
              std::string& error)
{
    switch (score.kind) {
    case ScoreKind::chordPattern:
        return readChords(body, settings, score, error);
    case ScoreKind::drums:
        return readDrums(body, score, error);
    default:
        return readNotes(body, score, error);
    }
}

std::string readHeader(const std::vector<ScoreLine>& head, Score& score, ScoreSettings& settings)
{
    HeaderReader reader(score, settings);
    std::string error;
    for (const ScoreLine& line : head) {
        if (!reader.read(line, error)) {
            break;
        }
    }
    return error;
}

std::string faultOfOpening(const ScoreLine& opening, const Score& score)
{
    const auto place = atLine(opening.number);
    if (opening.text != bodyLine(score.kind)) {
        return concat(place, "the body opens with ", quoted(bodyLine(score.kind)), ", not ",
                      quoted(opening.text));
    }
    if (score.title.empty()) {
        return place + "the title is missing: write \"title: ...\" above";
    }
    return score.style.empty() ? place + "the style is missing: write \"style: ...\" above" : "";
}

} // namespace

std::optional<Score> parseScore(std::string_view text, ScoreKind kind, std::string& error)
{
    Score score;
    score.kind = kind;
    ScoreSettings settings;
    const auto lines = scoreLines(text);
    const auto opening = std::ranges::find_if(lines, opensBody, &ScoreLine::text);
    auto fault = faultOfBytes(text);
    if (fault.empty()) {
        fault = readHeader({lines.begin(), opening}, score, settings);
    }
    if (fault.empty() && opening == lines.end()) {
        fault =
            concat(atLine(lineCount(text)), "the body is missing: there is no line ", quoted(bodyLine(kind)));
    } else if (fault.empty()) {
        score.bodyLine = opening->number;
        fault = faultOfOpening(*opening, score);
    }
    if (!fault.empty()) {
        error = fault;
    } else if (readBody({opening + 1, lines.end()}, settings, score, error)) {
        return score;
    }
    return std::nullopt;
}

} // namespace volvelle
