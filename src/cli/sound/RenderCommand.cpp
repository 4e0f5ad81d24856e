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

// Reads the file and cuts it into parts.
Result<> readParts(const RenderOptions& options, RenderPiece& piece, std::vector<RenderPart>& parts)
{
    std::vector<std::uint8_t> data;
    OSStatus status = readFile(options.file, data);
    status = status == noErr ? piece.read(data, options.engine == renderEngine) : status;
    if (status != noErr) {
        return failure(readFailure(options.file, status));
    }
    if (!piece.hasTracks()) {
        return failure(trackFailure(options.file));
    }
    parts = piece.parts(coresOf(options));
    const bool isTooLong = !parts.empty() && parts.back().endBlock > RenderPart::longestPiece;
    if (isTooLong) {
        return failure(concat("'", options.file.string(), "' is too long: at most 24 hours are rendered."));
    }
    return {};
}

} // namespace

int runRender(const RenderOptions& options, CommandOutput& output)
{
    RenderPiece piece;
    std::vector<RenderPart> parts;
    const bool isNamed = options.out != standardOutputName;
    if (isNamed) {
        if (const auto format = AudioFileFormat::of(options.out, options.rate); !format) {
            return output.misuse(format.error());
        }
    }
    Result<> done = readParts(options, piece, parts);
    if (!done) {
        return output.failure(done.error());
    }
    AudioFileWriter writer;
    done = writer.open(isNamed ? options.out : "standard output", {options.rate, !isNamed});
    if (!done) {
        return output.failure(done.error());
    }
    Mixdown mixdown(std::move(piece), std::move(parts), options.bank, coresOf(options));
    const auto showProgress = [&](int percent) { output.progress(percent, 100); };
    done = mixdown.write(writer, showProgress);
    if (!done) {
        return output.failure(done.error());
    }
    const double seconds = static_cast<double>(writer.length()) / AudioSource::sampleRate;
    done = writer.finish();
    if (!done) {
        return output.failure(done.error());
    }
    if (!isNamed) {
        return exitDone;
    }
    output.remark(
        concat("Wrote '", options.out.string(), "': ", std::round(seconds * 10.0) / 10.0, " seconds."));
    return exitDone;
}

} // namespace volvelle
