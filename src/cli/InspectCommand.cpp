#include "cli/InspectCommand.h"

#include "cli/InspectJSON.h"
#include "cli/InspectText.h"
#include "inspection/FileDescription.h"

#include <algorithm>
#include <optional>

namespace volvelle {

namespace {

int inspectFile(const std::filesystem::path& file, const InspectOptions& options, CommandOutput& output)
{
    FileDescription description;
    if (const OSStatus status = describeFile(file, description); status != noErr) {
        return output.failure(readFailure(file, status));
    }
    if (description.tracks.empty()) {
        return output.failure(trackFailure(file));
    }
    if (options.json) {
        const bool isOne = options.files.size() == 1;
        output.result(inspectJSON(description, isOne ? std::nullopt : std::optional(file)));
    } else {
        printInspection(file, description, output);
    }
    return exitDone;
}

} // namespace

int runInspect(const InspectOptions& options, CommandOutput& output)
{
    int status = exitDone;
    for (const std::filesystem::path& file : options.files) {
        status = std::max(status, inspectFile(file, options, output));
    }
    return status;
}

} // namespace volvelle
