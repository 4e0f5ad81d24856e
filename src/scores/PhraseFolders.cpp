#include "scores/PhraseFolders.h"

#include "base/Text.h"
#include "scores/ScoreKind.h"
#include "scores/ScoreWriter.h"
#include "services/files/FileExchange.h"
#include "services/files/FileFailure.h"
#include "services/files/NewFile.h"
#include "services/files/SafeFile.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <set>
#include <system_error>

namespace volvelle {

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

std::optional<Bytes> standing(const fs::path& file)
{
    std::error_code unknown;
    Bytes bytes;
    return fs::is_regular_file(file, unknown) && readFile(file, bytes) == noErr ? std::optional(bytes)
                                                                                : std::nullopt;
}

// Fails with a line about the first thing in the way of folders and phrases.
Result<> checkPlaces(const fs::path& out, const std::vector<CompiledPhrase>& phrases)
{
    std::error_code unknown;
    if (out.empty()) {
        return failure(writeFailure(out, ENOENT));
    }
    for (const ScoreKind kind : allScoreKinds) {
        const fs::path folder = phraseFolder(kind);
        for (const fs::path& step : {out, out / folder.parent_path(), out / folder}) {
            if (fs::exists(fs::symlink_status(step, unknown)) && !fs::is_directory(step, unknown)) {
                return failure(concat("'", step.string(), "' is no folder"));
            }
        }
    }
    for (const CompiledPhrase& phrase : phrases) {
        const fs::path file = out / phrase.place;
        if (fs::is_symlink(file, unknown)) {
            return failure(concat("'", file.string(), "' is a link"));
        }
        if (fs::exists(file, unknown) && !fs::is_regular_file(file, unknown)) {
            return failure(concat("'", file.string(), "' is no file"));
        }
        if (fs::exists(file, unknown) && !isWritable(file)) {
            return failure(writeFailure(file, EACCES));
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

bool isPhraseName(const std::string& name)
{
    constexpr std::size_t mostDigits = 6;
    const auto digits = std::min(name.find_first_not_of("0123456789"), name.size());
    return digits > 0 && digits <= mostDigits && name == phraseName(std::stoi(name.substr(0, digits)));
}

// The compiled phrases past the last one of each folder.
std::vector<fs::path> thatAreBeyond(const fs::path& out, const std::vector<CompiledPhrase>& phrases)
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
    std::erase_if(beyond, [](const fs::path& path) {
        std::error_code unknown;
        const auto bytes = fs::is_symlink(path, unknown) ? std::nullopt : standing(path);
        return !bytes || !isCompiledPhrase(*bytes);
    });
    return beyond;
}

Result<> exchange(FileExchange& files, const fs::path& out, const std::vector<const CompiledPhrase*>& changed,
                  const std::vector<fs::path>& beyond)
{
    Result<> done;
    for (const ScoreKind kind : allScoreKinds) {
        done = done ? files.makeFolder(out / phraseFolder(kind)) : done;
    }
    for (const CompiledPhrase* phrase : changed) {
        done = done ? files.put(out / phrase->place, phrase->bytes) : done;
    }
    for (const fs::path& file : beyond) {
        done = done ? files.remove(file) : done;
    }
    return done ? files.carryOut() : done;
}

} // namespace

std::string phraseName(int number)
{
    const auto digits = text(number);
    return std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits + ".mid";
}

bool installPhrases(const fs::path& out, const std::vector<CompiledPhrase>& phrases, LibraryReport& report,
                    const std::function<void()>& tellWaiting)
{
    FileExchange files;
    Result<> done = checkPlaces(out, phrases);
    done = done ? files.lock(out, tellWaiting) : done;
    done = done ? checkPlaces(out, phrases) : done; // again, as it may have waited
    if (done) {
        const auto changed = thatDiffer(out, phrases);
        const auto beyond = thatAreBeyond(out, phrases);
        done = exchange(files, out, changed, beyond);
        report.changed = static_cast<int>(changed.size());
        report.removed = static_cast<int>(beyond.size());
    }
    if (!done) {
        report = {};
        report.errors.push_back(done.error());
    }
    return static_cast<bool>(done);
}

} // namespace volvelle
