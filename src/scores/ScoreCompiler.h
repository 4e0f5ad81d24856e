#pragma once

#include "scores/LibraryReport.h"
#include "scores/ScoreKind.h"

#include <filesystem>
#include <string>

namespace volvelle {

// The file name of the phrase of that number, from 1: "001.mid". [any thread]
std::string phraseName(int number);

// Reads one score and writes its phrase. The file is written only when its bytes differ, by way of a
// temporary file in the same folder and a rename, so that it is never half written. On failure nothing has
// changed at `out` and `error` holds one plain line. [any thread]
bool compileScore(const std::filesystem::path& in, const std::filesystem::path& out, ScoreKind kind,
                  std::string& error);

// Compiles the five folders of `scores` into the folders of phrases below `out`, which are made where they
// are missing: "001.mid" upward, in the order of the scores' names. A score that fails is reported, its
// number stays its own and a phrase that stood there stays. Numbered phrases beyond the last score are
// removed, nothing else. True if there was no error. [any thread]
bool compileLibrary(const std::filesystem::path& scores, const std::filesystem::path& out,
                    LibraryReport& report);

} // namespace volvelle
