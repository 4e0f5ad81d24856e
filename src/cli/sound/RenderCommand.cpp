#include "cli/sound/RenderCommand.h"

#include "base/Text.h"
#include "rendering/Mixdown.h"
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

// Reads the file and cuts it into parts; what keeps it from being rendered, else empty.
std::string readParts(const RenderOptions& options, std::vector<std::uint8_t>& data,
                      std::vector<RenderPart>& parts)
{
    MusicSequence sequence;
    std::uint32_t tracks = 0;
    OSStatus status = NewMusicSequence(sequence);
    status = status == noErr ? readFile(options.file, data) : status;
    if (status == noErr) {
        status = MusicSequenceFileLoadData(sequence, data, kMusicSequenceFile_MIDIType,
                                           kMusicSequenceLoadSMF_PreserveTracks);
    }
    status = status == noErr ? MusicSequenceGetTrackCount(sequence, tracks) : status;
    if (status != noErr) {
        return readFailure(options.file, status);
    }
    if (tracks == 0) {
        return trackFailure(options.file);
    }
    parts = cutIntoParts(sequence, coresOf(options));
    const bool isTooLong = !parts.empty() && parts.back().endBlock > RenderPart::longestPiece;
    return isTooLong ? concat("'", options.file.string(), "' is too long: at most 24 hours are rendered.")
                     : std::string();
}

} // namespace

int runRender(const RenderOptions& options, CommandOutput& output)
{
    std::vector<std::uint8_t> data;
    std::vector<RenderPart> parts;
    std::string error;
    const bool isNamed = options.out != standardOutputName;
    if (isNamed && !AudioFileFormat::of(options.out, options.rate, error)) {
        return output.misuse(error);
    }
    error = readParts(options, data, parts);
    if (!error.empty()) {
        return output.failure(error);
    }
    AudioFileWriter writer;
    if (!writer.open(isNamed ? options.out : "standard output", {options.rate, !isNamed}, error)) {
        return output.failure(error);
    }
    Mixdown mixdown(std::move(data), std::move(parts), options.bank, coresOf(options));
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
