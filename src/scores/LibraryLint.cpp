#include "scores/LibraryLint.h"

#include "base/Text.h"
#include "scores/LibraryRules.h"
#include "scores/ScoreFile.h"

#include <algorithm>
#include <optional>
#include <span>
#include <system_error>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

std::string nameForm(const fs::path& file)
{
    return isMIDIFile(file) ? "a MIDI file among scores is called NNN-some-name.mid"
                            : "a score is called NNN-some-name.score";
}

class LibraryLinter {
public:
    LibraryLinter(const fs::path& folder, const PhraseCompany& elsewhere) : rules(elsewhere), library(folder)
    {
    }

    LibraryRules rules;

    void readFolder(ScoreKind kind);
    void lintFolderOf(ScoreKind kind);
    void lintFile(const fs::path& file, ScoreKind kind);
    void lintNumber(const fs::path& file, const fs::path& place);

    LintReport report() const { return {scores, rules.faults}; }

private:
    void lintNames(const fs::path& folder);
    void lintNumbers(const std::vector<fs::path>& files);
    void holdNumber(const fs::path& file, int number, int expected);

    const fs::path library;
    int scores = 0; // that were looked at
};

// Keeps what can be read; faults are told later.
void LibraryLinter::readFolder(ScoreKind kind)
{
    const auto files = scoresIn(library / scoreFolder(kind));
    for (const fs::path& file : files ? *files : std::vector<fs::path>()) {
        if (const auto score = readScore(file, kind)) {
            rules.read[kind].push_back({file, *score});
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
        rules.add(folder, files ? noScores : files.error());
        return;
    }
    lintNames(folder);
    lintNumbers(*files);
    const std::span<const PlacedScore> known = rules.read[kind];
    auto own = known.begin();
    for (const fs::path& file : *files) {
        ++scores;
        if (own != known.end() && own->file == file) {
            rules.hold(*own, {known.begin(), own});
            ++own;
        } else {
            rules.add(file, readScore(file, kind).error());
        }
    }
    rules.holdFolder(folder, known, kind);
}

// One score, against all others around it.
void LibraryLinter::lintFile(const fs::path& file, ScoreKind kind)
{
    ++scores;
    const auto score = readScore(file, kind);
    if (!score) {
        rules.add(file, score.error());
        return;
    }
    for (auto& [other, around] : rules.read) {
        std::erase_if(around, [&](const PlacedScore& beside) {
            std::error_code unknown;
            return fs::equivalent(beside.file, file, unknown);
        });
        std::ranges::for_each(around, [this](const PlacedScore& beside) { rules.noteTitle(beside); });
    }
    rules.hold({file, *score}, rules.read[kind]);
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
        rules.add(path, nameForm(path));
    }
}

void LibraryLinter::lintNumbers(const std::vector<fs::path>& files)
{
    int expected = 1;
    for (const fs::path& file : files) {
        if (const auto number = scoreNumber(file)) {
            holdNumber(file, *number, expected);
            expected = *number + 1;
        }
    }
}

// The number of a score in `place`, against those beside it.
void LibraryLinter::lintNumber(const fs::path& file, const fs::path& place)
{
    const auto number = scoreNumber(place);
    const auto files = scoresIn(place.parent_path());
    int expected = 1;
    bool isThere = false;
    for (const fs::path& beside : files ? *files : std::vector<fs::path>()) {
        const bool isOwn = beside.filename() == place.filename();
        const auto other = isOwn ? std::nullopt : scoreNumber(beside);
        isThere = isThere || isOwn;
        expected = other && other <= number ? *other + 1 : expected;
    }
    if (number && isThere) {
        holdNumber(file, *number, expected);
    }
}

void LibraryLinter::holdNumber(const fs::path& file, int number, int expected)
{
    if (number != expected) {
        rules.add(file,
                  concat("the number ", number, number < expected ? " stands twice, " : " leaves a gap, ",
                         expected, " is the next"));
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
    linter.rules.begin();
    for (const ScoreKind kind : allScoreKinds) {
        linter.lintFolderOf(kind);
    }
    return linter.report();
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
        linter.rules.add(file, concat("a score lies in one of the folders ", scoreFolders()));
        return linter.report();
    }
    if (!scoreNumber(place)) {
        linter.rules.add(file, nameForm(file));
    }
    for (const ScoreKind beside : allScoreKinds) {
        linter.readFolder(beside);
    }
    linter.rules.begin();
    linter.lintNumber(file, place);
    linter.lintFile(file, *kind);
    return linter.report();
}

} // namespace volvelle
