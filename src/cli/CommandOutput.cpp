#include "cli/CommandOutput.h"

#include "base/Console.h"
#include "base/PlainText.h"
#include "base/Text.h"
#include "cli/TerminalWidth.h"
#include "services/files/FileFailure.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace volvelle {

void CommandOutput::result(std::string_view line)
{
    flushLog();
    endBar();
    StandardOutputSink().write(plainLine(line));
}

void CommandOutput::remark(std::string_view line)
{
    if (!quiet) {
        result(line);
    }
}

int CommandOutput::failure(std::string_view line)
{
    tell(line);
    return exitFailed;
}

int CommandOutput::misuse(std::string_view line)
{
    tell(line);
    return exitUsage;
}

int CommandOutput::finish(int status)
{
    const bool isWhole = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    return status != exitDone || isWhole ? status : failure("Standard output could not be written.");
}

void CommandOutput::tell(std::string_view line)
{
    flushLog();
    endBar();
    const std::string whole = concat(plainLine(line), "\n");
    std::fwrite(whole.data(), 1, whole.size(), stderr);
}

void CommandOutput::progress(int done, int of)
{
    if (quiet || isatty(STDERR_FILENO) == 0) {
        return;
    }
    endBar();
    if (done < of) {
        const std::string bar = progressBar(done, of, terminalColumns(STDERR_FILENO) - 1);
        std::fwrite(bar.data(), 1, bar.size(), stderr);
        hasBar = true;
    }
}

void CommandOutput::endBar()
{
    if (std::exchange(hasBar, false)) {
        std::fputs("\r\x1B[K", stderr);
    }
}

std::string progressBar(int done, int of, std::size_t columns)
{
    constexpr std::size_t longest = 30;
    const std::string count = concat(done, " of ", of);
    const std::size_t around = count.size() + std::string_view("[] ").size();
    if (columns <= around) {
        return count.substr(0, columns);
    }
    const auto width = static_cast<std::int64_t>(std::min(longest, columns - around));
    const auto filled = static_cast<std::size_t>(width * done / of);
    const auto empty = static_cast<std::size_t>(width) - filled;
    return concat("[", std::string(filled, '#'), std::string(empty, ' '), "] ", count);
}

std::string readFailure(const std::filesystem::path& file, OSStatus status)
{
    switch (status) {
    case fileNotFoundErr:
        return concat("There is no file '", file.string(), "'.");
    case fileFormatErr:
        return concat("'", file.string(), "' is no Standard MIDI File.");
    default:
        const std::string reason = readObstacle(file);
        return concat("'", file.string(), "' could not be read", reason.empty() ? "" : ": ", reason, ".");
    }
}

std::string trackFailure(const std::filesystem::path& file)
{
    return concat("'", file.string(), "' holds no track.");
}

} // namespace volvelle
