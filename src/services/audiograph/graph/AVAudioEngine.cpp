#include "services/audiograph/graph/AVAudioEngine.h"

#include "base/MainThread.h"
#include "base/RunLoop.h"
#include "services/audiograph/sequencer/AVAudioSequencer.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace volvelle {

AVAudioEngine::AVAudioEngine() : nodes{output, mixer}
{
    output->engine = this;
    mixer->engine = this;
    std::ignore = connect(mixer, output, 0, 0);
}

AVAudioEngine::~AVAudioEngine()
{
    stop();
    for (const auto& node : nodes) {
        node->engine = nullptr;
    }
}

// MARK: Running

Result<> AVAudioEngine::setSink(std::shared_ptr<AudioSink> newSink)
{
    assertMainThread();
    closeSink();
    sink = std::move(newSink);
    return isRunning() ? openSink() : Result<>();
}

void AVAudioEngine::prepare()
{
    publish();
}

Result<> AVAudioEngine::start()
{
    assertMainThread();
    if (isRunning()) {
        return {};
    }
    running.store(true, std::memory_order_release);
    if (Result<> opened = openSink(); !opened) {
        running.store(false, std::memory_order_release);
        return opened;
    }
    keepHouse();
    return {};
}

void AVAudioEngine::keepHouse()
{
    constexpr double interval = 0.25; // seconds
    if (!isInManualRenderingMode() && !weak_from_this().expired()) {
        houseTimer = mainRunLoop().schedule(interval, weak_from_this(), [this] { collectGarbage(); });
    }
}

void AVAudioEngine::pause()
{
    if (houseTimer != nullptr) {
        std::exchange(houseTimer, nullptr)->invalidate();
    }
    closeSink();
    running.store(false, std::memory_order_release);
}

void AVAudioEngine::stop()
{
    assertMainThread();
    for (AVAudioSequencer* sequencer : sequencers) {
        sequencer->stop();
    }
    pause();
    for (const std::shared_ptr<AVAudioNode>& node : nodes) {
        node->engineStopped();
    }
    resetWanted.store(true, std::memory_order_release);
    collectGarbage();
}

Result<> AVAudioEngine::openSink()
{
    if (sink == nullptr || isInManualRenderingMode()) {
        return {};
    }
    Result<> opened = sink->open(*this);
    isSinkOpen = static_cast<bool>(opened);
    return opened;
}

void AVAudioEngine::closeSink()
{
    if (isSinkOpen) {
        sink->close();
        isSinkOpen = false;
    }
}

OSStatus AVAudioEngine::enableManualRenderingMode(int maximumFramesWanted)
{
    if (isRunning()) {
        return kAudioEngineErr_Initialized;
    }
    if (maximumFramesWanted < 1) {
        return kAudio_ParamError;
    }
    manualFrames = maximumFramesWanted;
    return noErr;
}

OSStatus AVAudioEngine::disableManualRenderingMode()
{
    if (isRunning()) {
        return kAudioEngineErr_Initialized;
    }
    manualFrames = 0;
    return noErr;
}

OSStatus AVAudioEngine::renderOffline(int frames, float* left, float* right)
{
    if (!isInManualRenderingMode()) {
        return kAudioEngineErr_InvalidMode;
    }
    if (!isRunning()) {
        return kAudioEngineErr_NotRunning;
    }
    if (frames < 1 || frames > manualFrames) {
        return kAudio_ParamError;
    }
    render(left, right, frames);
    return noErr;
}

void AVAudioEngine::collectGarbage()
{
    plans.collect();
    for (const std::shared_ptr<AVAudioNode>& node : nodes) {
        node->housekeeping();
    }
    for (AVAudioSequencer* sequencer : sequencers) {
        sequencer->collectGarbage();
    }
}

void AVAudioEngine::addSequencer(AVAudioSequencer& sequencer)
{
    sequencers.push_back(&sequencer);
    publish();
}

void AVAudioEngine::removeSequencer(AVAudioSequencer& sequencer)
{
    std::erase(sequencers, &sequencer);
    publish();
}

void AVAudioEngine::publish()
{
    std::vector<std::shared_ptr<SequencerCore>> cores;
    cores.reserve(sequencers.size());
    for (const AVAudioSequencer* sequencer : sequencers) {
        cores.push_back(sequencer->renderCore());
    }
    plans.publish(std::make_unique<RenderPlan>(wires, output, std::move(cores)));
    collectGarbage();
}

// MARK: Rendering

void AVAudioEngine::render(float* left, float* right, int frames) noexcept
{
    if (!isRunning()) {
        std::fill_n(left, frames, 0.0F);
        std::fill_n(right, frames, 0.0F);
        return;
    }
    plans.take([this](RenderPlan* before) { plans.current()->follow(before); });
    RenderPlan& plan = *plans.current();
    if (resetWanted.exchange(false, std::memory_order_acq_rel)) {
        plan.resetNodes();
    }
    plan.beginBlock();
    for (int done = 0; done < frames; done += AVAudioNode::maximumFrames) {
        plan.render(left + done, right + done, std::min(AVAudioNode::maximumFrames, frames - done));
    }
    plan.endBlock();
}

} // namespace volvelle
