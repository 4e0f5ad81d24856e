#pragma once

#include "services/audiograph/graph/AVAudioFormat.h"

#include <span>

namespace volvelle {

class AVAudioEngine;
class RenderInput;

// A place in the graph of an engine. It is held by whoever made it, by the engine while it is attached, and
// by the render plan that it is in; it dies on the main thread.
class AVAudioNode {
public:
    static constexpr int maximumFrames = 512; // of one block

    AVAudioNode() = default;
    virtual ~AVAudioNode() = default;
    AVAudioNode(const AVAudioNode&) = delete;
    AVAudioNode& operator=(const AVAudioNode&) = delete;

    // Where it is attached, else null. Not owned; the engine clears it when it dies. [main]
    AVAudioEngine* engine = nullptr;

    // MARK: [main]

    virtual int numberOfInputs() const = 0;
    virtual int numberOfOutputs() const = 0;
    virtual AVAudioFormat inputFormatForBus(int bus) const = 0;
    virtual AVAudioFormat outputFormatForBus(int bus) const = 0;

    // True for a node that takes any rate at its inputs.
    virtual bool convertsRates() const { return false; }

    // Asks for another format at the output: false where the node cannot give it.
    virtual bool setOutputFormat(const AVAudioFormat& format) { return format == outputFormatForBus(0); }

    // Seconds from input to output.
    virtual double latency() const { return 0.0; }

    // Called some times a second while the engine runs, and at each edit.
    virtual void housekeeping() {}

    // The engine has stopped; a pause is no stop.
    virtual void engineStopped() {}

    // MARK: [render]

    // Writes one block of 1 to maximumFrames frames at the rate of the output, and pulls from the inputs what
    // it takes.
    virtual void renderNode(std::span<RenderInput> inputs, float* left, float* right,
                            int frames) noexcept = 0;

    // Enters or leaves the running plan, and falls silent.
    virtual void setInPlan(bool) noexcept {}

    virtual void resetNode() noexcept {}

    // The engine has rendered so many frames at its own rate, with this node in its plan.
    virtual void advanceEngine(int) noexcept {}
};

} // namespace volvelle
