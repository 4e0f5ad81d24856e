#include "services/synthesizer/BankFile.h"

#include "base/Console.h"
#include "base/Text.h"

#include <algorithm>
#include <fcntl.h>
#include <linux/fs.h>
#include <mutex>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr int none = -1;
constexpr std::size_t copiedAtOnce = std::size_t{64} << 20U; // bytes

bool copyAll(int from, int to, std::uintmax_t size)
{
    if (ioctl(to, FICLONE, from) == 0) {
        return true;
    }
    off_t place = 0;
    while (static_cast<std::uintmax_t>(place) < size) {
        const auto wanted = std::min<std::uintmax_t>(size - static_cast<std::uintmax_t>(place), copiedAtOnce);
        if (sendfile(to, from, &place, wanted) <= 0) {
            return false;
        }
    }
    return true;
}

// Whether a file of this process may be so large: writing beyond that would end it.
bool mayBeWritten(std::uintmax_t size)
{
    rlimit most{};
    return getrlimit(RLIMIT_FSIZE, &most) != 0 || most.rlim_cur == RLIM_INFINITY || size <= most.rlim_cur;
}

// Of the whole file in a file without a name, on a disk where one has room, else in memory, else none.
int privateCopy(int from, std::uintmax_t size)
{
    std::error_code code;
    for (const fs::path& folder : {fs::path("/var/tmp"), fs::temp_directory_path(code), fs::path()}) {
        const int copy = folder.empty()
                             ? memfd_create("bank", MFD_CLOEXEC)
                             : ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (copy != none && copyAll(from, copy, size)) {
            return copy;
        }
        if (copy != none) {
            close(copy);
        }
    }
    return none;
}

fs::path readablePath(const fs::path& path, int descriptor)
{
    return descriptor == none ? path : fs::path(concat("/proc/self/fd/", descriptor));
}

// The large banks in use, by what tells whether a file is still the same.
struct OpenBanks {
    struct Entry {
        struct stat about;
        std::weak_ptr<const BankFile> bank;
    };

    std::shared_ptr<const BankFile> find(const fs::path& path, const struct stat& about)
    {
        std::erase_if(entries, [](const Entry& entry) { return entry.bank.expired(); });
        for (const Entry& entry : entries) {
            const std::shared_ptr<const BankFile> bank = entry.bank.lock();
            if (bank != nullptr && bank->path == path && isSame(entry.about, about)) {
                return bank;
            }
        }
        return nullptr;
    }

    static bool isSame(const struct stat& one, const struct stat& other)
    {
        return one.st_dev == other.st_dev && one.st_ino == other.st_ino && one.st_size == other.st_size &&
               one.st_mtim.tv_sec == other.st_mtim.tv_sec && one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
    }

    std::mutex mutex;
    std::vector<Entry> entries;
};

OpenBanks& openBanks()
{
    static OpenBanks banks;
    return banks;
}

} // namespace

BankFile::BankFile(fs::path asked, int descriptor, std::uintmax_t size)
    : path(std::move(asked)), readable(readablePath(path, descriptor)), size(size), descriptor(descriptor)
{
}

BankFile::~BankFile()
{
    if (descriptor != none) {
        close(descriptor);
    }
}

Result<std::shared_ptr<const BankFile>> BankFile::open(const fs::path& path)
{
    struct stat about{};
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file == none || fstat(file, &about) != 0 || !S_ISREG(about.st_mode)) {
        if (file != none) {
            close(file);
        }
        return failure(concat("The sound bank \"", path.string(), "\" cannot be read."));
    }
    const auto size = static_cast<std::uintmax_t>(about.st_size);
    if (size < largeSize) {
        close(file);
        return std::shared_ptr<const BankFile>(new BankFile(path, none, size));
    }
    const std::lock_guard lock(openBanks().mutex);
    if (auto bank = openBanks().find(path, about)) {
        close(file);
        return bank;
    }
    auto bank = openLarge(path, file, size);
    openBanks().entries.push_back({about, bank});
    return bank;
}

// Takes the descriptor over.
std::shared_ptr<const BankFile> BankFile::openLarge(const fs::path& path, int file, std::uintmax_t size)
{
    const int copy = mayBeWritten(size) ? privateCopy(file, size) : none;
    if (copy == none) {
        debugprint("There is no room for a copy of the sound bank \"", path.string(),
                   "\": it must not change while it is used.");
        return std::shared_ptr<const BankFile>(new BankFile(path, file, size));
    }
    close(file);
    return std::shared_ptr<const BankFile>(new BankFile(path, copy, size));
}

} // namespace volvelle
