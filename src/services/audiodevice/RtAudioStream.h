#pragma once

#include "base/Result.h"
#include "services/audiodevice/DevicePuller.h"

#include <RtAudio.h>
#include <memory>
#include <string>
#include <vector>

namespace volvelle {

// One stream to the default device of one of the system's sound interfaces. Ends with its life. No exception
// leaves it.
class RtAudioStream {
public:
    // [main, worker]
    explicit RtAudioStream(RtAudio::Api api);
    ~RtAudioStream();
    RtAudioStream(const RtAudioStream&) = delete;
    RtAudioStream& operator=(const RtAudioStream&) = delete;

    // Fails with an empty line where the interface has no device. [main, worker]
    Result<> open(AudioSource& source);

    std::string description() const;

    // [any]
    bool isLost() const;

private:
    bool openAtOnce(AudioSource& source);
    bool findDevice();
    bool takeDevice(unsigned int candidate); // false where it has no outputs
    std::vector<unsigned int> ratesToTry() const;
    std::vector<unsigned int> channelsToTry() const;
    Result<> openAs(AudioSource& source, unsigned int candidate, unsigned int channels);

    void closeQuietly();

    static int pull(void* output, void* input, unsigned int frames, double time, RtAudioStreamStatus status,
                    void* stream);
    static void noteError(RtAudioError::Type type, const std::string& message);

    RtAudio::Api api;
    unsigned int device = 0;
    unsigned int rate = 0; // Hz
    RtAudio::DeviceInfo information;
    std::unique_ptr<DevicePuller> puller;
    std::unique_ptr<RtAudio> audio; // last: its end ends the callbacks
};

} // namespace volvelle
