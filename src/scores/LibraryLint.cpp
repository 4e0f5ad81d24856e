#include "scores/LibraryLint.h"

#include "base/Text.h"
#include "scores/ScoreFile.h"
#include "scores/ScoreLint.h"
#include "scores/ScoreOnsets.h"
#include "scores/ScoreText.h"

#include <algorithm>
#include <map>
#include <optional>
#include <system_error>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr auto nameForm = "a score is called NNN-some-name.score";

int fewOnsets(ScoreKind kind)
{
    return kind == ScoreKind::drums ? 5 : 2;
}

bool hasNearlyEmptyBar(const Score& score)
{
    for (int bar = 1; bar <= Score::bars; ++bar) {
        if (std::ssize(scores::onsets(score, bar)) <= fewOnsets(score.kind)) {
            return true;
        }
    }
    return false;
}

bool soundsOnEveryFirstBeat(const Score& score)
{
    for (int bar = 0; bar < Score::bars; ++bar) {
        const double beat = bar * Score::beatsInBar;
        if (std::ranges::none_of(score.notes, [beat](const ScoreNote& note) {
                return note.position <= beat && note.position + note.duration > beat;
            })) {
            return false;
        }
    }
    return true;
}

class LibraryLinter {
public:
    explicit LibraryLinter(const fs::path& folder) : library(folder) {}

    void lintFolder(ScoreKind kind);
    void lintFile(const fs::path& file, ScoreKind kind);
    void readTitlesBeside(const fs::path& file); // below the library

    LintReport report;

private:
    void add(const fs::path& place, const std::string& fault);
    void lintNames(const fs::path& folder);
    void lintNumbers(const std::vector<fs::path>& files);
    void lintTitle(const fs::path& file, const Score& score);
    void readTitle(const fs::path& other, const fs::path& file, ScoreKind kind);
    void lintShares(const fs::path& folder, ScoreKind kind);

    const fs::path library;
    std::map<std::string, fs::path> titles; // with the file that has each
    std::vector<Score> read;                // of the folder at hand
};

void LibraryLinter::lintFolder(ScoreKind kind)
{
    const fs::path folder = library / scoreFolder(kind);
    const auto files = scoresIn(folder);
    if (!files || files->empty()) {
        add(folder, files ? noScores : files.error());
        return;
    }
    read.clear();
    lintNames(folder);
    lintNumbers(*files);
    for (const fs::path& file : *files) {
        lintFile(file, kind);
    }
    lintShares(folder, kind);
}

void LibraryLinter::lintFile(const fs::path& file, ScoreKind kind)
{
    ++report.scores;
    const auto score = readScore(file, kind);
    if (!score) {
        add(file, score.error());
        return;
    }
    for (const std::string& fault : lintScore(*score)) {
        add(file, fault);
    }
    lintTitle(file, *score);
    read.push_back(*score);
}

void LibraryLinter::readTitlesBeside(const fs::path& file)
{
    for (const ScoreKind kind : allScoreKinds) {
        const auto others = scoresIn(library / scoreFolder(kind));
        for (const fs::path& other : others ? *others : std::vector<fs::path>()) {
            readTitle(other, file, kind);
        }
    }
}

// The title of a score unless it is `file`.
void LibraryLinter::readTitle(const fs::path& other, const fs::path& file, ScoreKind kind)
{
    std::error_code unknown;
    if (fs::equivalent(other, file, unknown)) {
        return;
    }
    if (const auto score = readScore(other, kind)) {
        titles.emplace(score->title, other);
    }
}

void LibraryLinter::add(const fs::path& place, const std::string& fault)
{
    report.faults.push_back(concat(place.string(), ": ", fault));
}

void LibraryLinter::lintNames(const fs::path& folder)
{
    std::vector<fs::path> strangers;
    std::error_code status;
    for (fs::directory_iterator entry(folder, status), end; !status && entry != end;
         entry.increment(status)) {
        const fs::path& path = entry->path();
        if (!scoreNumber(path) && !path.filename().string().starts_with(".")) {
            strangers.push_back(path);
        }
    }
    std::ranges::sort(strangers);
    for (const fs::path& path : strangers) {
        add(path, nameForm);
    }
}

void LibraryLinter::lintNumbers(const std::vector<fs::path>& files)
{
    int expected = 1;
    for (const fs::path& file : files) {
        const auto number = scoreNumber(file);
        if (number && *number < expected) {
            add(file, concat("the number ", *number, " stands twice, ", expected, " is the next"));
        } else if (number) {
            if (*number > expected) {
                add(file, concat("the number ", *number, " leaves a gap, ", expected, " is the next"));
            }
            expected = *number + 1;
        }
    }
}

void LibraryLinter::lintTitle(const fs::path& file, const Score& score)
{
    const auto [first, isNew] = titles.emplace(score.title, file);
    if (!isNew) {
        add(file, concat(scores::atLine(score.titleLine), "the title ", scores::quoted(score.title),
                         " stands in ", first->second.string(), ", too: each is used once"));
    }
}

void LibraryLinter::lintShares(const fs::path& folder, ScoreKind kind)
{
    const auto nearlyEmpty = std::ranges::count_if(read, hasNearlyEmptyBar);
    if (kind != ScoreKind::chordPattern && nearlyEmpty < std::ssize(read) / 3) {
        add(folder, concat(nearlyEmpty, " of ", read.size(), " phrases leave one bar nearly empty, with ",
                           fewOnsets(kind), " places that are struck at most: every third does"));
    }
    const auto grounded = std::ranges::count_if(read, soundsOnEveryFirstBeat);
    if (kind == ScoreKind::bass && grounded < std::ssize(read) * 2 / 3) {
        add(folder, concat(grounded, " of ", read.size(),
                           " basses sound on the first beat of every bar: two of three do"));
    }
}

std::optional<ScoreKind> kindByFolder(const fs::path& file)
{
    return scoreKindOf(file.parent_path().filename().string());
}

} // namespace

LintReport lintLibrary(const fs::path& library)
{
    LibraryLinter linter(library);
    for (const ScoreKind kind : allScoreKinds) {
        linter.lintFolder(kind);
    }
    return linter.report;
}

LintReport lintScoreFile(const fs::path& file)
{
    std::error_code unknown;
    const fs::path own = fs::absolute(file, unknown).lexically_normal();
    const fs::path place = kindByFolder(own) ? own : fs::canonical(file, unknown);
    const auto kind = kindByFolder(place);
    const fs::path around = kindByFolder(file) ? file.parent_path().parent_path() : "";
    LibraryLinter linter(around.empty() ? place.parent_path().parent_path() : around);
    if (!kind) {
        linter.report.faults.push_back(
            concat(file.string(), ": a score lies in one of the folders ", scoreFolders()));
        return linter.report;
    }
    if (!scoreNumber(place)) {
        linter.report.faults.push_back(concat(file.string(), ": ", nameForm));
    }
    linter.readTitlesBeside(file);
    linter.lintFile(file, *kind);
    return linter.report;
}

} // namespace volvelle
