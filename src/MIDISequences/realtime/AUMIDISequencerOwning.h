#pragma once

#include "MIDISequences/realtime/AUMIDISequencer.h"
#include "MIDISequences/realtime/AUMIDISequencerHold.h"
#include "MIDISequences/realtime/AUMIDISequencerRenderScope.h"

#include <utility>

namespace volvelle {

template <class Body>
void AUMIDISequencer::own(const Body& body)
{
    std::unique_ptr<AUMIDISequencerList> spent;
    std::vector<std::shared_ptr<AUMIDIEventEx>> ended;
    const bool mayFree = !AUMIDISequencerRenderScope::isInside();
    const AUMIDISequencerHold hold(owner);
    body();
    if (mayFree && retired) {
        ended.assign(runningNotes.begin(), runningNotes.end());
        ended.swap(held);
        spent = std::move(retired);
    }
}

template <class Body>
bool AUMIDISequencer::ownAtOnce(const Body& body)
{
    const AUMIDISequencerRenderScope scope;
    const AUMIDISequencerHold hold(owner, AUMIDISequencerHold::Once::yes);
    if (hold) {
        body();
    }
    return static_cast<bool>(hold);
}

} // namespace volvelle
