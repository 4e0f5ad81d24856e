#include "scores/ScoreCompiler.h"

#include "base/Text.h"
#include "scores/ScoreParser.h"
#include "scores/ScoreWriter.h"
#include "services/files/SafeFile.h"

#include <algorithm>
#include <optional>
#include <system_error>

namespace volvelle {

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

bool compile(const fs::path& in, const fs::path& out, ScoreKind kind, bool& changed, std::string& error)
{
    Bytes words;
    if (readFile(in, words) != noErr) {
        error = "the score cannot be read";
        return false;
    }
    const auto score = parseScore(std::string(words.begin(), words.end()), kind, error);
    const auto phrase = score ? scoreToMIDI(*score, error) : std::nullopt;
    if (!phrase) {
        return false;
    }
    Bytes standing;
    changed = readFile(out, standing) != noErr || standing != *phrase;
    if (!changed || replaceFile(out, *phrase, true) == noErr) {
        return true;
    }
    error = concat(out.filename().string(), " cannot be written");
    return false;
}

std::vector<fs::path> scoresIn(const fs::path& folder, std::string& error)
{
    std::vector<fs::path> paths;
    std::error_code status;
    for (fs::directory_iterator entry(folder, status), end; !status && entry != end;
         entry.increment(status)) {
        if (entry->path().extension() == ".score") {
            paths.push_back(entry->path());
        }
    }
    if (status) {
        error = "the folder cannot be read";
    }
    std::ranges::sort(paths, {}, [](const fs::path& path) { return path.filename().string(); });
    return paths;
}

std::optional<int> phraseNumber(const std::string& name)
{
    constexpr std::size_t mostDigits = 6;
    const auto digits = std::min(name.find_first_not_of("0123456789"), name.size());
    if (digits == 0 || digits > mostDigits || name.substr(digits) != ".mid") {
        return std::nullopt;
    }
    const int number = std::stoi(name.substr(0, digits));
    return phraseName(number) == name ? std::optional(number) : std::nullopt;
}

int removeBeyond(const fs::path& folder, int last)
{
    std::vector<fs::path> beyond;
    std::error_code status;
    for (fs::directory_iterator entry(folder, status), end; !status && entry != end;
         entry.increment(status)) {
        if (phraseNumber(entry->path().filename().string()).value_or(last) > last) {
            beyond.push_back(entry->path());
        }
    }
    return static_cast<int>(std::ranges::count_if(beyond, [](const fs::path& path) {
        std::error_code ignored;
        return fs::remove(path, ignored);
    }));
}

void compileFolder(const fs::path& from, const fs::path& to, ScoreKind kind, LibraryReport& report)
{
    std::string error;
    const auto paths = scoresIn(from, error);
    if (!error.empty()) {
        report.errors.push_back(concat(scoreFolder(kind), ": ", error));
        return;
    }
    int number = 0;
    for (const auto& path : paths) {
        bool changed = false;
        if (compile(path, to / phraseName(++number), kind, changed, error)) {
            ++report.compiled;
            report.changed += changed ? 1 : 0;
        } else {
            report.errors.push_back(concat(scoreFolder(kind), "/", path.filename().string(), ": ", error));
        }
    }
    report.removed += removeBeyond(to, number);
}

} // namespace

std::string phraseName(int number)
{
    const auto digits = text(number);
    return std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits + ".mid";
}

bool compileScore(const fs::path& in, const fs::path& out, ScoreKind kind, std::string& error)
{
    bool changed = false;
    return compile(in, out, kind, changed, error);
}

bool compileLibrary(const fs::path& scores, const fs::path& out, LibraryReport& report)
{
    for (const auto kind : allScoreKinds) {
        const auto to = out / phraseFolder(kind);
        std::error_code status;
        fs::create_directories(to, status);
        if (status) {
            report.errors.push_back(concat(phraseFolder(kind), ": the folder cannot be made"));
        } else {
            compileFolder(scores / scoreFolder(kind), to, kind, report);
        }
    }
    return report.errors.empty();
}

} // namespace volvelle
