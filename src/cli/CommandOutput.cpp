#include "cli/CommandOutput.h"

#include "base/Console.h"
#include "base/Text.h"

#include <cstdio>
#include <unistd.h>

namespace volvelle {

void CommandOutput::result(std::string_view line)
{
    flushLog();
    StandardOutputSink().write(line);
}

void CommandOutput::remark(std::string_view line)
{
    if (!quiet) {
        result(line);
    }
}

int CommandOutput::failure(std::string_view line)
{
    flushLog();
    const std::string whole = concat(line, "\n");
    std::fwrite(whole.data(), 1, whole.size(), stderr);
    return exitFailed;
}

void CommandOutput::progress(int done, int of)
{
    if (quiet || isatty(STDERR_FILENO) == 0) {
        return;
    }
    const std::string line = concat("\r", done, " of ", of, done == of ? "\r\x1B[K" : "");
    std::fwrite(line.data(), 1, line.size(), stderr);
}

std::string readFailure(const std::filesystem::path& file, OSStatus status)
{
    switch (status) {
    case fileNotFoundErr:
        return concat("There is no file '", file.string(), "'.");
    case fileFormatErr:
        return concat("'", file.string(), "' is no Standard MIDI File.");
    default:
        return concat("'", file.string(), "' could not be read.");
    }
}

std::string writeFailure(const std::filesystem::path& file, OSStatus status)
{
    if (status == fileNotFoundErr) {
        return concat("'", file.string(), "' could not be written: its folder does not exist.");
    }
    return concat("'", file.string(),
                  "' could not be written: the folder is not writable or the disk is full.");
}

} // namespace volvelle
