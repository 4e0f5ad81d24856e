#pragma once

#include "services/audiograph/AVAudioUnit.h"
#include "services/audiograph/ChannelHistory.h"
#include "services/audiograph/SequencerEvents.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace volvelle {

// The events together with where they go, and the render thread's notes about what sounds there. Made and
// destroyed on the main thread.
class SequencerContent {
public:
    // One destination for each track, the tempo track's first; null for none.
    SequencerContent(std::shared_ptr<const SequencerEvents> events,
                     const std::vector<std::shared_ptr<AVAudioUnit>>& destinations);

    const std::shared_ptr<const SequencerEvents> events;

    // MARK: [render thread]

    // `offset` in frames of the engine from the start of the block to come, with fractions.
    void send(const SequencerEvent& event, double offset) noexcept;

    // The note-offs of what sounds; with `all` also sustain up and all notes off on each channel in use.
    void release(bool all) noexcept;

    // Puts all channels of all destinations into the state of a unit that was just made.
    void resetUnits() noexcept;

    // Tells the destinations what the events before `seconds` have set.
    void chase(double seconds) noexcept;

private:
    struct Unit {
        std::shared_ptr<AVAudioUnit> node;
        std::uint16_t channels = 0;          // in use
        std::vector<std::uint16_t> sounding; // notes by 128 * channel + key
        ChannelHistory history;
        ChannelHistory::Channels states; // at the last start
    };

    void fillHistories();
    static void sendShort(Unit& unit, int status, int data1, int data2) noexcept;
    static void releaseNotes(Unit& unit, int channel) noexcept;
    void tellStates() noexcept;
    static void note(Unit& unit, const SequencerEvent& event) noexcept;

    std::vector<Unit> units;
    std::vector<int> unitOfTrack; // -1: none
};

} // namespace volvelle
