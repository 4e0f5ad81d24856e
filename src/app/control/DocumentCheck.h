#pragma once

#include "base/Result.h"

#include <filesystem>

namespace volvelle {

// Whether a document can be made of a file: that it can be read, and holds a MIDI file with a track. Else one
// plain sentence, which tells of a file that `wasSeen` that it is not there any more. [any]
Result<> checkDocument(const std::filesystem::path& file, bool wasSeen = false);

} // namespace volvelle
