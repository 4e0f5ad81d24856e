#pragma once

#include "MIDISequences/realtime/SequencerFile.h"
#include "sequence/MIDISequence16.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace volvelle {

// What a sequencer plays: the events of one loading, which stay where they are until the list dies, and the
// sequence they were made of. Made, asked for all its events, and freed on one thread. [any]
class AUMIDISequencerList {
public:
    AUMIDISequencerList(SequencerFile newFile, std::shared_ptr<MIDISequence16> newSequence);

    // Frees a row of any length step by step.
    ~AUMIDISequencerList();
    AUMIDISequencerList(const AUMIDISequencerList&) = delete;
    AUMIDISequencerList& operator=(const AUMIDISequencerList&) = delete;

    const SequencerFile file;
    const std::shared_ptr<MIDISequence16> sequence;
    const bool isSorted;                       // by time, when it was made
    std::unique_ptr<AUMIDISequencerList> next; // in a row of lists that wait to be freed

    std::size_t size() const { return file.fileEvents.size(); }

    const std::shared_ptr<AUMIDIEventEx>& operator[](std::size_t index) const
    {
        return file.fileEvents[index];
    }

    // A copy of the record, never longer than the event.
    static AUMIDIEvent recordOf(const AUMIDIEventEx& event);

    // The same in the channel of the list.
    AUMIDIEvent record(std::size_t index) const;
    std::int64_t stamp(std::size_t index) const;

    std::int64_t duration() const; // the last event's time, 0 for none
    double beats() const;          // the last event's position, 0 for none

    // The first event at `position` or after it in the list; size() where there is none.
    std::size_t firstFrom(std::int64_t position) const;

    // The events, in the channel of the list. [main]
    std::vector<std::shared_ptr<AUMIDIEventEx>> events() const;
    std::shared_ptr<AUMIDIEventEx> event(std::size_t index) const; // null past the end

    // Rewrites the first byte of all channel messages: its low nibble plus `channel`. What was rewritten is
    // none any more, and stays.
    void writeChannel(std::uint8_t channel);

    // The same without a walk: the events stay as they are, and come out rewritten. [render]
    void setChannel(std::uint8_t newChannel) { channel = newChannel; }

private:
    std::optional<std::uint8_t> channel;
};

} // namespace volvelle
