#pragma once

namespace volvelle {

// While one lives, its thread renders: what a sequencer prints there takes the way for rendering threads, and
// nothing is freed. They may stand in one another. [any] On its own thread.
class AUMIDISequencerRenderScope {
public:
    AUMIDISequencerRenderScope() noexcept { ++depth; }

    ~AUMIDISequencerRenderScope() { --depth; }

    AUMIDISequencerRenderScope(const AUMIDISequencerRenderScope&) = delete;
    AUMIDISequencerRenderScope& operator=(const AUMIDISequencerRenderScope&) = delete;

    static bool isInside() noexcept { return depth > 0; }

private:
    static inline thread_local int depth = 0;
};

} // namespace volvelle
