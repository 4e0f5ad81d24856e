#pragma once

#include "base/Result.h"
#include "services/files/HeldSignals.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <utility>
#include <vector>

namespace volvelle {

// Files that change together. Each new one is written beside its place first, in a folder of its own there;
// then all take their places, or none does. Without carryOut(), and where that fails, nothing has changed at
// the end of its life. What asks the process to end waits until then. What a process that is no more has left
// beside them goes once all is done. An old file that cannot go back to its place stays beside it, in a
// folder ".volvelle-PROCESS-NUMBER.kept" that nothing clears. [any]
class FileExchange {
public:
    FileExchange() = default;
    ~FileExchange();
    FileExchange(const FileExchange&) = delete;
    FileExchange& operator=(const FileExchange&) = delete;

    // Makes a folder as the next does, and holds it alone until the end of this life. Waits while another
    // does, of which `tellWaiting` is told once, and can be ended by a signal meanwhile: the first to be
    // called. Where the file system knows no such locks, or the folder may not be read, nothing is held.
    Result<> lock(const std::filesystem::path& folder, const std::function<void()>& tellWaiting = {});

    // Makes a folder at once, with those above it. Each goes again unless all is carried out.
    Result<> makeFolder(const std::filesystem::path& folder);

    // Notes a file that is to hold these bytes, and one that is to go. A folder gets each name once.
    Result<> put(const std::filesystem::path& file, std::span<const std::uint8_t> bytes);
    Result<> remove(const std::filesystem::path& file);

    // Called once, as the last. Fails where something else than a file stands in a place by now, a link to
    // one included: links are not followed.
    Result<> carryOut();

private:
    enum class ChangeKind { put, remove };

    struct Change {
        ChangeKind kind = ChangeKind::put;
        std::filesystem::path file;
        std::filesystem::path aside; // the new file, once all is done the old one
    };

    bool waitFor(int opened, const std::function<void()>& tellWaiting);
    Result<> syncNew() const;
    void syncFolders() const;
    void clearLeftovers() const;
    int note(ChangeKind kind, const std::filesystem::path& file);
    static int take(const Change& change);
    static bool giveBack(const Change& change);
    void goBack(std::size_t done);

    std::unique_ptr<HeldSignals> signals = std::make_unique<HeldSignals>(); // null while it waits
    std::vector<int> locks;                                                 // descriptors of folders
    std::set<std::filesystem::path> folders;                                // in which something may change
    std::vector<std::filesystem::path> made; // folders, in the order in which they were made
    std::map<std::filesystem::path, std::filesystem::path> sides; // of each folder that changes
    std::vector<Change> changes;
    bool hasWaited = false;
    bool isDone = false;
};

} // namespace volvelle
