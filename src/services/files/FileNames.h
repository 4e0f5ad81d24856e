#pragma once

#include <filesystem>
#include <string>

namespace volvelle {

// The folder that a file stands in by its name: "." where that names none. [any]
std::filesystem::path folderOf(const std::filesystem::path& file);

// What follows the last point of a file's name, with the point and in small letters; empty for none. [any]
std::string fileEnding(const std::filesystem::path& file);

// True for the name of a MIDI file: .mid or .midi, in large letters or small. [any]
bool isMIDIFileName(const std::filesystem::path& file);

// "a/NAME 1.mid" for 1 and so on. Of a long name as many whole letters are kept as there is room for. [any]
std::filesystem::path withNumber(const std::filesystem::path& file, int number);

// "a/NAME.mid" for 1, "a/NAME 2.mid" for 2 and so on. [any]
std::filesystem::path numberedFile(const std::filesystem::path& file, int number);

// True where something has that name, a link that leads nowhere included. [any]
bool isNameTaken(const std::filesystem::path& file);

// True for a pipe, a device, or the name of an open descriptor: it gets bytes whatever its name ends in. Only
// what is there is one. [any]
bool isStream(const std::filesystem::path& path);

} // namespace volvelle
