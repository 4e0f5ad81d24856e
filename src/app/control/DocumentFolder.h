#pragma once

#include "app/control/TrashCan.h"
#include "base/Result.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace volvelle {

// A document as the browser lists it.
struct FolderDocument {
    std::filesystem::path location;
    std::string name;             // as it is shown
    std::int64_t modified = 0;    // seconds since 1970
    std::int64_t size = 0;        // bytes
    std::int64_t nanoseconds = 0; // of `modified`, beyond its second

    bool operator==(const FolderDocument&) const = default;
};

// The MIDI files of a folder, and what is done with them. Nothing ever takes the place of another file: the
// next free number is taken ("Slow tide 2.mid"), also where only the ending differs ("Slow tide.MIDI").
// Failures are one plain sentence. [main]
class DocumentFolder {
public:
    DocumentFolder(std::filesystem::path folder, std::shared_ptr<TrashCan> trash);

    const std::filesystem::path& path() const { return folder; }

    // Those whose names do not begin with a point, the newest first, then by name. A folder that is not there
    // is an empty one.
    std::vector<FolderDocument> documents() const;

    // True for a file of this folder itself, not of one below it.
    bool contains(const std::filesystem::path& file) const;

    // Each makes the folder where it is not there, and gives the new place. A copy keeps the name, with
    // ".mid" where it has no ending of a MIDI file; a move never leaves two files.
    Result<std::filesystem::path> takeCopy(const std::filesystem::path& file) const;
    Result<std::filesystem::path> takeMove(const std::filesystem::path& file) const;
    Result<std::filesystem::path> duplicate(const std::filesystem::path& file) const;

    // The file keeps its ending; one of a MIDI file in `name` is left out. A name that is empty or blank,
    // begins with a point, holds a slash, is too long or is taken is refused; the same name changes nothing.
    Result<std::filesystem::path> rename(const std::filesystem::path& file, const std::string& typed) const;

    Result<> moveToTrash(const std::filesystem::path& file);

    bool canRestore() const { return !removed.empty(); }

    // Brings back what was removed last, under the next free number where its name is taken by now; where
    // that fails it can be tried again, as long as it is in the trash.
    Result<std::filesystem::path> restore();

private:
    struct Removed {
        std::filesystem::path file;
        std::filesystem::path place; // in the trash
    };

    Result<> makeFolder() const;

    std::filesystem::path folder;
    std::shared_ptr<TrashCan> trash;
    std::vector<Removed> removed;
};

} // namespace volvelle
