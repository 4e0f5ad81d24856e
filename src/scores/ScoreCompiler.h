#pragma once

#include "scores/LibraryReport.h"

#include <filesystem>
#include <functional>

namespace volvelle {

// Compiles the five folders of `scores` into the folders of phrases below `out`, which are made where they
// are missing: "001.mid" upward, in the order of the scores' numbers. MIDI files may stand among the scores.
// Unless each folder holds scores and all of them compile, nothing changes in `out`; see installPhrases() for
// what does. True if there was no error. [any]
bool compileLibrary(const std::filesystem::path& scores, const std::filesystem::path& out,
                    LibraryReport& report, const std::function<void()>& tellWaiting = {});

} // namespace volvelle
