#include "cli/sound/RecordCommand.h"

#include "base/Checked.h"
#include "base/Text.h"
#include "cli/IdeaFile.h"
#include "cli/sound/EndWish.h"
#include "cli/sound/PortNames.h"
#include "cli/sound/RecordSession.h"
#include "cli/sound/SavedTake.h"
#include "services/audiodevice/RtAudioSink.h"

#include <cerrno>
#include <cmath>

namespace volvelle {

namespace {

std::string emptyLine(const RecordSession& session)
{
    return session.isPortLost()
               ? concat("The MIDI port \"", session.portName(),
                        "\" went away before anything came: nothing is written.")
               : concat("Nothing came from the MIDI port \"", session.portName(), "\": nothing is written.");
}

// What befell the recording on its way; on standard error where standard output is the file.
void tellLosses(const RecordSession& session, bool isOutputFree, CommandOutput& output)
{
    const auto tell = [&](const std::string& line) {
        isOutputFree ? output.remark(line) : static_cast<void>(output.failure(line));
    };
    if (session.isPortLost()) {
        tell(concat("The MIDI port \"", session.portName(), "\" went away: what came is saved."));
    }
    if (const std::size_t dropped = session.take.dropped(); dropped > 0) {
        tell(concat("Messages that were broken off or found no room, and are left out: ", dropped, "."));
    }
}

int tellEnd(const SavedTake& saved, const RecordSession& session, CommandOutput& output)
{
    output.remark(concat("Recorded ", session.take.events(), " events (",
                         std::round(session.length() * 10.0) / 10.0, " seconds) to '", saved.file, "'."));
    return saved.fault.empty() ? exitDone
                               : output.failure(concat(saved.fault, " It stands in '", saved.file, "'."));
}

// The user's wish to end it, or as much time again as the recording had at most.
EndOfPatience patienceOf(const RecordOptions& options, const Clock& clock)
{
    return [&clock, longest = options.seconds, start = clock.now()] {
        const bool isOver = longest && clock.now() - start > *longest;
        return takeEndWish() ? EINTR : isOver ? ETIMEDOUT : 0;
    };
}

int save(RecordSession& session, IdeaFile& file, const RecordOptions& options, CommandOutput& output,
         const RecordGround& ground)
{
    if (session.take.events() == 0) {
        return output.failure(emptyLine(session));
    }
    const auto bytes = session.take.file();
    if (!bytes) {
        return output.failure(bytes.error());
    }
    const std::filesystem::path& out = required(options.out);
    const SavedTake saved =
        saveTake(file, out, *bytes, ground.spareFolders, patienceOf(options, ground.clock));
    if (saved.file.empty()) {
        return output.failure(saved.fault);
    }
    const bool isOutputFree = out != standardOutputName || !saved.fault.empty();
    tellLosses(session, isOutputFree, output);
    return isOutputFree ? tellEnd(saved, session, output) : exitDone;
}

} // namespace

int runRecord(const RecordOptions& options, CommandOutput& output)
{
    RtAudioSink::prepare();
    const SteadyClock clock;
    const auto ports = makeMIDIPorts();
    return runRecord(options, output, {*ports, clock, spareFolders()});
}

int runRecord(const RecordOptions& options, CommandOutput& output, const RecordGround& ground)
{
    if (options.port == "list") {
        return tellPorts(ground.ports.inputNames(), output);
    }
    const std::filesystem::path& out = required(options.out);
    if (const std::string line = IdeaFile::misuseOf(out); !line.empty()) {
        return output.misuse(line);
    }
    IdeaFile file(out, false);
    if (const Result<> ready = file.prepare(); !ready) {
        return output.failure(ready.error());
    }
    listenForEndWish();
    const auto session =
        RecordSession::make(ground.clock, options.seconds, !output.isQuiet() && out != standardOutputName);
    if (const Result<> opened = session->open(ground.ports, options.port); !opened) {
        return output.failure(opened.error());
    }
    session->run();
    return save(*session, file, options, output, ground);
}

} // namespace volvelle
