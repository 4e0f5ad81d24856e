#include "scores/LibraryLint.h"

#include "base/Text.h"
#include "scores/FolderLint.h"
#include "scores/PhraseBounds.h"
#include "scores/PhraseLint.h"
#include "scores/ScoreFile.h"
#include "scores/ScoreLint.h"
#include "scores/ScoreText.h"

#include <algorithm>
#include <map>
#include <optional>
#include <span>
#include <system_error>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr auto nameForm = "a score is called NNN-some-name.score";

struct ReadScore {
    fs::path file;
    Score score;
};

class LibraryLinter {
public:
    LibraryLinter(const fs::path& folder, const PhraseCompany& elsewhere)
        : library(folder), company(elsewhere)
    {
    }

    void readFolder(ScoreKind kind);
    void measureAgainstOwn();
    void lintFolderOf(ScoreKind kind);
    void lintFile(const fs::path& file, ScoreKind kind);

    LintReport report;

private:
    using Scores = std::vector<ReadScore>;

    void add(const fs::path& place, const std::string& fault);
    void lintNames(const fs::path& folder);
    void lintNumbers(const std::vector<fs::path>& files);
    void lintScoreOf(const ReadScore& read);
    void lintTitle(const ReadScore& read);
    void lintNearest(const ReadScore& read, std::span<const ReadScore> others);
    void addNearest(const ReadScore& read, const ReadScore& nearest, double distance);

    const fs::path library;
    PhraseCompany company;                  // what phrases are measured against
    std::map<std::string, fs::path> titles; // with the first file that has each
    std::map<ScoreKind, Scores> read;
};

// Keeps what can be read; faults are told later.
void LibraryLinter::readFolder(ScoreKind kind)
{
    const auto files = scoresIn(library / scoreFolder(kind));
    for (const fs::path& file : files ? *files : std::vector<fs::path>()) {
        if (const auto score = readScore(file, kind)) {
            read[kind].push_back({file, *score});
        }
    }
}

// Chord patterns and drums of the folder itself stand for those from elsewhere.
void LibraryLinter::measureAgainstOwn()
{
    if (const Scores& patterns = read[ScoreKind::chordPattern]; !patterns.empty()) {
        company.harmonies.clear();
        for (const auto& [file, score] : patterns) {
            company.addPattern(score);
        }
    }
    if (const Scores& drums = read[ScoreKind::drums]; !drums.empty()) {
        company.kicks.clear();
        for (const auto& [file, score] : drums) {
            company.addDrums(score);
        }
    }
}

void LibraryLinter::lintFolderOf(ScoreKind kind)
{
    const fs::path folder = library / scoreFolder(kind);
    std::error_code unknown;
    if (!fs::exists(fs::symlink_status(folder, unknown))) {
        return;
    }
    const auto files = scoresIn(folder);
    if (!files || files->empty()) {
        add(folder, files ? noScores : files.error());
        return;
    }
    lintNames(folder);
    lintNumbers(*files);
    const std::span<const ReadScore> scores = read[kind];
    std::vector<Score> phrases;
    for (const fs::path& file : *files) {
        ++report.scores;
        const auto known = std::ranges::find(scores, file, &ReadScore::file);
        if (known == scores.end()) {
            add(file, readScore(file, kind).error());
            continue;
        }
        lintScoreOf(*known);
        lintTitle(*known);
        lintNearest(*known, scores.first(phrases.size()));
        phrases.push_back(known->score);
    }
    for (const std::string& fault : lintFolder(phrases, kind)) {
        add(folder, fault);
    }
}

// One score, against all others around it.
void LibraryLinter::lintFile(const fs::path& file, ScoreKind kind)
{
    ++report.scores;
    const auto score = readScore(file, kind);
    if (!score) {
        add(file, score.error());
        return;
    }
    for (auto& [other, scores] : read) {
        std::erase_if(scores, [&](const ReadScore& beside) {
            std::error_code unknown;
            return fs::equivalent(beside.file, file, unknown);
        });
        for (const ReadScore& beside : scores) {
            titles.emplace(beside.score.title, beside.file);
        }
    }
    const ReadScore own{file, *score};
    lintScoreOf(own);
    lintTitle(own);
    lintNearest(own, read[kind]);
}

void LibraryLinter::lintScoreOf(const ReadScore& own)
{
    for (const auto& faults :
         {lintScore(own.score), lintPhrase(own.score), lintMeasure(own.score, company)}) {
        for (const std::string& fault : faults) {
            add(own.file, fault);
        }
    }
}

void LibraryLinter::lintNearest(const ReadScore& own, std::span<const ReadScore> others)
{
    const auto places = placesOf(own.score);
    const ReadScore* nearest = nullptr;
    double least = leastDistance;
    for (const ReadScore& other : others) {
        if (own.score.kind == ScoreKind::chordPattern) {
            if (areOnePattern(own.score, other.score)) {
                add(own.file, concat("its chords stand in ", other.file.string(),
                                     " at the same times, up to a transposition"));
                return;
            }
        } else if (const double distance = distanceOf(places, placesOf(other.score)); distance < least) {
            least = distance;
            nearest = &other;
        }
    }
    if (nearest != nullptr) {
        addNearest(own, *nearest, least);
    }
}

void LibraryLinter::addNearest(const ReadScore& own, const ReadScore& nearest, double distance)
{
    const bool isDrums = own.score.kind == ScoreKind::drums;
    add(own.file, concat(isDrums ? "the places of kicks and snares" : "the places where it is struck",
                         " differ from those of ", nearest.file.string(), " in ", percentText(distance),
                         ", at least ", percentText(leastDistance)));
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

void LibraryLinter::lintTitle(const ReadScore& own)
{
    const auto [first, isNew] = titles.emplace(own.score.title, own.file);
    if (!isNew) {
        add(own.file,
            concat(scores::atLine(own.score.titleLine), "the title ", scores::quoted(own.score.title),
                   " stands in ", first->second.string(), ", too: each is used once"));
    }
}

std::optional<ScoreKind> kindByFolder(const fs::path& file)
{
    return scoreKindOf(file.parent_path().filename().string());
}

} // namespace

LintReport lintLibrary(const fs::path& library, const PhraseCompany& elsewhere)
{
    LibraryLinter linter(library, elsewhere);
    for (const ScoreKind kind : allScoreKinds) {
        linter.readFolder(kind);
    }
    linter.measureAgainstOwn();
    for (const ScoreKind kind : allScoreKinds) {
        linter.lintFolderOf(kind);
    }
    return linter.report;
}

LintReport lintScoreFile(const fs::path& file, const PhraseCompany& elsewhere)
{
    std::error_code unknown;
    const fs::path own = fs::absolute(file, unknown).lexically_normal();
    const fs::path place = kindByFolder(own) ? own : fs::canonical(file, unknown);
    const auto kind = kindByFolder(place);
    const fs::path around = kindByFolder(file) ? file.parent_path().parent_path() : "";
    LibraryLinter linter(around.empty() ? place.parent_path().parent_path() : around, elsewhere);
    if (!kind) {
        linter.report.faults.push_back(
            concat(file.string(), ": a score lies in one of the folders ", scoreFolders()));
        return linter.report;
    }
    if (!scoreNumber(place)) {
        linter.report.faults.push_back(concat(file.string(), ": ", nameForm));
    }
    for (const ScoreKind beside : allScoreKinds) {
        linter.readFolder(beside);
    }
    linter.measureAgainstOwn();
    linter.lintFile(file, *kind);
    return linter.report;
}

} // namespace volvelle
