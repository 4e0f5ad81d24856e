#include "services/documents/Leftovers.h"

#include "base/Console.h"
#include "base/PendingFiles.h"
#include "services/documents/NSFileVersion.h"
#include "services/files/FileFailure.h"
#include "services/files/MoveFile.h"
#include "services/files/SafeFile.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view prefix = ".volvelle-";
constexpr std::string_view newEnding = ".tmp";
constexpr std::string_view replacedEnding = ".replaced";

struct Leftover {
    bool isReplaced = false;
    std::string name;   // of the file that it stood for; empty where it does not tell
    std::string ending; // what follows process and number
};

bool hasEnded(pid_t process)
{
    return process > 0 && kill(process, 0) != 0 && errno == ESRCH;
}

// Takes a number from the front of a text, -1 where none stands there.
int takeNumber(std::string_view& text)
{
    int number = -1;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end.ptr - text.data()));
    return end.ec == std::errc() ? number : -1;
}

bool takePrefix(std::string_view& text, std::string_view wanted)
{
    const bool isThere = text.starts_with(wanted);
    text.remove_prefix(isThere ? wanted.size() : 0);
    return isThere;
}

std::optional<Leftover> leftoverOf(std::string_view name)
{
    if (!takePrefix(name, prefix) || !hasEnded(takeNumber(name)) || !takePrefix(name, "-") ||
        takeNumber(name) < 0) {
        return std::nullopt;
    }
    const std::string ending(name);
    if (name == newEnding) {
        return Leftover{false, "", ending};
    }
    if (!name.ends_with(replacedEnding)) {
        return std::nullopt;
    }
    name.remove_suffix(replacedEnding.size());
    if (!name.empty() && !takePrefix(name, "-")) {
        return std::nullopt;
    }
    return Leftover{true, std::string(name), ending};
}

// Who died right after it had made the version left the file as well.
bool isKept(const fs::path& place, const std::vector<std::uint8_t>& bytes)
{
    const auto versions = NSFileVersion::unresolvedConflictVersionsOfItemAtURL(place);
    std::vector<std::uint8_t> newest;
    return versions && !versions->empty() && readFile(versions->back()->url(), newest) == noErr &&
           newest == bytes;
}

bool keep(const fs::path& file, const fs::path& place)
{
    std::vector<std::uint8_t> bytes;
    return readFile(file, bytes) == noErr &&
           (isKept(place, bytes) || NSFileVersion::addVersionOfItemAtURL(place, bytes));
}

// It has a name of this process first: one process alone looks after it, and none that could not remove it.
void lookAfter(const fs::path& file, const Leftover& leftover)
{
    const fs::path folder = file.parent_path();
    const fs::path own = folder / temporaryFileName(leftover.ending);
    if (moveFile(file, own) != 0) {
        return;
    }
    const fs::path place = leftover.name.empty() ? file : folder / leftover.name;
    if (!leftover.isReplaced || keep(own, place)) {
        unlink(own.c_str());
    } else if (const int failed = moveFile(own, file); failed != 0) {
        safeprint("keepLeftovers() : ", writeFailure(file, failed));
    }
}

} // namespace

void keepLeftovers(const fs::path& folder)
{
    std::error_code error;
    std::vector<fs::path> files;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (entry->path().filename().native().starts_with(prefix)) {
            files.push_back(entry->path());
        }
    }
    for (const fs::path& file : files) {
        const auto leftover = leftoverOf(file.filename().native());
        if (leftover && fs::is_regular_file(fs::symlink_status(file, error))) {
            lookAfter(file, *leftover);
        }
    }
}

} // namespace volvelle
