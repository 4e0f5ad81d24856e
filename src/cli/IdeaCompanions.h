#pragma once

#include "cli/CommandOutput.h"
#include "cli/IdeaFile.h"
#include "cli/Options.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

// The picture and the sound of an idea, beside its file: made by the programs that can, each a file that is
// replaced. Of several ideas they are numbered as those are.
class IdeaCompanions {
public:
    explicit IdeaCompanions(const GenerateOptions& options);

    // A plain line where what is asked for can never be, else nothing.
    static std::string misuseOf(const GenerateOptions& options);

    // The same for the name of a picture. One that gets no number may be that of a pipe or a device.
    static std::string misuseOfPicture(const std::filesystem::path& file, bool isNumbered);

    // exitDone where those of the next `count` ideas can be written; else says why not. Nothing is written.
    int prepare(IdeaFile ideas, int count, CommandOutput& output) const;

    // Makes those of the idea in `idea`, and returns the exit status. The program that fails says why.
    int write(const std::filesystem::path& idea, int number, CommandOutput& output) const;

private:
    int prepareOne(int number, CommandOutput& output) const;
    int make(const char* program, std::vector<std::string> arguments, const std::filesystem::path& idea,
             CommandOutput& output) const;
    std::filesystem::path numbered(const std::filesystem::path& file, int number) const;

    const std::optional<std::filesystem::path> picture;
    const std::optional<std::filesystem::path> sound;
    const bool isNumbered;
};

} // namespace volvelle
