#include "phrases/PhraseLibrary.h"

#include "base/Checked.h"
#include "base/Paths.h"
#include "base/Text.h"
#include "phrases/ArrangementTracks.h"

#include <algorithm>
#include <cctype>
#include <ranges>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

bool isMIDIFile(std::string name)
{
    std::ranges::transform(name, name.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return name.ends_with(".MID");
}

Result<> checkFolder(const std::string& folder)
{
    const auto names = namesIn(folder);
    const int count = names ? countPhrases(*names) : 0;
    if (count == 0) {
        return failure(concat("There are no phrases in '", folder, "'."));
    }
    for (const int number : checkedRange(1, count + 1)) {
        const std::string file = concat(folder, phraseNumber(number), ".mid");
        std::error_code error;
        if (!fs::exists(file, error)) {
            return failure(concat("The phrase '", file, "' is missing."));
        }
        if (!fs::is_regular_file(file, error)) {
            return failure(concat("'", file, "' is no file."));
        }
    }
    return {};
}

} // namespace

std::string phraseFolderOf(const ArrangementTrack& track, const std::optional<fs::path>& resources)
{
    return concat(required(resources, implicitNilMessage).string(), "/", track.folder, "/");
}

Result<std::vector<std::string>> namesIn(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    if (error) {
        return failure(listingFailure(folder, error));
    }
    return names;
}

std::string listingFailure(const std::string& folder, std::error_code error)
{
    return error == std::errc::not_enough_memory ? "The memory does not suffice."
                                                 : concat("Getting contents of '", folder, "' failed.");
}

int countPhrases(const std::vector<std::string>& names)
{
    return checkedCast<int>(std::ranges::count_if(names, isMIDIFile));
}

std::string phraseNumber(int number)
{
    if (number < 10) {
        return concat("00", number);
    }
    return number < 100 ? concat("0", number) : text(number);
}

Result<> checkPhraseLibrary()
{
    const auto resources = resourcesFolder();
    if (!resources) {
        return failure("Volvelle's phrases are missing: please install it again.");
    }
    for (const ArrangementTrack& track : arrangementTracks) {
        if (track.folder.empty()) {
            continue;
        }
        if (auto checked = checkFolder(phraseFolderOf(track, resources)); !checked) {
            return checked;
        }
    }
    return {};
}

} // namespace volvelle
