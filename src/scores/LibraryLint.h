#pragma once

#include "scores/LintReport.h"
#include "scores/PhraseCompany.h"

#include <filesystem>

// The rules of library/README.md. [any]
namespace volvelle {

// Holds all rules against a folder of folders of scores: those of each score, see lintScore(), lintPhrase()
// and lintMeasure(), the names and numbers of the files, titles that stand once, phrases that are struck
// alike, and what each folder wants of its phrases together. Of the five folders some may be missing. Phrases
// are measured against the chord patterns and the drums of the folder, and where it has none of them against
// those of `elsewhere`.
LintReport lintLibrary(const std::filesystem::path& library, const PhraseCompany& elsewhere = {});

// Holds the rules of one score against a file, and its number, its title and the places where it is struck
// against those of the library around it. Its folder tells its kind; a link elsewhere is followed.
LintReport lintScoreFile(const std::filesystem::path& file, const PhraseCompany& elsewhere = {});

} // namespace volvelle
