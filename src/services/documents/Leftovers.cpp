#include "services/documents/Leftovers.h"

#include "base/Console.h"
#include "base/PendingFiles.h"
#include "base/PlainText.h"
#include "services/documents/NSFileVersion.h"
#include "services/files/FileFailure.h"
#include "services/files/MoveFile.h"
#include "services/files/SafeFile.h"

#include <cerrno>
#include <climits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view newEnding = ".tmp";
constexpr std::string_view replacedEnding = ".replaced";

struct Leftover {
    bool isReplaced = false;
    std::string name;   // of the file that it stood for; empty where it does not tell
    std::string ending; // what follows process and number
};

std::optional<Leftover> leftoverOf(std::string_view file)
{
    const std::optional<std::string_view> ending = endingLeftBehind(file);
    if (ending == newEnding) {
        return Leftover{false, "", std::string(newEnding)};
    }
    if (!ending || !ending->ends_with(replacedEnding)) {
        return std::nullopt;
    }
    std::string_view name = ending->substr(0, ending->size() - replacedEnding.size());
    if (!name.empty() && name.front() != '-') {
        return std::nullopt;
    }
    name.remove_prefix(name.empty() ? 0 : 1);
    return Leftover{true, std::string(name), std::string(*ending)};
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

std::string ownName(const Leftover& leftover)
{
    const std::string name = temporaryFileName(leftover.ending);
    return name.size() > NAME_MAX ? temporaryFileName(replacedEnding) : name;
}

// It has a name of this process first: one process alone looks after it, and none that could not remove it.
void lookAfter(const fs::path& file, const Leftover& leftover)
{
    const fs::path folder = file.parent_path();
    fs::path own;
    int taken = EEXIST;
    while (taken == EEXIST) {
        own = folder / ownName(leftover);
        taken = moveFile(file, own);
    }
    if (taken != 0) {
        return;
    }
    const fs::path place = leftover.name.empty() ? file : folder / leftover.name;
    if (!leftover.isReplaced || keep(own, place)) {
        unlink(own.c_str());
        if (leftover.isReplaced && leftover.name.empty()) {
            safeprint("keepLeftovers() : '", plainLine(file.string()), "' is kept as a version.");
        }
    } else if (const int failed = moveFile(own, file); failed != 0) {
        safeprint("keepLeftovers() : ", writeFailure(file, failed));
    }
}

} // namespace

void keepLeftovers(const fs::path& folder)
{
    std::error_code error;
    std::vector<std::pair<fs::path, Leftover>> found;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const auto leftover = leftoverOf(entry->path().filename().native());
        std::error_code unknown;
        if (leftover && fs::is_regular_file(entry->symlink_status(unknown))) {
            found.emplace_back(entry->path(), *leftover);
        }
    }
    for (const auto& [file, leftover] : found) {
        lookAfter(file, leftover);
    }
}

} // namespace volvelle
