#include "app/control/DocumentFolder.h"

#include "app/control/LocalizedName.h"
#include "base/Checked.h"
#include "base/PlainText.h"
#include "base/Text.h"
#include "services/files/FileFailure.h"
#include "services/files/FileNames.h"
#include "services/files/MoveFile.h"
#include "services/files/NewFile.h"
#include "services/files/SafeFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <tuple>
#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr int mostNumbers = 100'000; // of files with one name

Failure notWritten(const fs::path& file, int error)
{
    return failure(plainLine(writeFailure(file, error)));
}

// The names of a folder's documents without their endings.
std::set<std::string> namesIn(const fs::path& folder)
{
    std::set<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (isMIDIFileName(entry->path())) {
            names.insert(entry->path().stem().string());
        }
    }
    return names;
}

// Puts a file at `wanted` or the next free number of it: `put` answers 0 or the system's number.
template <class Put>
Result<fs::path> putFree(const fs::path& wanted, Put put)
{
    const std::set<std::string> names = namesIn(wanted.parent_path());
    for (int number = 1; number <= mostNumbers; ++number) {
        fs::path file = numberedFile(wanted, number);
        const bool isTaken = names.contains(file.stem().string()) || isNameTaken(file);
        const int failed = isTaken ? EEXIST : put(file);
        if (failed == 0) {
            return file;
        }
        if (failed != EEXIST) {
            return notWritten(file, failed);
        }
    }
    return notWritten(wanted, EEXIST);
}

// `wanted`, or the next free number of it where something has that name.
fs::path freePlace(const fs::path& wanted)
{
    const std::set<std::string> names = namesIn(wanted.parent_path());
    fs::path file = wanted;
    for (int number = 2; number <= mostNumbers && isNameTaken(file); ++number) {
        const fs::path next = numberedFile(wanted, number);
        file = names.contains(next.stem().string()) ? file : next;
    }
    return file;
}

Result<fs::path> copyFree(const fs::path& from, const fs::path& wanted)
{
    std::vector<std::uint8_t> bytes;
    if (readFile(from, bytes) != noErr) {
        return failure(concat("'", shownName(from), "' could not be read."));
    }
    return putFree(wanted, [&bytes](const fs::path& file) { return putFile(file, bytes, false); });
}

constexpr const char* tooLong = "The name is too long.";

bool isTooLong(const fs::path& file)
{
    return file.filename().native().size() > NAME_MAX;
}

std::string notThere(const fs::path& file)
{
    return concat("'", shownName(file), "' is not there any more.");
}

// A name that begins with a point would not be listed.
std::string visibleName(const fs::path& file)
{
    const std::string name = file.filename().string();
    const std::size_t letters = std::min(name.find_first_not_of('.'), name.size());
    const std::string rest = name.substr(letters);
    const bool isEnding = letters > 0 && rest.find('.') == std::string::npos && isMIDIFileName("a." + rest);
    return rest.empty() || isEnding ? "New MIDI Idea.mid" : rest;
}

// Of spaces and of what is not seen alone, or of nothing.
bool isBlank(std::string_view name)
{
    static constexpr auto blanks = std::to_array<std::string_view>(
        {" ",      "\t",     "\n",     "\v",     "\f",     "\r",     "\u00A0", "\u00AD", "\u1680", "\u180E",
         "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008", "\u2009",
         "\u200A", "\u200B", "\u200C", "\u200D", "\u2028", "\u202F", "\u205F", "\u2060", "\u3000", "\uFEFF"});
    const auto* blank = blanks.begin();
    while (!name.empty() && blank != blanks.end()) {
        blank = std::ranges::find_if(blanks, [&](std::string_view one) { return name.starts_with(one); });
        name.remove_prefix(blank == blanks.end() ? 0 : blank->size());
    }
    return name.empty();
}

std::string refusalOf(const std::string& name)
{
    if (isBlank(name)) {
        return "A name needs at least one letter.";
    }
    if (name.front() == '.') {
        return "A name cannot begin with a point.";
    }
    return "";
}

} // namespace

