#include "services/audiodevice/AudioOutputWorker.h"

#include "base/Console.h"

#include <system_error>
#include <utility>

namespace volvelle {

AudioOutputWorker::AudioOutputWorker(const AudioOutput::Options& options, std::shared_ptr<RenderGate> gate)
    : options(options), gate(std::move(gate))
{
}

void AudioOutputWorker::start(const std::shared_ptr<AudioOutputWorker>& worker)
{
    try {
        worker->thread = std::thread([worker] { worker->run(); });
    } catch (const std::system_error&) {
        worker->openDevice(nullptr);
        worker->ended = true;
    }
}

void AudioOutputWorker::askToEnd()
{
    ending = true;
    options.clock->wake();
}

void AudioOutputWorker::waitForEnd()
{
    const auto hasEnded = [this] { return ended.load(); };
    const bool inTime = options.clock->waitUntil(options.clock->now() + options.patience, hasEnded);
    if (thread.joinable()) {
        inTime ? thread.join() : thread.detach();
    }
}

std::string AudioOutputWorker::description() const
{
    const std::lock_guard lock(mutex);
    return deviceDescription;
}

std::string AudioOutputWorker::problem() const
{
    const std::lock_guard lock(mutex);
    return deviceProblem;
}

void AudioOutputWorker::run()
{
    while (!ending) {
        std::unique_ptr<AudioSink> device = options.makeDevice();
        if (openDevice(device.get())) {
            watch(*device);
            device->close();
        }
        device = nullptr;
        pause(options.lookAgain);
    }
    ended = true;
    options.clock->wake();
}

bool AudioOutputWorker::openDevice(AudioSink* device)
{
    const Result<> opened = device != nullptr ? device->open(gate->deviceEntry())
                                              : failure("No audio device could be looked for.");
    {
        const std::lock_guard lock(mutex);
        deviceProblem = opened.error();
        deviceDescription = opened ? device->description() : "";
    }
    noDevice = !opened;
    if (!opened) {
        gate->dismissDevice();
    }
    if (!opened && !std::exchange(toldOfNone, true)) {
        tell("There is no audio device: the music plays silently.");
    }
    toldOfNone = toldOfNone || static_cast<bool>(opened);
    options.clock->wake();
    return static_cast<bool>(opened);
}

void AudioOutputWorker::watch(const AudioSink& device)
{
    gate->admitDevice();
    while (!ending && device.isAudible()) {
        pause(options.watch);
    }
    const bool played = gate->isDevicePlaying();
    gate->dismissDevice();
    if (played) {
        tell("The audio device was lost: the music plays on silently.");
    }
}

void AudioOutputWorker::pause(WaitableClock::Time length)
{
    options.clock->waitUntil(options.clock->now() + length, [this] { return ending.load(); });
}

void AudioOutputWorker::tell(std::string_view line) const
{
    if (!ending && options.logs) {
        debugprint(std::string(line));
    }
}

} // namespace volvelle
