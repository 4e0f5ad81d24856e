#include "cli/sound/RenderCommand.h"

#include "base/Text.h"
#include "cli/sound/Mixdown.h"
#include "services/audiodevice/AudioFileWriter.h"
#include "services/files/SafeFile.h"

#include <algorithm>
#include <cmath>
#include <thread>

namespace volvelle {

namespace {

int coresOf(const RenderOptions& options)
{
    const int all = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    return options.cores > 0 ? options.cores : all;
}

} // namespace

int runRender(const RenderOptions& options, CommandOutput& output)
{
    std::vector<std::uint8_t> data;
    MusicSequence sequence;
    NewMusicSequence(sequence);
    OSStatus status = readFile(options.file, data);
    if (status == noErr) {
        status = MusicSequenceFileLoadData(sequence, data, kMusicSequenceFile_MIDIType,
                                           kMusicSequenceLoadSMF_PreserveTracks);
    }
    if (status != noErr) {
        return output.failure(readFailure(options.file, status));
    }
    std::uint32_t tracks = 0;
    MusicSequenceGetTrackCount(sequence, tracks);
    if (tracks == 0) {
        return output.failure(trackFailure(options.file));
    }
    std::string error;
    AudioFileWriter writer;
    const bool isNamed = options.out != standardOutputName;
    if (!writer.open(isNamed ? options.out : "standard output", {options.rate, !isNamed}, error)) {
        return output.failure(error);
    }
    Mixdown mixdown(std::move(data), renderParts(sequence, coresOf(options)), options.bank, coresOf(options));
    const auto showProgress = [&](int percent) { output.progress(percent, 100); };
    if (!mixdown.write(writer, showProgress, error)) {
        return output.failure(error);
    }
    const double seconds = static_cast<double>(writer.length()) / AudioSource::sampleRate;
    if (!writer.finish(error)) {
        return output.failure(error);
    }
    if (!isNamed) {
        return exitDone;
    }
    output.remark(
        concat("Wrote '", options.out.string(), "': ", std::round(seconds * 10.0) / 10.0, " seconds."));
    return exitDone;
}

} // namespace volvelle
