#include "services/audiodevice/RtAudioStream.h"

#include "base/Text.h"

#include <algorithm>
#include <chrono>
#include <functional>

namespace volvelle {

namespace {

constexpr unsigned int wantedRate = static_cast<unsigned int>(AudioSource::sampleRate);
constexpr unsigned int wantedBuffer = 512; // frames
constexpr unsigned int mostChannels = 32;

// The puller of the stream whose callback this thread runs: the library tells errors of no stream by name.
thread_local DevicePuller* pullerOfThisThread = nullptr;

std::string nameOf(RtAudio::Api api)
{
    switch (api) {
    case RtAudio::LINUX_PULSE:
        return "PulseAudio";
    case RtAudio::UNIX_JACK:
        return "JACK";
    default:
        return "ALSA";
    }
}

WaitableClock::Time steadyNow()
{
    return std::chrono::duration_cast<WaitableClock::Time>(
        std::chrono::steady_clock::now().time_since_epoch());
}

} // namespace

RtAudioStream::RtAudioStream(RtAudio::Api api) : api(api) {}

RtAudioStream::~RtAudioStream()
{
    closeQuietly();
}

Result<> RtAudioStream::open(AudioSource& source)
{
    try {
        audio = std::make_unique<RtAudio>(api);
        audio->showWarnings(false);
        if (openAtOnce(source)) {
            return {};
        }
        if (!findDevice()) {
            return failure("");
        }
    } catch (const std::exception& exception) {
        return failure(concat(nameOf(api), ": ", exception.what()));
    }
    std::string reason;
    for (const unsigned int candidate : ratesToTry()) {
        for (const unsigned int channels : channelsToTry()) {
            const Result<> opened = openAs(source, candidate, channels);
            if (opened) {
                return {};
            }
            reason = opened.error().empty() ? reason : opened.error();
        }
    }
    return failure(reason);
}

std::string RtAudioStream::description() const
{
    return concat(nameOf(api), ": ", information.name, " at ", rate, " Hz");
}

bool RtAudioStream::isLost() const
{
    return puller->isLost() || !audio->isStreamRunning();
}

// Each question to JACK takes its time, so that the first device is asked only once it plays.
bool RtAudioStream::openAtOnce(AudioSource& source)
{
    device = 0;
    const bool isOpen =
        api == RtAudio::UNIX_JACK && audio->getCurrentApi() == api && openAs(source, wantedRate, 2);
    if (isOpen) {
        takeDevice(device);
    }
    return isOpen;
}

bool RtAudioStream::findDevice()
{
    if (audio->getCurrentApi() != api) {
        return false;
    }
    const unsigned int count = audio->getDeviceCount();
    std::vector<unsigned int> candidates;
    if (count > 0) {
        candidates.push_back(std::min(audio->getDefaultOutputDevice(), count - 1));
    }
    for (unsigned int i = 0; i < count; ++i) {
        candidates.push_back(i);
    }
    return std::ranges::any_of(candidates, [this](unsigned int candidate) { return takeDevice(candidate); });
}

bool RtAudioStream::takeDevice(unsigned int candidate)
{
    information = audio->getDeviceInfo(candidate);
    device = candidate;
    return information.probed && information.outputChannels > 0;
}

std::vector<unsigned int> RtAudioStream::ratesToTry() const
{
    if (api == RtAudio::LINUX_PULSE) {
        return {wantedRate}; // it converts itself, and each failure costs the library memory
    }
    std::vector<unsigned int> rates = information.sampleRates;
    std::stable_sort(rates.begin(), rates.end(), std::greater());
    const auto put = [&rates](unsigned int first) {
        if (std::erase(rates, first) > 0) {
            rates.insert(rates.begin(), first);
        }
    };
    put(information.preferredSampleRate);
    put(wantedRate);
    return rates;
}

std::vector<unsigned int> RtAudioStream::channelsToTry() const
{
    const unsigned int all = std::min(information.outputChannels, mostChannels);
    return all > 2 && api != RtAudio::LINUX_PULSE ? std::vector<unsigned int>{2, all}
                                                  : std::vector<unsigned int>{std::min(all, 2U)};
}

Result<> RtAudioStream::openAs(AudioSource& source, unsigned int candidate, unsigned int channels)
{
    puller = std::make_unique<DevicePuller>(source, candidate, static_cast<int>(channels));
    if (!puller->isUsable()) {
        return failure("");
    }
    RtAudio::StreamParameters parameters;
    parameters.deviceId = device;
    parameters.nChannels = channels;
    RtAudio::StreamOptions options;
    options.streamName = "Volvelle";
    options.flags = api == RtAudio::LINUX_ALSA ? RTAUDIO_ALSA_USE_DEFAULT : 0;
    unsigned int buffer = wantedBuffer;
    std::string reason;
    try {
        audio->openStream(&parameters, nullptr, RTAUDIO_FLOAT32, candidate, &buffer, pull, puller.get(),
                          &options, noteError);
        audio->startStream();
        if (audio->isStreamRunning()) {
            rate = candidate;
            return {};
        }
        reason = concat(nameOf(api), ": ", information.name, " could not be started.");
    } catch (const std::exception& exception) {
        reason = concat(nameOf(api), ": ", exception.what());
    }
    closeQuietly();
    return failure(reason);
}

void RtAudioStream::closeQuietly()
{
    try {
        if (audio && audio->isStreamRunning()) {
            audio->abortStream();
        }
        if (audio && audio->isStreamOpen()) {
            audio->closeStream();
        }
    } catch (const std::exception&) {
        puller->lose();
    }
}

int RtAudioStream::pull(void* output, void* /*input*/, unsigned int frames, double /*time*/,
                        RtAudioStreamStatus /*status*/, void* stream)
{
    constexpr int abortAnswer = 2;
    auto& puller = *static_cast<DevicePuller*>(stream);
    pullerOfThisThread = &puller;
    const auto answer = puller.pull(static_cast<float*>(output), static_cast<int>(frames), steadyNow());
    return answer == DevicePuller::Answer::goOn ? 0 : abortAnswer;
}

void RtAudioStream::noteError(RtAudioError::Type /*type*/, const std::string& message)
{
    if (pullerOfThisThread != nullptr && message.find("RtApiPulse") != std::string::npos) {
        pullerOfThisThread->lose();
    }
}

} // namespace volvelle
