#pragma once

#include "base/Result.h"
#include "services/files/PatientWrite.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

namespace volvelle {

// Where ideas are written to, one after the other: a named file, which is replaced, or the next free one of
// "New MIDI Idea.mid", "New MIDI Idea 2.mid" and so on. Several ideas are numbered from 1.
class IdeaFile {
public:
    // `out` is a name, standardOutputName, or no value for a free name.
    IdeaFile(const std::optional<std::filesystem::path>& out, bool isNumbered);

    // A plain line where the name is that of another kind of file, else nothing.
    static std::string misuseOf(const std::filesystem::path& out);

    // The next free name of "F.mid", "F 2.mid" and so on. Writing fails where `file` ends without a name.
    static IdeaFile firstFree(const std::filesystem::path& file);

    // The free ones of "F 1.mid", "F 2.mid" and so on.
    static IdeaFile freeNumbers(const std::filesystem::path& file);

    // Fails where the one file that has a name could not be written, as far as can be told. Nothing is
    // written.
    Result<> prepare() const;

    // Writes the next idea. With `end` what has a name, and standard output, is waited for until that says
    // so.
    Result<> write(std::span<const std::uint8_t> data, const EndOfPatience& end = {});

    // Takes the name that the next idea would have, without writing it, and returns its number.
    int passOver();

    // The file that was written last, and its number.
    std::string name() const { return file.string(); }

    int lastNumber() const { return number; }

private:
    IdeaFile(bool isNamed, bool isNumbered, std::filesystem::path base);

    std::filesystem::path next();
    int writeNamed(std::span<const std::uint8_t> data, const EndOfPatience& end);
    int writeFree(std::span<const std::uint8_t> data);

    const bool isNamed;
    const bool isNumbered;
    const std::filesystem::path base;
    std::filesystem::path file;
    int number = 0; // of the file that was tried last
};

} // namespace volvelle
