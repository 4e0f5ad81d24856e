#include "cli/MissingPhrases.h"

#include "base/Paths.h"
#include "base/Text.h"
#include "phrases/ArrangementTracks.h"
#include "phrases/PhraseLibrary.h"

#include <filesystem>
#include <utility>
#include <vector>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

bool holdsPhrases(const fs::path& folder)
{
    const auto names = namesIn(folder.string());
    std::error_code unknown;
    return names ? countPhrases(*names) > 0 : fs::is_directory(folder, unknown); // who lists it tells why
}

} // namespace

std::string missingPhrases()
{
    const auto resources = resourcesFolder();
    if (!resources) {
        return "The phrases are missing: name the folder that holds Phrases and Phrases2 with --resources "
               "DIR.";
    }
    std::vector<fs::path> missing;
    int folders = 0;
    for (const ArrangementTrack& track : arrangementTracks) {
        folders += track.folder.empty() ? 0 : 1;
        if (!track.folder.empty() && !holdsPhrases(*resources / track.folder)) {
            missing.push_back(*resources / track.folder);
        }
    }
    if (missing.empty()) {
        return "";
    }
    const fs::path place = std::cmp_equal(missing.size(), folders) ? *resources : missing.front();
    return concat("'", place.string(),
                  "' holds no phrases: name a folder that holds Phrases and Phrases2 with --resources DIR.");
}

} // namespace volvelle
