#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

// Small conveniences that any layer may use.
namespace volvelle {

// Places of the user's and the program's files, without a value at the start. getPaths() sets the first two.
// [main]
extern std::optional<std::filesystem::path> documentsURL;
extern std::optional<std::filesystem::path> resourcesURL;
extern std::optional<std::filesystem::path> sharedURLAudio;
extern std::optional<std::filesystem::path> sharedURLMIDI;

// Names of capitals, in alphabetical order of their countries.
extern const std::array<std::string_view, 197> capitals;

// True where something stands at the path, whether folder or file; otherwise creates the folder with all its
// parents. A failure is logged and gives false. [any]
bool ensureDirectoryExists(const std::filesystem::path& url);

// Finds the documents and the resources folder, and logs both. [main]
void getPaths();

// The four characters of a code, that of the highest byte first, decoded as MacRoman.
std::string stringValue(std::uint32_t code);

// A name that no other call on any machine gives, after `withPrefix` and "-" where there is a prefix.
// [any]
std::string uniqueName(const std::optional<std::string>& withPrefix);

} // namespace volvelle
