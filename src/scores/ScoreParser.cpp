#include "scores/ScoreParser.h"

#include "scores/PitchNames.h"
#include "scores/ScoreBody.h"
#include "scores/ScoreText.h"

#include <set>

namespace volvelle {

namespace {

using namespace scores;

class HeaderReader {
public:
    HeaderReader(Score& score, ScoreSettings& settings) : score(score), settings(settings) {}

    bool read(const ScoreLine& line, std::string& error);

private:
    std::string take(std::string_view key, std::string_view value);
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
    } else if (value.empty()) {
        fault = quoted(key) + " has no value";
    } else if (!seen.emplace(key).second) {
        fault = quoted(key) + " stands twice";
    } else {
        fault = take(key, value);
    }
    if (!fault.empty()) {
        error = atLine(line.number) + fault;
    }
    return fault.empty();
}

std::string HeaderReader::take(std::string_view key, std::string_view value)
{
    const bool pattern = score.kind == ScoreKind::chordPattern;
    if (key == "title") {
        score.title = value;
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

std::string bodyLine(ScoreKind kind)
{
    return std::string(scoreBodyWord(kind)) + ":";
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

} // namespace

std::optional<Score> parseScore(std::string_view text, ScoreKind kind, std::string& error)
{
    Score score;
    score.kind = kind;
    ScoreSettings settings;
    HeaderReader header(score, settings);
    const auto lines = scoreLines(text);
    auto line = lines.begin();
    for (; line != lines.end() && !opensBody(line->text); ++line) {
        if (!header.read(*line, error)) {
            return std::nullopt;
        }
    }
    if (line == lines.end()) {
        error = "the body is missing: there is no line \"" + bodyLine(kind) + "\"";
    } else if (line->text != bodyLine(kind)) {
        error = atLine(line->number) + "the body opens with \"" + bodyLine(kind) + "\", not " +
                quoted(line->text);
    } else if (score.title.empty()) {
        error = "the title is missing";
    } else if (score.style.empty()) {
        error = "the style is missing";
    } else if (readBody({line + 1, lines.end()}, settings, score, error)) {
        return score;
    }
    return std::nullopt;
}

} // namespace volvelle
