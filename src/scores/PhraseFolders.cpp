#include "scores/PhraseFolders.h"

#include "base/PendingFiles.h"
#include "base/Text.h"
#include "scores/ScoreKind.h"
#include "scores/ScoreWriter.h"
#include "services/files/SafeFile.h"

#include <algorithm>
#include <optional>
#include <set>
#include <system_error>
#include <unistd.h>

namespace volvelle {

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

// A folder of its own below a folder, gone with all that is left in it at the end of its life.
class SideFolder {
public:
    explicit SideFolder(const fs::path& folder) : path(folder / temporaryFileName(".new"))
    {
        std::error_code failed;
        isMade = fs::create_directory(path, failed);
    }

    ~SideFolder()
    {
        std::error_code ignored;
        if (isMade) {
            fs::remove_all(path, ignored);
        }
    }

    SideFolder(const SideFolder&) = delete;
    SideFolder& operator=(const SideFolder&) = delete;

    const fs::path path;
    bool isMade = false;
};

std::optional<Bytes> standing(const fs::path& file)
{
    std::error_code unknown;
    Bytes bytes;
    return fs::is_regular_file(file, unknown) && readFile(file, bytes) == noErr ? std::optional(bytes)
                                                                                : std::nullopt;
}

std::string unwritable(const fs::path& place)
{
    return concat(place.string(), " cannot be written");
}

// A line about the first thing in the way of folders and phrases, empty where there is none.
std::string obstacle(const fs::path& out, const std::vector<CompiledPhrase>& phrases)
{
    std::error_code unknown;
    for (const ScoreKind kind : allScoreKinds) {
        const fs::path folder = phraseFolder(kind);
        for (const fs::path& step : {out, out / folder.parent_path(), out / folder}) {
            if (fs::exists(step, unknown) && !fs::is_directory(step, unknown)) {
                return concat("'", step.string(), "' is no folder");
            }
        }
    }
    for (const CompiledPhrase& phrase : phrases) {
        const fs::path file = out / phrase.place;
        const bool isFree = access(file.c_str(), F_OK) != 0;
        if (!isFree && (!fs::is_regular_file(file, unknown) || access(file.c_str(), W_OK) != 0)) {
            return unwritable(file);
        }
    }
    return {};
}

std::vector<const CompiledPhrase*> thatDiffer(const fs::path& out, const std::vector<CompiledPhrase>& phrases)
{
    std::vector<const CompiledPhrase*> changed;
    for (const CompiledPhrase& phrase : phrases) {
        if (standing(out / phrase.place) != phrase.bytes) {
            changed.push_back(&phrase);
        }
    }
    return changed;
}

std::string sideName(std::size_t index)
{
    return phraseName(static_cast<int>(index) + 1);
}

std::string makeFolders(const fs::path& out)
{
    std::error_code failed;
    for (const ScoreKind kind : allScoreKinds) {
        fs::create_directories(out / phraseFolder(kind), failed);
        if (failed) {
            return concat("'", (out / phraseFolder(kind)).string(), "' cannot be made");
        }
    }
    return {};
}

// Answers a line about what failed, empty where nothing did.
std::string replaceAll(const fs::path& out, const std::vector<const CompiledPhrase*>& changed)
{
    const SideFolder side(out);
    for (std::size_t i = 0; i < changed.size(); ++i) {
        if (!side.isMade || replaceFile(side.path / sideName(i), changed[i]->bytes, false) != noErr) {
            return unwritable(out / changed[i]->place);
        }
    }
    for (std::size_t i = 0; i < changed.size(); ++i) {
        std::error_code failed;
        fs::rename(side.path / sideName(i), out / changed[i]->place, failed);
        if (failed) {
            return unwritable(out / changed[i]->place);
        }
    }
    return {};
}

bool isPhraseName(const std::string& name)
{
    constexpr std::size_t mostDigits = 6;
    const auto digits = std::min(name.find_first_not_of("0123456789"), name.size());
    return digits > 0 && digits <= mostDigits && name == phraseName(std::stoi(name.substr(0, digits)));
}

int removeBeyond(const fs::path& out, const std::vector<CompiledPhrase>& phrases)
{
    std::set<fs::path> kept;
    for (const CompiledPhrase& phrase : phrases) {
        kept.insert(out / phrase.place);
    }
    std::vector<fs::path> beyond;
    for (const ScoreKind kind : allScoreKinds) {
        std::error_code status;
        for (fs::directory_iterator entry(out / phraseFolder(kind), status), end; !status && entry != end;
             entry.increment(status)) {
            if (isPhraseName(entry->path().filename().string()) && !kept.contains(entry->path())) {
                beyond.push_back(entry->path());
            }
        }
    }
    return static_cast<int>(std::ranges::count_if(beyond, [](const fs::path& path) {
        std::error_code ignored;
        const auto bytes = standing(path);
        return bytes && isCompiledPhrase(*bytes) && fs::remove(path, ignored);
    }));
}

} // namespace

std::string phraseName(int number)
{
    const auto digits = text(number);
    return std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits + ".mid";
}

bool installPhrases(const fs::path& out, const std::vector<CompiledPhrase>& phrases, LibraryReport& report)
{
    std::string error = obstacle(out, phrases);
    const auto changed = error.empty() ? thatDiffer(out, phrases) : std::vector<const CompiledPhrase*>();
    if (error.empty()) {
        error = makeFolders(out);
    }
    if (error.empty() && !changed.empty()) {
        error = replaceAll(out, changed);
    }
    if (!error.empty()) {
        report.errors.push_back(error);
        return false;
    }
    report.changed = static_cast<int>(changed.size());
    report.removed = removeBeyond(out, phrases);
    return true;
}

} // namespace volvelle
