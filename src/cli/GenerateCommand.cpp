#include "cli/GenerateCommand.h"

#include "base/Text.h"
#include "cli/ArrangementReport.h"
#include "cli/IdeaCompanions.h"
#include "cli/IdeaFile.h"
#include "cli/MissingPhrases.h"
#include "inspection/ArrangementSummary.h"
#include "sequence/SequenceFileBytes.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <set>
#include <vector>

namespace volvelle {

namespace {

// Keeps what each arrangement of a long one holds.
class SummarisingGenerator : public MIDIClipGenerator {
public:
    std::vector<ArrangementSummary> summaries;

    std::shared_ptr<MIDISequence16> makeArrangement(bool empty) override
    {
        auto sequence = MIDIClipGenerator::makeArrangement(empty);
        summaries.push_back(summaryOf(*this));
        return sequence;
    }
};

std::string misuseOf(const GenerateOptions& options)
{
    if (const std::string line = IdeaCompanions::misuseOf(options); !line.empty() || !options.out) {
        return line;
    }
    if (options.out == standardOutputName) {
        return options.count == 1 ? "" : "Standard output takes one idea: leave --count out.";
    }
    return IdeaFile::misuseOf(*options.out);
}

void report(const std::string& file, const std::vector<ArrangementSummary>& summaries, int count,
            CommandOutput& output)
{
    if (count == 1) {
        printReport(output, summaries);
        output.remark(concat("Wrote '", file, "'."));
        return;
    }
    for (const auto& arrangement : summaries) {
        output.remark(concat("'", file, "': ", shortReport(arrangement)));
    }
}

int generateFile(IdeaFile& file, const GenerateOptions& options, std::set<std::filesystem::path>& unread,
                 CommandOutput& output)
{
    SummarisingGenerator generator;
    const auto sequence = options.longCount == 1 ? generator.makeArrangement(false)
                                                 : generator.makeArrangementLong(options.longCount);
    for (const auto& arrangement : generator.summaries) {
        tellUnread(arrangement, unread, output);
    }
    std::vector<std::uint8_t> data;
    if (sequenceFileBytes(sequence->getMusicSequence(), data) != noErr || data.empty()) {
        return output.failure("The arrangement could not be turned into a MIDI file.");
    }
    if (const Result<> written = file.write(data); !written) {
        return output.failure(written.error());
    }
    if (options.out != standardOutputName) {
        report(file.name(), generator.summaries, options.count, output);
    }
    return exitDone;
}

} // namespace

int runGenerate(const GenerateOptions& options, CommandOutput& output)
{
    if (const std::string line = misuseOf(options); !line.empty()) {
        return output.misuse(line);
    }
    if (const std::string line = missingPhrases(); !line.empty()) {
        return output.failure(line);
    }
    IdeaFile file(options.out, options.count > 1);
    const IdeaCompanions companions(options);
    if (const int status = companions.prepare(file, options.count, output); status != exitDone) {
        return status;
    }
    std::set<std::filesystem::path> unread; // that were told
    for (int number = 1; number <= options.count; ++number) {
        int status = generateFile(file, options, unread, output);
        status = status == exitDone ? companions.write(file.name(), file.lastNumber(), output) : status;
        if (status != exitDone) {
            return status;
        }
        if (options.count > 1) {
            output.progress(number, options.count);
        }
    }
    return exitDone;
}

} // namespace volvelle
