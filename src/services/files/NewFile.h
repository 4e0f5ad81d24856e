#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/types.h>

namespace volvelle {

// A file that is being written, under a name of its own in the folder of the file that it will be:
// ".volvelle-PROCESS-NUMBER.tmp". Removed at the end of its life, unless it took its place. While a Keeper is
// asked, the file whose place was taken is called ".volvelle-PROCESS-NUMBER-NAME.replaced", without "-NAME"
// where that would be too long, and keeps ".tmp" where even that would be; where the process is killed then,
// it stays so (see Leftovers). For a device or a pipe it has no name, stands where temporary files do, and
// its bytes are copied there once they are complete. The first failure is kept, and all that follows fails.
// [any]
class NewFile {
public:
    NewFile() = default;
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    // Begins anew for `target`, which is not touched; a link is followed, also one whose file is not there. A
    // folder (EISDIR), a file that may not be written (EACCES), a circle of links (ELOOP) and no name at all
    // (ENOENT) are refused; memory that does not suffice is ENOMEM.
    bool create(const std::filesystem::path& path);

    // Begins anew for an open descriptor of the caller's, which the bytes are copied to.
    bool createFor(int descriptorOfCaller);

    bool write(const void* bytes, std::int64_t count);

    // Each -1 where it fails.
    std::int64_t read(void* bytes, std::int64_t count);
    std::int64_t seek(std::int64_t offset, int whence);
    std::int64_t length();

    // Told where the file stands whose place was taken, before that is removed; false, or an exception, gives
    // it its place back.
    using Keeper = std::function<bool(const std::filesystem::path& replaced)>;

    // Puts the bytes on disk, and the file in the place of its target with the rights and attributes of that.
    // Without `overwrite` a target that is there by now is a failure, EEXIST. A file that `keep` will not
    // have replaced is one too, ECANCELED; it is not asked where the file system cannot exchange two names.
    bool takePlace(bool overwrite = true, const Keeper& keep = {});

    // Closes and removes the file.
    void drop();

    // The system's number of the first failure, 0 for none.
    int failure() const { return error; }

    // True where that befell the file without a name, and not the device or the pipe; the folder that it
    // stands in, or "memory".
    bool failedAside() const { return isDirect && error != 0 && !isComplete; }

    const std::filesystem::path& folderAside() const { return aside; }

private:
    bool openFree();
    bool openNew();
    int openTarget() const;
    int copyIntoTarget();
    bool takeName(bool overwrite, const Keeper& keep);
    bool exchange(const Keeper& keep);
    bool takeNameOfReplaced();
    bool takeNameWith(const std::string& ending);
    bool keepReplaced(const Keeper& keep);
    void giveBack(const std::string& replaced) const;
    void rememberItself();
    bool recordUnless(bool good); // notes the error of the system unless `good`

    std::filesystem::path target;
    std::filesystem::path aside;
    std::string name;
    int descriptor = -1;
    int slot = -1;    // among the files that are being written
    dev_t device = 0; // where its bytes are, as the next
    ino_t inode = 0;
    int error = 0;
    bool isDirect = false;   // a device, a pipe or an open descriptor
    bool isComplete = false; // its bytes are on their way there
    int outlet = -1;         // that descriptor
};

// Writes everything, 0 or the system's number of the failure.
int writeAll(int descriptor, const void* bytes, std::int64_t count);

// True for an existing file whose rights let this process write it, and which no one protected from all.
bool isWritable(const std::filesystem::path& file);

} // namespace volvelle
