#pragma once

#include "MIDISequences/AUMIDIEventEx.h"
#include "MIDISequences/ChannelFilter.h"
#include "MIDISequences/realtime/RenderEventList.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace volvelle {

// Merges two lists of render events into one in the order of time, and maps velocities on the way. It owns
// the list that it gives, until the next mix or until that is released. By one thread at a time; fields and
// filters are changed between mixes. [render]
class AUMIDIEventListMixer : public ChannelFilter {
public:
    AUMIDIEventListMixer();
    ~AUMIDIEventListMixer() override;
    AUMIDIEventListMixer(const AUMIDIEventListMixer&) = delete;
    AUMIDIEventListMixer& operator=(const AUMIDIEventListMixer&) = delete;

    std::array<std::uint8_t, 128> velocities{};                // by velocity; 0 makes a note on a note off
    std::vector<std::uint8_t> notes;                           // keys that pass a note split
    std::vector<std::shared_ptr<AUMIDIEventEx>> specialEvents; // of the last mix, filled anew by the next
    std::vector<AURenderEvent> tempListSort; // the same in the list given, at most three bytes of each
    AURenderEvent* lastResult = nullptr;     // owned

    // All channels and keys pass, and velocities stay as they are. unmuteAll() does the same.
    void reset() override;

    // The keys from `index` up, every `channels`-th. A `channels` of 0 and a key below 0 are fatal stops.
    virtual void makeNoteFilter(int channels, int index);

    // The MIDI events of both lists, each list's offset (samples) added to their times but not to those of
    // system messages; null where none is left. Equal times: the first list's go first, each list in its
    // order. The cable of what comes out is 0. Dropped are data bytes at the start of a record, records of
    // other types, with `noteSplit` notes whose key is not in `notes`, and closed channels, save that in
    // `ev1` controllers 121 and 123 pass those. A velocity from 1 on goes out as `velocities` has it; one
    // that became 0 is told for `ev1` only. The lists stay as they are, and neither may be the one given
    // last, which is released first. A time that does not fit is a fatal stop. No lock; allocates only for
    // more events than any mix before had, and for one of more than largeRenderEvent bytes.
    virtual AURenderEvent* mixEvents(const AURenderEvent* ev1, const AURenderEvent* ev2,
                                     std::int64_t offset1 = 0, std::int64_t offset2 = 0,
                                     bool noteSplit = false);

    // Releases the list given last.
    virtual void deallocateRealtimeEventListHead();

private:
    struct Source {
        std::int64_t offset; // samples
        bool noteSplit;
        bool silences; // opens closed channels to commands of silence, and tells of velocities that became 0
    };

    void collect(const AURenderEvent* event, const Source& source);
    bool passes(const AUMIDIEvent& event, const Source& source) const;
    void mapVelocity(AUMIDIEvent& event, const Source& source) const;
    void append(const AUMIDIEvent& event, const AUMIDIEvent& head);
    void sortSpecialEvents();

    // Events to be filled in the order of a mix.
    struct Reused {
        std::vector<std::shared_ptr<AUMIDIEventEx>> events;
        std::size_t count = 0; // of them in this mix
    };

    const std::shared_ptr<AUMIDIEventEx>& next(Reused& of, std::uint32_t bytes);

    const RenderEventRoom room{listRoom};
    Reused reused;     // of up to MAXBYTES
    Reused reusedLong; // of up to largeRenderEvent
    std::vector<EventPlace> places;
    std::vector<std::shared_ptr<AUMIDIEventEx>> ordered; // empty between mixes
};

} // namespace volvelle
