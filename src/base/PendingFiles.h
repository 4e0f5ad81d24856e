#pragma once

#include <string>
#include <string_view>

// The temporary files that are being written, so that a program that ends at once leaves none behind.
namespace volvelle {

// A name that no other call in this process gives: ".volvelle-", process, number, `ending`. [any]
std::string temporaryFileName(std::string_view ending);

// Notes a file and returns its place, -1 where no more can be noted. [any]
int rememberPendingFile(const std::string& path);

// Takes it out again; -1 is nothing. [any]
void forgetPendingFile(int place);

// Removes all files that are noted. [any] In signal handlers too.
void removePendingFiles();

} // namespace volvelle
