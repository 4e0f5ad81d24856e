#include "cli/GenerateCommand.h"

#include "app/MIDIDocument.h"
#include "base/Text.h"
#include "cli/ArrangementReport.h"
#include "services/files/FileFailure.h"
#include "services/files/SafeFile.h"

namespace volvelle {

namespace {

std::filesystem::path numbered(const std::filesystem::path& file, int number)
{
    return file.parent_path() / concat(file.stem().string(), " ", number, file.extension().string());
}

int generateFile(const std::filesystem::path& file, int longCount, ReportingGenerator& generator,
                 CommandOutput& output)
{
    const auto sequence =
        longCount == 1 ? generator.makeArrangement(false) : generator.makeArrangementLong(longCount);
    const auto data = MIDIDocument::sequenceData(sequence->getMusicSequence());
    if (!data) {
        return output.failure("The arrangement could not be turned into a MIDI file.");
    }
    if (const int error = putFile(file, *data, true); error != 0) {
        return output.failure(writeFailure(file, error));
    }
    return exitDone;
}

} // namespace

int runGenerate(const GenerateOptions& options, CommandOutput& output)
{
    if (options.count == 1) {
        ReportingGenerator generator;
        if (const int status = generateFile(options.out, options.longCount, generator, output);
            status != exitDone) {
            return status;
        }
        printReport(output, generator);
        output.remark(concat("Wrote '", options.out.string(), "'."));
        return exitDone;
    }
    for (int number = 1; number <= options.count; ++number) {
        const std::filesystem::path file = numbered(options.out, number);
        ReportingGenerator generator;
        if (const int status = generateFile(file, options.longCount, generator, output); status != exitDone) {
            return status;
        }
        output.progress(number, options.count);
        output.remark(concat("'", file.string(), "': ", shortReport(generator.arrangements.front())));
    }
    return exitDone;
}

} // namespace volvelle
