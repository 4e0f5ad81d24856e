#include "services/documents/NSFileVersion.h"

#include "base/Paths.h"
#include "base/PendingFiles.h"
#include "base/Text.h"
#include "services/files/FileFailure.h"
#include "services/files/MoveFile.h"
#include "services/files/SafeFile.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

// The names of files: "conflict 1.mid", "resolved 2.mid", those that are kept "version 1.mid".
constexpr std::string_view conflictName = "conflict ";
constexpr std::string_view resolvedName = "resolved ";
constexpr std::string_view keptName = "version ";

constexpr std::string_view openFolder = "open";
constexpr std::string_view keptFolder = "kept";

fs::path versionsFolder()
{
    const auto state = stateFolder();
    return state ? *state / "versions" : fs::path();
}

// The location without links, below a folder of versions.
fs::path folderFor(const fs::path& url, std::string_view kind)
{
    const fs::path versions = versionsFolder();
    std::error_code error;
    const fs::path location = fs::weakly_canonical(url, error);
    return versions.empty() || error ? fs::path() : versions / kind / location.relative_path();
}

Result<> makeFolder(const fs::path& folder)
{
    const fs::path versions = versionsFolder();
    if (folder.empty()) {
        return failure("There is no folder for versions of files.");
    }
    std::error_code error;
    fs::create_directories(versions.parent_path(), error);
    if (!error && mkdir(versions.c_str(), 0700) != 0 && errno != EEXIST) {
        error.assign(errno, std::system_category());
    }
    if (!error) {
        fs::create_directories(folder, error);
    }
    if (error) {
        return failure(writeFailure(folder, error.value()));
    }
    return {};
}

// 0 for a file that is no version.
int numberOf(const fs::path& file)
{
    const std::string name = file.stem().string();
    int number = 0;
    if (name.starts_with(conflictName) || name.starts_with(resolvedName)) {
        std::from_chars(name.data() + conflictName.size(), name.data() + name.size(), number);
    }
    return number;
}

fs::path named(const fs::path& folder, std::string_view kind, int number, const fs::path& extension)
{
    return folder / concat(kind, number, extension.string());
}

// What a process that died meanwhile was writing.
void removeLeftovers(const fs::path& folder)
{
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (isLeftBehind(entry->path().filename().native(), ".tmp")) {
            unlink(entry->path().c_str());
        }
    }
}

// Moves a version's bytes to a name that is free.
Result<> keep(const fs::path& version, const fs::path& folder)
{
    int failed = EEXIST;
    fs::path kept;
    for (int number = 1; failed == EEXIST; ++number) {
        kept = named(folder, keptName, number, version.extension());
        failed = moveFile(version, kept);
    }
    return failed == 0 ? Result<>() : failure(writeFailure(kept, failed));
}

} // namespace

NSFileVersion::NSFileVersion(fs::path versionPlace, bool resolved)
    : place(std::move(versionPlace)), isResolved(resolved)
{
}

std::optional<NSFileVersion::Versions> NSFileVersion::otherVersionsOfItemAtURL(const fs::path& url)
{
    Versions versions;
    std::error_code error;
    fs::directory_iterator entry(folderFor(url, openFolder), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path& file = entry->path();
        if (numberOf(file) > 0) {
            const bool resolved = file.filename().string().starts_with(resolvedName);
            versions.push_back(std::make_shared<NSFileVersion>(file, resolved));
        }
    }
    if (error && error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory) {
        return std::nullopt;
    }
    std::ranges::stable_sort(versions, {}, [](const auto& version) { return numberOf(version->place); });
    return versions;
}

std::optional<NSFileVersion::Versions>
NSFileVersion::unresolvedConflictVersionsOfItemAtURL(const fs::path& url)
{
    auto versions = otherVersionsOfItemAtURL(url);
    if (versions) {
        std::erase_if(*versions, [](const auto& version) { return version->isResolved; });
    }
    return versions;
}

Result<> NSFileVersion::addVersionOfItemAtURL(const fs::path& url, std::span<const std::uint8_t> bytes)
{
    const fs::path folder = folderFor(url, openFolder);
    if (Result<> made = makeFolder(folder); !made) {
        return made;
    }
    removeLeftovers(folder);
    const auto versions = otherVersionsOfItemAtURL(url);
    int number = versions && !versions->empty() ? numberOf(versions->back()->place) + 1 : 1;
    int error = EEXIST;
    fs::path file;
    for (; error == EEXIST; ++number) {
        file = named(folder, conflictName, number, url.extension());
        error = putFile(file, bytes, false);
    }
    if (error != 0) {
        return failure(writeFailure(file, error));
    }
    return {};
}

Result<> NSFileVersion::removeOtherVersionsOfItemAtURL(const fs::path& url)
{
    const auto versions = otherVersionsOfItemAtURL(url);
    if (!versions) {
        return failure(concat("The versions of '", url.string(), "' could not be read."));
    }
    if (versions->empty()) {
        return {};
    }
    const fs::path folder = keptVersionsOfItemAtURL(url);
    Result<> result = makeFolder(folder);
    for (std::size_t i = 0; result && i < versions->size(); ++i) {
        result = keep((*versions)[i]->place, folder);
    }
    return result;
}

fs::path NSFileVersion::keptVersionsOfItemAtURL(const fs::path& url)
{
    return folderFor(url, keptFolder);
}

void NSFileVersion::setResolved(bool value)
{
    const int number = numberOf(place);
    const fs::path renamed =
        named(place.parent_path(), value ? resolvedName : conflictName, number, place.extension());
    if (value != isResolved && moveFile(place, renamed) == 0) {
        place = renamed;
        isResolved = value;
    }
}

} // namespace volvelle
