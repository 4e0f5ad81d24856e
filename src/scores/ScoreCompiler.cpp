#include "scores/ScoreCompiler.h"

#include "base/Text.h"
#include "scores/PhraseFolders.h"
#include "scores/ScoreFile.h"
#include "scores/ScoreWriter.h"

namespace volvelle {

namespace {

namespace fs = std::filesystem;

void compileFolder(const fs::path& scores, ScoreKind kind, std::vector<CompiledPhrase>& phrases,
                   LibraryReport& report)
{
    const fs::path folder = scores / scoreFolder(kind);
    std::error_code unknown;
    if (!fs::exists(folder, unknown)) {
        report.errors.push_back(concat(scoreFolder(kind), ": there is no such folder: all five are needed"));
        return;
    }
    const auto paths = scoresIn(folder);
    if (!paths || paths->empty()) {
        report.errors.push_back(concat(scoreFolder(kind), ": ", paths ? noScores : paths.error()));
        return;
    }
    int number = 0;
    for (const auto& path : *paths) {
        const auto place = fs::path(phraseFolder(kind)) / phraseName(++number);
        const auto score = readScore(path, kind);
        const auto bytes =
            score ? scoreToMIDI(*score) : Result<std::vector<std::uint8_t>>(failure(score.error()));
        if (bytes) {
            phrases.push_back({place, *bytes});
        } else {
            report.errors.push_back(
                concat(scoreFolder(kind), "/", path.filename().string(), ": ", bytes.error()));
        }
    }
}

} // namespace

bool compileLibrary(const fs::path& scores, const fs::path& out, LibraryReport& report,
                    const std::function<void()>& tellWaiting)
{
    if (!holdsScoreFolders(scores)) {
        report.errors.push_back(
            concat("'", scores.string(), "' holds no folder of scores: ", scoreFolders()));
        return false;
    }
    std::vector<CompiledPhrase> phrases;
    for (const auto kind : allScoreKinds) {
        compileFolder(scores, kind, phrases, report);
    }
    if (!report.errors.empty() || !installPhrases(out, phrases, report, tellWaiting)) {
        return false;
    }
    report.compiled = static_cast<int>(phrases.size());
    return true;
}

} // namespace volvelle
