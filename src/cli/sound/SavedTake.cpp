#include "cli/sound/SavedTake.h"

#include "base/Paths.h"
#include "cli/CommandOutput.h"

#include <system_error>

namespace volvelle {

namespace fs = std::filesystem;

namespace {

fs::path nameOf(const fs::path& out)
{
    const fs::path name = out.filename();
    const bool isNone = out == standardOutputName || name.empty() || name == "." || name == "..";
    return isNone ? "Recording.mid" : name;
}

} // namespace

SavedTake saveTake(IdeaFile& wanted, const fs::path& out, std::span<const std::uint8_t> bytes,
                   std::span<const fs::path> spareFolders, const EndOfPatience& end)
{
    SavedTake saved;
    saved.fault = wanted.write(bytes, end).error();
    if (saved.fault.empty()) {
        saved.file = wanted.name();
        return saved;
    }
    const fs::path name = nameOf(out);
    for (const fs::path& folder : spareFolders) {
        std::error_code error;
        fs::create_directories(folder, error);
        IdeaFile spare = IdeaFile::firstFree(folder / name);
        if (spare.write(bytes)) {
            saved.file = spare.name();
            break;
        }
    }
    return saved;
}

std::vector<fs::path> spareFolders()
{
    std::vector<fs::path> folders;
    if (const auto documents = documentsFolder()) {
        folders.push_back(*documents);
    }
    std::error_code error;
    if (const fs::path temporary = fs::temp_directory_path(error); !error) {
        folders.push_back(temporary);
    }
    return folders;
}

} // namespace volvelle
