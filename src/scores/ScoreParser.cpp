#include "scores/ScoreParser.h"

#include "base/Text.h"
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
    explicit HeaderReader(Score& score) : score(score) {}

    Result<> read(const ScoreLine& line);

private:
    Result<> take(std::string_view key, std::string_view value, int line);

    Score& score;
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
    } else if (pattern && (key == "from" || key == "dynamics" || key == "machine")) {
        return failure(quoted(key) + " is never heard of a chord pattern: leave it out");
    } else if (key == "machine" && value == "yes") {
        score.machine = true;
    } else if (key == "machine") {
        return failure("\"machine\" is \"yes\" or left out");
    } else if (key == "colour" && value == "yes") {
        score.colour = true;
    } else if (key == "colour") {
        return failure("\"colour\" is \"yes\" or left out");
    } else {
        return failure("the key " + quoted(key) + " is not known here");
    }
    return {};
}

bool opensBody(std::string_view line)
{
    return line == "chords:" || line == "notes:" || line == "drums:";
}

Result<> readBody(const std::vector<ScoreLine>& body, Score& score)
{
    switch (score.kind) {
    case ScoreKind::chordPattern:
        return readChords(body, score);
    case ScoreKind::drums:
        return readDrums(body, score);
    default:
        return readNotes(body, score);
    }
}

Result<> readHeader(const std::vector<ScoreLine>& head, Score& score)
{
    HeaderReader reader(score);
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
    const auto lines = scoreLines(text);
    const auto opening = std::ranges::find_if(lines, opensBody, &ScoreLine::text);
    Result<> read = checkBytes(text);
    if (read) {
        read = readHeader({lines.begin(), opening}, score);
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
        read = readBody({opening + 1, lines.end()}, score);
    }
    return read ? Result<Score>(std::move(score)) : failure(read.error());
}

} // namespace volvelle
