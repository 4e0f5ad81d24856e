#pragma once

#include "MIDISequences/AUMIDIEventEx.h"
#include "MIDISequences/ChannelFilter.h"
#include "MIDISequences/realtime/RenderEventList.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace volvelle {

// Gives a list of render events anew in the order of time, without the channels that do not pass. It owns the
// list that it gives, until the next sorting or until that is released. By one thread at a time. [render]
class AUMIDIEventListSorter : public ChannelFilter {
public:
    AUMIDIEventListSorter();
    ~AUMIDIEventListSorter() override;
    AUMIDIEventListSorter(const AUMIDIEventListSorter&) = delete;
    AUMIDIEventListSorter& operator=(const AUMIDIEventListSorter&) = delete;

    std::vector<std::shared_ptr<AUMIDIEventEx>> specialEvents; // stays empty
    std::vector<AURenderEvent> tempListSort; // the events of the last sorting, at most three bytes of each
    AURenderEvent* lastResult = nullptr;     // owned

    // The MIDI events of the list, with `offset` (samples) added to their times, bytes and cable as they are;
    // null where none is left. Equal times stay in the order of the list. Dropped are closed channels, data
    // bytes at the start of a record, and records of other types; system messages pass every filter. The list
    // stays as it is, and may not be the one given last, which is released first. A time that does not fit is
    // a fatal stop. No lock; allocates only for a list longer than any before it.
    virtual AURenderEvent* sortEvents(const AURenderEvent* event, std::int64_t offset = 0);

    // Releases the list given last.
    virtual void deallocateRealtimeEventListHead();

private:
    const RenderEventRoom room{listRoom};
    std::vector<EventPlace> places;          // of the events that passed
    std::vector<const AUMIDIEvent*> sources; // the same, in the list
};

} // namespace volvelle
