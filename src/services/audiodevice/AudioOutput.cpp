#include "services/audiodevice/AudioOutput.h"

#include "services/audiodevice/AudioOutputWorker.h"
#include "services/audiodevice/RenderGate.h"
#include "services/audiodevice/RtAudioSink.h"
#include "services/audiodevice/SilentClockSink.h"
#include "services/audiodevice/SystemWaitableClock.h"

#include <algorithm>
#include <utility>

namespace volvelle {

AudioOutput::Options AudioOutput::forMusic()
{
    Options result;
    result.firstWait = std::chrono::milliseconds(1500);
    result.logs = false;
    return result;
}

AudioOutput::AudioOutput() : AudioOutput(Options()) {}

AudioOutput::AudioOutput(Options given) : options(std::move(given))
{
    if (!options.clock) {
        options.clock = std::make_shared<SystemWaitableClock>();
    }
    if (!options.makeDevice) {
        RtAudioSink::prepare();
        options.makeDevice = [] { return std::make_unique<RtAudioSink>(); };
    }
}

AudioOutput::~AudioOutput()
{
    close();
}

Result<> AudioOutput::open(AudioSource& source)
{
    close();
    auto newGate = std::make_shared<RenderGate>(source);
    if (options.firstWait.count() > 0) {
        const double seconds = std::chrono::duration<double>(options.firstWait).count();
        newGate->awaitDevice(static_cast<int>(seconds * AudioSource::sampleRate));
    }
    auto clockSink = std::make_unique<SilentClockSink>(options.clock);
    if (Result<> opened = clockSink->open(newGate->clockEntry()); !opened) {
        return opened;
    }
    gate = std::move(newGate);
    silentClock = std::move(clockSink);
    worker = std::make_shared<AudioOutputWorker>(options, gate);
    AudioOutputWorker::start(worker);
    return {};
}

void AudioOutput::close()
{
    if (!worker) {
        return;
    }
    gate->shut();
    worker->askToEnd();
    silentClock->close();
    worker->waitForEnd();
    worker = nullptr;
    silentClock = nullptr;
    gate = nullptr;
}

bool AudioOutput::waitForDevice(WaitableClock::Time longest)
{
    constexpr WaitableClock::Time slice = std::chrono::milliseconds(5);
    if (!worker) {
        return false;
    }
    const WaitableClock::Time end = options.clock->now() + longest;
    const auto isKnown = [this] { return gate->isDevicePlaying() || worker->hasNoDevice(); };
    WaitableClock::Time now = options.clock->now();
    while (now < end && !options.clock->waitUntil(std::min(end, now + slice), isKnown)) {
        now = options.clock->now();
    }
    return gate->isDevicePlaying();
}

bool AudioOutput::isAudible() const
{
    return gate && gate->isDevicePlaying();
}

std::string AudioOutput::description() const
{
    if (!gate || gate->isAwaitingDevice()) {
        return "";
    }
    return isAudible() ? worker->description() : "Silent clock";
}

std::string AudioOutput::problem() const
{
    return worker ? worker->problem() : "";
}

} // namespace volvelle