DocumentFolder::DocumentFolder(fs::path folder, std::shared_ptr<TrashCan> trash)
    : folder(std::move(folder)), trash(std::move(trash))
{
}

std::vector<FolderDocument> DocumentFolder::documents() const
{
    std::vector<FolderDocument> found;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const fs::path& file = entry->path();
        struct stat status{};
        if (isMIDIFileName(file) && file.filename().native().front() != '.' &&
            stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
            found.push_back({file, shownName(file), status.st_mtime, status.st_size, status.st_mtim.tv_nsec});
        }
    }
    std::ranges::sort(found, [](const FolderDocument& a, const FolderDocument& b) {
        return std::tie(b.modified, b.nanoseconds, a.location) <
               std::tie(a.modified, a.nanoseconds, b.location);
    });
    return found;
}

bool DocumentFolder::contains(const fs::path& file) const
{
    std::error_code error;
    return fs::equivalent(folderOf(file), folder, error);
}

Result<fs::path> DocumentFolder::takeCopy(const fs::path& file) const
{
    fs::path wanted = folder / visibleName(file);
    if (!isMIDIFileName(wanted)) {
        wanted += ".mid";
    }
    if (isTooLong(wanted)) {
        return failure(tooLong);
    }
    if (auto made = makeFolder(); !made) {
        return failure(made.error());
    }
    return copyFree(file, wanted);
}

Result<fs::path> DocumentFolder::takeMove(const fs::path& file) const
{
    if (auto made = makeFolder(); !made) {
        return failure(made.error());
    }
    if (!isNameTaken(file)) {
        return failure(notThere(file));
    }
    return putFree(folder / file.filename(), [&file](const fs::path& to) { return moveFile(file, to); });
}

Result<fs::path> DocumentFolder::duplicate(const fs::path& file) const
{
    return copyFree(file, file);
}

Result<fs::path> DocumentFolder::rename(const fs::path& file, const std::string& typed) const
{
    if (typed == shownName(file)) {
        return file;
    }
    if (typed.find('/') != std::string::npos || typed.find('\0') != std::string::npos) {
        return failure("A name cannot hold a slash.");
    }
    const bool hasEnding = isMIDIFileName(typed) && fs::path(typed).has_stem();
    const std::string name = hasEnding ? fs::path(typed).stem().string() : typed;
    if (const std::string refusal = refusalOf(name); !refusal.empty()) {
        return failure(refusal);
    }
    fs::path to = file.parent_path() / concat(name, file.extension().string());
    if (to == file) {
        return to;
    }
    if (isTooLong(to)) {
        return failure(tooLong);
    }
    if (!isNameTaken(file)) {
        return failure(notThere(file));
    }
    const bool isTaken = name != file.stem() && namesIn(file.parent_path()).contains(name);
    const int failed = isTaken ? EEXIST : moveFile(file, to);
    if (failed == EEXIST) {
        return failure(concat("There is already an idea called '", plainLine(name), "'."));
    }
    if (failed != 0) {
        return notWritten(to, failed);
    }
    return to;
}

Result<> DocumentFolder::moveToTrash(const fs::path& file)
{
    auto place = required(trash).take(file);
    if (!place) {
        return failure(place.error());
    }
    removed.push_back({file, *place});
    return {};
}

Result<fs::path> DocumentFolder::restore()
{
    if (removed.empty()) {
        return failure("There is nothing to bring back.");
    }
    const Removed last = removed.back();
    if (auto made = makeFolder(); !made) {
        return failure(made.error());
    }
    const fs::path to = freePlace(last.file);
    const auto restored = required(trash).restore(last.place, to);
    if (std::error_code error; restored || !fs::exists(last.place, error)) {
        removed.pop_back();
    }
    return restored ? Result<fs::path>(to) : failure(restored.error());
}

Result<> DocumentFolder::makeFolder() const
{
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        return failure(concat("The folder '", plainLine(utf8Text(folder.string())), "' could not be made."));
    }
    return {};
}

} // namespace volvelle
