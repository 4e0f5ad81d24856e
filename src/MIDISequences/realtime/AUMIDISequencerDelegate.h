#pragma once

namespace volvelle {

// Listens to a sequencer, which holds it strongly. Called when the operation that brought the call about has
// ended and may be followed by another one: a call may start, stop, seek or send. [main, render] Those of a
// cycle come on the thread that renders, and there take no lock and no memory.
class AUMIDISequencerDelegate {
public:
    virtual ~AUMIDISequencerDelegate() = default;

    // The last event of a file that does not loop went out, and the sequencer has stopped.
    virtual void onAUSequencerComplete() = 0;

    // The file starts over. `count` is 1 on every pass.
    virtual void onAUSequencerLoop(int count) = 0;

    // A list of events is in use.
    virtual void onAUSequencerLoaded() = 0;
};

} // namespace volvelle
