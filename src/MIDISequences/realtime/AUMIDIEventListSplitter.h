#pragma once

#include "MIDISequences/ChannelFilter.h"
#include "MIDISequences/realtime/RenderEventList.h"
#include "wire/ShortMessage.h"

#include <array>
#include <vector>

namespace volvelle {

// Cuts a list of render events into one for each channel. An instance is a channel, or -1 for all of them. It
// owns the list of a channel until that is released; one that another took the place of lives on until
// maximumReplaced more have. The list of instance -1 is the caller's, who gives it to releaseRenderEvents().
// By one thread at a time. [render]
class AUMIDIEventListSplitter : public ChannelFilter {
public:
    AUMIDIEventListSplitter();
    ~AUMIDIEventListSplitter() override;
    AUMIDIEventListSplitter(const AUMIDIEventListSplitter&) = delete;
    AUMIDIEventListSplitter& operator=(const AUMIDIEventListSplitter&) = delete;

    static constexpr std::size_t maximumReplaced = 64; // lists

    int NUMSAMPLERS = 16;                  // instances; more than 16 have no place
    std::vector<AUMIDIEvent> tempListME;   // passed the filters in the last split, at most three bytes each
    std::vector<AURenderEvent> tempListRE; // those of them that were kept
    std::array<AURenderEvent*, channelCount> channelHeads{}; // by channel, owned

    // The MIDI events of the list for that instance, in their order; null where there are none, or for an
    // instance out of range. Of the system messages a channel gets those whose low four bits are its number,
    // as 0xF0 channel 0. Dropped are closed channels for every instance, data bytes at the start of a record,
    // and records of other types. Where nothing passes, the channel keeps the list that it had. The list
    // stays as it is. No lock; allocates only for a list longer than any before it.
    virtual AURenderEvent* splitRealtimeEventListHead(const AURenderEvent* allEvents, int instance);

    // Releases the list of a channel; nothing for -1 and for an instance out of range.
    virtual void deallocateRealtimeEventListHead(int instance);

private:
    bool passes(const AUMIDIEvent& event, int instance) const;
    void keepReplaced(AURenderEvent* head);

    std::vector<const AUMIDIEvent*> sources; // of tempListME
    std::vector<AURenderEvent*> replaced;    // owned; their readers may still have them
    const RenderEventRoom room{listRoom};
};

} // namespace volvelle
