#include "services/audiodevice/AudioFileWriter.h"

#include "base/Text.h"
#include "base/realtime/AudioSink.h"
#include "services/audiodevice/RateConverter.h"
#include "services/files/FileFailure.h"
#include "services/files/NewFile.h"

#include <algorithm>
#include <optional>
#include <sndfile.h>
#include <unistd.h>
#include <vector>

namespace volvelle {

namespace {

constexpr std::int64_t longestWAV = 0xFFFF0000; // bytes: its lengths have 32 bits

NewFile& fileOf(void* user)
{
    return *static_cast<NewFile*>(user);
}

SF_VIRTUAL_IO writingInto()
{
    SF_VIRTUAL_IO io = {};
    io.get_filelen = [](void* user) -> sf_count_t { return fileOf(user).length(); };
    io.seek = [](sf_count_t offset, int whence, void* user) -> sf_count_t {
        return fileOf(user).seek(offset, whence);
    };
    io.read = [](void* bytes, sf_count_t count, void* user) -> sf_count_t {
        return fileOf(user).read(bytes, count);
    };
    io.write = [](const void* bytes, sf_count_t count, void* user) -> sf_count_t {
        return fileOf(user).write(bytes, count) ? count : 0;
    };
    io.tell = [](void* user) -> sf_count_t { return fileOf(user).seek(0, SEEK_CUR); };
    return io;
}

} // namespace

struct AudioFileWriter::File {
    ~File()
    {
        if (sound != nullptr) {
            sf_close(sound);
        }
    }

    std::filesystem::path path;
    AudioFileFormat format;
    NewFile target;
    SNDFILE* sound = nullptr;
    std::optional<RateConverter> converter;
    std::vector<float> interleaved; // what waits to be converted and written
    std::vector<float> converted;
    std::int64_t length = 0; // frames, before conversion
};

AudioFileWriter::AudioFileWriter() = default;
AudioFileWriter::~AudioFileWriter() = default;

std::int64_t AudioFileWriter::length() const
{
    return file ? file->length : 0;
}

Result<> AudioFileWriter::open(const std::filesystem::path& path, const Options& options)
{
    file = nullptr;
    const auto format = AudioFileFormat::of(options.isStandardOutput ? "a.wav" : path, options.rate);
    if (!format) {
        return fail(format.error());
    }
    file = std::make_unique<File>();
    file->path = path;
    file->format = *format;
    const bool isCreated =
        options.isStandardOutput ? file->target.createFor(STDOUT_FILENO) : file->target.create(path);
    if (!isCreated) {
        return fail(lineOfFailure());
    }
    SF_INFO information = {};
    information.samplerate = format->rate;
    information.channels = 2;
    information.format = format->code;
    SF_VIRTUAL_IO io = writingInto();
    file->sound = sf_open_virtual(&io, SFM_WRITE, &information, &file->target);
    if (file->sound == nullptr || file->target.failure() != 0) {
        return fail(lineOfFailure());
    }
    double quality = 0.7;
    sf_command(file->sound, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    sf_command(file->sound, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    sf_command(file->sound, SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof(quality));
    if (options.rate != static_cast<int>(AudioSource::sampleRate)) {
        file->converter.emplace(options.rate / AudioSource::sampleRate);
    }
    return {};
}

Result<> AudioFileWriter::write(const float* left, const float* right, int frames)
{
    if (!file) {
        return fail(reason);
    }
    const auto count = static_cast<std::size_t>(std::max(frames, 0));
    file->interleaved.resize(2 * count);
    for (std::size_t i = 0; i < count; ++i) {
        file->interleaved[2 * i] = left[i];
        file->interleaved[2 * i + 1] = right[i];
    }
    file->length += static_cast<std::int64_t>(count);
    return writeConverted(false);
}

Result<> AudioFileWriter::finish()
{
    if (!file) {
        return fail(reason);
    }
    file->interleaved.clear();
    if (file->converter) {
        if (Result<> written = writeConverted(true); !written) {
            return written;
        }
    }
    const int closed = sf_close(file->sound);
    file->sound = nullptr;
    if (closed != 0 || !file->target.takePlace()) {
        return fail(lineOfFailure());
    }
    file = nullptr;
    reason = "No audio file is being written.";
    return {};
}

Result<> AudioFileWriter::writeConverted(bool isEnd)
{
    const std::vector<float>* samples = &file->interleaved;
    if (auto& converter = file->converter; converter.has_value()) {
        file->converted.clear();
        if (!converter->convert(file->interleaved, isEnd, file->converted)) {
            return fail(concat("The rate could not be converted to ", file->format.rate, " Hz."));
        }
        samples = &file->converted;
    }
    const auto frames = static_cast<sf_count_t>(samples->size() / 2);
    if (sf_writef_float(file->sound, samples->data(), frames) != frames || file->target.failure() != 0) {
        return fail(lineOfFailure());
    }
    if ((file->format.code & SF_FORMAT_TYPEMASK) == SF_FORMAT_WAV && file->target.length() > longestWAV) {
        return fail("A WAV file cannot grow beyond 4 GB: take .flac.");
    }
    return {};
}

std::string AudioFileWriter::lineOfFailure() const
{
    const int number = file->target.failure();
    if (number != 0) {
        return writeFailure(file->target.failedAside() ? file->target.folderAside() : file->path, number);
    }
    return concat("'", file->path.string(), "' could not be written: ", sf_strerror(file->sound), ".");
}

Result<> AudioFileWriter::fail(const std::string& line)
{
    reason = line;
    file = nullptr;
    return failure(line);
}

} // namespace volvelle
