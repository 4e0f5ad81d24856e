#pragma once

#include "base/Result.h"
#include "base/Timer.h"
#include "base/realtime/AudioSink.h"
#include "base/realtime/Handoff.h"
#include "services/audiograph/graph/AVAudioMixerNode.h"
#include "services/audiograph/graph/AVAudioOutputNode.h"
#include "services/audiograph/graph/AVAudioUnit.h"
#include "services/audiograph/graph/AudioConnections.h"
#include "services/audiograph/graph/RenderPlan.h"

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

namespace volvelle {

class AVAudioSequencer;

// The graph of nodes and what drives it. The main thread edits it, while the render thread renders what it
// was last given: each edit makes a new render plan, which the render thread takes over at the start of a
// block. What it gives back is freed by collectGarbage().
//
// Made with std::make_shared where sequencers stand on it, or where it is to keep house by itself. There are
// always a main mixer and an output node, and the one is connected to the other.
class AVAudioEngine final : public AudioSource, public std::enable_shared_from_this<AVAudioEngine> {
public:
    AVAudioEngine();
    // Stops, and lets go of all nodes.
    ~AVAudioEngine() override;
    AVAudioEngine(const AVAudioEngine&) = delete;
    AVAudioEngine& operator=(const AVAudioEngine&) = delete;

    // MARK: The graph [main]
    //
    // A null node, and one of another engine, answers kAudio_ParamError.

    // A node that is attached already stays so.
    [[nodiscard]] OSStatus attachNode(const std::shared_ptr<AVAudioNode>& node);

    // Disconnects the node and lets go of it. One that is not attached answers kAUGraphErr_NodeNotFound; main
    // mixer and output node stay: kAudio_ParamError.
    [[nodiscard]] OSStatus detachNode(const std::shared_ptr<AVAudioNode>& node);

    // Connects output `fromBus` to input `toBus`, in place of what both were connected to. Without a format
    // the source keeps its own, or takes the destination's where that converts nothing. Nodes that are not
    // attached answer kAUGraphErr_NodeNotFound, busses that are not there kAudioUnitErr_InvalidElement, a
    // circle kAUGraphErr_InvalidConnection, rates that do not fit kAudioUnitErr_FormatNotSupported; nothing
    // changes then.
    [[nodiscard]] OSStatus connect(const std::shared_ptr<AVAudioNode>& from,
                                   const std::shared_ptr<AVAudioNode>& to, int fromBus, int toBus,
                                   std::optional<AVAudioFormat> format = std::nullopt);

    // All inputs, one input, the outputs. A node without any connection is no error, one that is not attached
    // answers kAUGraphErr_NodeNotFound.
    [[nodiscard]] OSStatus disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node);
    [[nodiscard]] OSStatus disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node, int bus);
    [[nodiscard]] OSStatus disconnectNodeOutput(const std::shared_ptr<AVAudioNode>& node);

    const std::shared_ptr<AVAudioMixerNode>& mainMixerNode() const { return mixer; }

    const std::shared_ptr<AVAudioOutputNode>& outputNode() const { return output; }

    // Main mixer and output node among them.
    const std::vector<std::shared_ptr<AVAudioNode>>& attachedNodes() const { return nodes; }

    const AudioConnections& connections() const { return wires; }

    // MARK: Running [main]

    // What pulls while the engine runs; null for nothing. While it runs the old sink is closed and the new
    // one opened; where that fails nothing pulls. A sink that opens a device
    // slowly begins on a clock of its own.
    Result<> setSink(std::shared_ptr<AudioSink> sink);

    // Makes ready what start() needs, so that it takes no time.
    void prepare();

    // Fails where the sink does not open. Without a sink, and in manual rendering mode, it just runs.
    Result<> start();

    // The graph stands still and keeps what sounds.
    void pause();

    // Stops the sequencers as well; units begin anew with the next start.
    void stop();

    // [any]
    bool isRunning() const { return running.load(std::memory_order_acquire); }

    // From now on renderOffline() pulls, on the main thread, and no sink is opened. Answers
    // kAudioEngineErr_Initialized while the engine runs, kAudio_ParamError for frames below 1.
    [[nodiscard]] OSStatus enableManualRenderingMode(int maximumFrames);
    [[nodiscard]] OSStatus disableManualRenderingMode();

    bool isInManualRenderingMode() const { return manualFrames > 0; }

    // Writes `frames` frames, 1 to the maximum; else kAudio_ParamError. Without the mode
    // kAudioEngineErr_InvalidMode, without a start kAudioEngineErr_NotRunning. [main]
    [[nodiscard]] OSStatus renderOffline(int frames, float* left, float* right);

    // Frees what the render thread no longer needs, and lets the units keep house. Called by each edit, and
    // some times a second by the main run loop while the engine runs and does not render by hand. [main]
    void collectGarbage();

    // MARK: For sequencers [main]

    void addSequencer(AVAudioSequencer& sequencer);
    // The render thread sends the note-offs of what sounds before it forgets the sequencer.
    void removeSequencer(AVAudioSequencer& sequencer);

    // MARK: Rendering [render]

    // Any number of frames from 1; silence while the engine does not run.
    void render(float* left, float* right, int frames) noexcept override;

private:
    [[nodiscard]] OSStatus check(const std::shared_ptr<AVAudioNode>& node) const;
    void publish();
    Result<> openSink();
    void closeSink();
    void keepHouse();

    const std::shared_ptr<AVAudioMixerNode> mixer = std::make_shared<AVAudioMixerNode>();
    const std::shared_ptr<AVAudioOutputNode> output = std::make_shared<AVAudioOutputNode>();
    std::vector<std::shared_ptr<AVAudioNode>> nodes;
    AudioConnections wires;
    std::vector<AVAudioSequencer*> sequencers; // each takes itself out
    std::shared_ptr<AudioSink> sink;
    bool isSinkOpen = false;
    int manualFrames = 0; // 0: the mode is off
    std::atomic<bool> running{false};
    std::atomic<bool> resetWanted{false};
    std::shared_ptr<Timer> houseTimer; // null while nobody keeps house
    Handoff<RenderPlan> plans;
};

} // namespace volvelle
