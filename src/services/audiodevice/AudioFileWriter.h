#pragma once

#include "base/Result.h"
#include "base/realtime/AudioSource.h"
#include "services/audiodevice/AudioFileFormat.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace volvelle {

// Writes stereo audio of 48,000 Hz into a WAV, FLAC or OGG file at a rate of choice. The file grows beside
// its target under another name and takes its place in finish(), where a device or a pipe gets its bytes;
// until then, and on any failure, an existing file is as it was, and nothing is left of a file that was not
// finished. After a failure all operations that follow fail with the same line. [any]
class AudioFileWriter {
public:
    struct Options {
        int rate = static_cast<int>(AudioSource::sampleRate); // Hz
        bool isStandardOutput = false; // a WAV file there; the path is but its name in messages
    };

    AudioFileWriter();
    ~AudioFileWriter();
    AudioFileWriter(const AudioFileWriter&) = delete;
    AudioFileWriter& operator=(const AudioFileWriter&) = delete;

    // Begins a file; one that was begun before is dropped.
    Result<> open(const std::filesystem::path& path, const Options& options);

    // Appends `frames` frames. What exceeds full scale is clipped.
    Result<> write(const float* left, const float* right, int frames);

    // Completes the file and puts it in its place.
    Result<> finish();

    // Frames that were written, before conversion.
    std::int64_t length() const;

private:
    struct File;

    Result<> fail(const std::string& line);
    Result<> writeConverted(bool isEnd);
    std::string lineOfFailure() const;

    std::unique_ptr<File> file; // null while none is written
    std::string reason = "No audio file is being written.";
};

} // namespace volvelle
