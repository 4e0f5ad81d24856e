#pragma once

#include "scores/LintReport.h"

#include <filesystem>

// The rules of library/README.md. [any]
namespace volvelle {

// Holds all rules against a folder of the five folders of scores: those of each score, see lintScore(), the
// names and numbers of the files, titles that stand once, bars that are nearly empty and basses on the first
// beat.
LintReport lintLibrary(const std::filesystem::path& library);

// Holds the rules of one score against a file, and its title against those of the library around it. Its
// folder tells its kind; a link elsewhere is followed.
LintReport lintScoreFile(const std::filesystem::path& file);

} // namespace volvelle
