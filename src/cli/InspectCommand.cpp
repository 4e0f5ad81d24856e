#include "cli/InspectCommand.h"

#include "cli/FileDescription.h"
#include "cli/InspectJSON.h"
#include "cli/InspectText.h"

namespace volvelle {

int runInspect(const InspectOptions& options, CommandOutput& output)
{
    FileDescription description;
    if (const OSStatus status = describeFile(options.file, description); status != noErr) {
        return output.failure(readFailure(options.file, status));
    }
    if (options.json) {
        output.result(inspectJSON(description));
    } else {
        printInspection(options.file, description, output);
    }
    return exitDone;
}

} // namespace volvelle
