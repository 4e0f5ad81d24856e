#pragma once

#include "inspection/FileDescription.h"

#include <filesystem>
#include <optional>
#include <string>

namespace volvelle {

// The description as JSON:
// {"division","lengthBeats","tempo":[{"position","bpm"}],
//  "tracks":[{"index","channel","name","lengthBeats",
//             "notes":[{"position","duration","number","velocity","releaseVelocity","channel"}],
//             "events":[{"position","type","channel"?,"data","text"?}]}],
//  "chords":[{"position","duration","shortName","longName","notes"}],"warnings":[]}
// A track's channel is null where its events lie on several, or on none.
// Of one of several files it begins with "file", the name.
std::string inspectJSON(const FileDescription& description, const std::optional<std::filesystem::path>& file);

} // namespace volvelle
