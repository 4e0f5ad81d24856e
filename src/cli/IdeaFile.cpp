#include "cli/IdeaFile.h"

#include "base/Text.h"
#include "cli/CommandOutput.h"
#include "services/files/FileFailure.h"
#include "services/files/FileNames.h"
#include "services/files/NewFile.h"
#include "services/files/SafeFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <unistd.h>
#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

bool isOther(const fs::file_status& status)
{
    return fs::exists(status) && !fs::is_regular_file(status);
}

// A folder, a device, a pipe or a link.
bool keepsName(const fs::path& file)
{
    std::error_code error;
    return isOther(fs::symlink_status(file, error));
}

// A number fits after it.
bool isNameOfFile(const fs::path& file)
{
    return file.has_filename() && file.filename() != "." && file.filename() != "..";
}

fs::path withEnding(const fs::path& file, bool isNumbered)
{
    const bool isWhole = isMIDIFileName(file) || !isNameOfFile(file) || (!isNumbered && keepsName(file));
    return isWhole || file == standardOutputName ? file : fs::path(file.string() + ".mid");
}

} // namespace

IdeaFile::IdeaFile(const std::optional<fs::path>& out, bool isNumbered)
    : IdeaFile(out.has_value(), isNumbered, withEnding(out.value_or("New MIDI Idea.mid"), isNumbered))
{
}

IdeaFile::IdeaFile(bool isNamed, bool isNumbered, fs::path base)
    : isNamed(isNamed), isNumbered(isNumbered), base(std::move(base))
{
}

IdeaFile IdeaFile::firstFree(const fs::path& file)
{
    return {false, false, withEnding(file, true)};
}

IdeaFile IdeaFile::freeNumbers(const fs::path& file)
{
    return {false, true, withEnding(file, true)};
}

Result<> IdeaFile::prepare() const
{
    NewFile attempt;
    const bool isReady = !isNamed || base == standardOutputName || attempt.create(base);
    return isReady ? Result<>() : failure(writeFailure(base, attempt.failure()));
}

std::string IdeaFile::misuseOf(const fs::path& out)
{
    constexpr std::array<const char*, 4> sounds{".wav", ".flac", ".ogg", ".mp3"};
    const std::string ending = fileEnding(out);
    std::error_code error;
    if (isOther(fs::status(out, error)) || std::ranges::find(sounds, ending) == sounds.end()) {
        return "";
    }
    return concat("An idea is a MIDI file and no ", ending,
                  ": name one that ends in .mid, and turn it into sound with the command 'render'.");
}

Result<> IdeaFile::write(std::span<const std::uint8_t> data, const EndOfPatience& end)
{
    int failed = 0;
    if (base == standardOutputName) {
        file = "standard output";
        failed = end ? writePatiently(STDOUT_FILENO, data, end)
                     : writeAll(STDOUT_FILENO, data.data(), static_cast<std::int64_t>(data.size()));
    } else {
        failed = isNamed ? writeNamed(data, end) : writeFree(data);
    }
    return failed == 0 ? Result<>() : failure(writeFailure(file, failed));
}

int IdeaFile::writeNamed(std::span<const std::uint8_t> data, const EndOfPatience& end)
{
    file = next();
    std::error_code error;
    const bool isPatient = end && isOther(fs::status(file, error));
    return isPatient ? writePatiently(file, data, end) : putFile(file, data, true);
}

fs::path IdeaFile::next()
{
    ++number;
    if ((number == 1 && !isNumbered) || !isNameOfFile(base)) {
        return base;
    }
    return withNumber(base, number);
}

int IdeaFile::passOver()
{
    do {
        file = next();
    } while (!isNamed && isNameTaken(file) && isNameOfFile(base));
    return number;
}

int IdeaFile::writeFree(std::span<const std::uint8_t> data)
{
    int failed = 0;
    do {
        file = next();
        failed = isNameTaken(file) ? EEXIST : putFile(file, data, false);
    } while (failed == EEXIST && isNameOfFile(base));
    return failed;
}

} // namespace volvelle
