#pragma once

#include "base/Result.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace volvelle {

// The file of a sound bank. Of a large one, whose samples are read when they are needed, it keeps a private
// copy for as long as it lives: whatever becomes of the file meanwhile, the bank plays on. Shared by all
// synthesizers of the bank. [main, worker]
class BankFile {
public:
    static constexpr std::uintmax_t largeSize = 32U << 20U; // bytes

    // Fails where the file cannot be read. Where no copy can be kept a log line says
    // so, and the file itself is held open: then it may be deleted, but not overwritten.
    static Result<std::shared_ptr<const BankFile>> open(const std::filesystem::path& path);

    ~BankFile();
    BankFile(const BankFile&) = delete;
    BankFile& operator=(const BankFile&) = delete;

    const std::filesystem::path path;     // as it was asked for
    const std::filesystem::path readable; // where the bytes are, while this lives
    const std::uintmax_t size;            // bytes

    bool isLarge() const { return size >= largeSize; }

private:
    BankFile(std::filesystem::path asked, int descriptor, std::uintmax_t size);
    static std::shared_ptr<const BankFile> openLarge(const std::filesystem::path& path, int file,
                                                     std::uintmax_t size);

    int descriptor; // -1 for none
};

} // namespace volvelle
