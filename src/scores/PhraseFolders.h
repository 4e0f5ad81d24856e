#pragma once

#include "scores/CompiledPhrase.h"
#include "scores/LibraryReport.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

// The folders of compiled phrases on disk. [any]
namespace volvelle {

// The file name of the phrase of that number, from 1: "001.mid".
std::string phraseName(int number);

// Makes the five folders of phrases below `out` hold these phrases. What differs is written beside them first
// and takes its place once all of it is on disk; numbered phrases past the last one of a folder go, if
// scoreToMIDI wrote them. Nothing else is removed. A link in the place of a phrase is a failure, one in that
// of a folder is followed. While another process does the same to `out` this one waits, and `tellWaiting` is
// told once. On failure nothing has changed, and a line stands in the report.
bool installPhrases(const std::filesystem::path& out, const std::vector<CompiledPhrase>& phrases,
                    LibraryReport& report, const std::function<void()>& tellWaiting = {});

} // namespace volvelle
