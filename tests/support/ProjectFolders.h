#pragma once

#include <filesystem>

// Where the tests find what they read: the sources of the project, and the folder in which it is built.
namespace volvelle::test {

std::filesystem::path sourceFolder();
std::filesystem::path buildFolder();

} // namespace volvelle::test
