#include "cli/IdeaCompanions.h"

#include "base/Paths.h"
#include "base/Text.h"
#include "cli/SiblingProgram.h"
#include "services/files/FileFailure.h"
#include "services/files/FileNames.h"
#include "services/files/NewFile.h"

#include <unistd.h>
#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

int prepareFile(const fs::path& file, const char* program, CommandOutput& output)
{
    if (access(siblingProgram(program).c_str(), X_OK) != 0) {
        return tellMissingSibling(program, output);
    }
    NewFile attempt;
    return attempt.create(file) ? exitDone : output.failure(writeFailure(file, attempt.failure()));
}

} // namespace

IdeaCompanions::IdeaCompanions(const GenerateOptions& options)
    : picture(options.png), sound(options.wav), isNumbered(options.count > 1)
{
}

std::string IdeaCompanions::misuseOf(const GenerateOptions& options)
{
    const bool isPiped = options.png == standardOutputName || options.wav == standardOutputName;
    if (isPiped || ((options.png || options.wav) && options.out == standardOutputName)) {
        return "Standard output takes an idea alone: leave --png and --wav out.";
    }
    const bool isNumbered = options.count > 1;
    if (const std::string line = options.png ? misuseOfPicture(*options.png, isNumbered) : "";
        !line.empty()) {
        return line;
    }
    if (options.wav && fileEnding(*options.wav) != ".wav" && (isNumbered || !isStream(*options.wav))) {
        return concat("Sound is a WAV: name a file that ends in .wav, not '", options.wav->string(), "'.");
    }
    return "";
}

std::string IdeaCompanions::misuseOfPicture(const fs::path& file, bool isNumbered)
{
    return fileEnding(file) == ".png" || (!isNumbered && isStream(file))
               ? ""
               : concat("A picture is a PNG: name a file that ends in .png, not '", file.string(), "'.");
}

fs::path IdeaCompanions::numbered(const fs::path& file, int number) const
{
    return isNumbered ? withNumber(file, number) : file;
}

int IdeaCompanions::prepare(IdeaFile ideas, int count, CommandOutput& output) const
{
    int status = exitDone;
    const bool hasSome = picture || sound;
    for (int i = 0; hasSome && status == exitDone && i < count; ++i) {
        status = prepareOne(ideas.passOver(), output);
    }
    return status;
}

int IdeaCompanions::prepareOne(int number, CommandOutput& output) const
{
    const int status =
        picture ? prepareFile(numbered(*picture, number), screenProgram, output) : int{exitDone};
    return status == exitDone && sound ? prepareFile(numbered(*sound, number), soundProgram, output) : status;
}

int IdeaCompanions::make(const char* program, std::vector<std::string> arguments, const fs::path& idea,
                         CommandOutput& output) const
{
    if (isNumbered || output.isQuiet()) {
        arguments.emplace_back("--quiet");
    }
    arguments.insert(arguments.end(), {"--", idea.string()});
    return runSibling(program, arguments, output);
}

int IdeaCompanions::write(const fs::path& idea, int number, CommandOutput& output) const
{
    int status = exitDone;
    if (picture) {
        status =
            make(screenProgram, {"picture", "--out=" + numbered(*picture, number).string()}, idea, output);
    }
    if (status == exitDone && sound) {
        std::vector<std::string> arguments{"render", "--out=" + numbered(*sound, number).string()};
        if (const auto resources = resourcesFolder()) {
            arguments.push_back("--resources=" + resources->string());
        }
        status = make(soundProgram, std::move(arguments), idea, output);
    }
    return status;
}

} // namespace volvelle
