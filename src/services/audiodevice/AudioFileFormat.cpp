#include "services/audiodevice/AudioFileFormat.h"

#include "base/Text.h"
#include "services/files/FileNames.h"

#include <sndfile.h>

namespace volvelle {

namespace {

int codeOf(const std::string& ending)
{
    if (ending == ".wav") {
        return SF_FORMAT_WAV | SF_FORMAT_PCM_24;
    }
    if (ending == ".flac") {
        return SF_FORMAT_FLAC | SF_FORMAT_PCM_24;
    }
    return ending == ".ogg" ? SF_FORMAT_OGG | SF_FORMAT_VORBIS : 0;
}

} // namespace

Result<AudioFileFormat> AudioFileFormat::of(const std::filesystem::path& path, int rate)
{
    const std::string ending = fileEnding(path);
    const int code = codeOf(ending);
    const AudioFileFormat format{code == 0 && isStream(path) ? codeOf(".wav") : code, rate};
    if (format.code == 0) {
        return failure(ending.empty() ? "An audio file's name must end in .wav, .flac or .ogg."
                                      : concat("Audio files cannot be written as ", ending,
                                               ": the name must end in .wav, .flac or .ogg."));
    }
    if (rate < lowestRate || rate > highestRate) {
        return failure(concat("Audio files cannot be written at ", rate, " Hz: it must be ", lowestRate,
                              " to ", highestRate, "."));
    }
    return format;
}

} // namespace volvelle
