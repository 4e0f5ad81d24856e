#pragma once

#include <optional>
#include <string>
#include <string_view>

// The temporary files that are being written, and folders of such files, so that a program that ends at once
// leaves none behind.
namespace volvelle {

// A name that no other call in this process gives: ".volvelle-", process, number, `ending`. [any]
std::string temporaryFileName(std::string_view ending);

// The ending of a name that temporaryFileName() gave in a process that is no more, be it one with the number
// of this one; any other name has no value. [any]
std::optional<std::string_view> endingLeftBehind(std::string_view name);
bool isLeftBehind(std::string_view name, std::string_view ending);

// Notes a file or a folder and returns its place, -1 where no more can be noted. [any]
int rememberPendingFile(const std::string& path);

// Takes it out again; -1 is nothing. [any]
void forgetPendingFile(int place);

// So many folders, one in the other, go with one that is noted; one with more in it stays.
inline constexpr int pendingFolderDepth = 8;

// Removes all files that are noted, and the folders with all that stands in them; links are not followed.
// [any] In signal handlers too.
void removePendingFiles();

} // namespace volvelle
