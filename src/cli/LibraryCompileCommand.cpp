#include "cli/LibraryCompileCommand.h"

#include "base/Text.h"
#include "scores/ScoreCompiler.h"

namespace volvelle {

int runLibraryCompile(const LibraryCompileOptions& options, CommandOutput& output)
{
    LibraryReport report;
    const bool done = compileLibrary(options.scores, options.out, report, [&] {
        output.remark(
            concat("Another process is writing into '", options.out.string(), "': waiting for it."));
    });
    for (const std::string& error : report.errors) {
        output.failure(error);
    }
    if (!done) {
        return exitFailed;
    }
    output.remark(concat(report.compiled, " scores compiled, ", report.changed, " phrases written, ",
                         report.removed, " removed."));
    return exitDone;
}

} // namespace volvelle
