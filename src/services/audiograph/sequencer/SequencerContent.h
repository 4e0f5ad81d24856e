#pragma once

#include "services/audiograph/graph/AVAudioUnit.h"
#include "services/audiograph/sequencer/SequencerEvents.h"
#include "wire/ChannelHistory.h"
#include "wire/ExclusiveMemory.h"

#include <cstdint>
#include <memory>
#include <span>
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

    // MARK: [render]

    // `offset` in frames of the engine from the start of the block to come, with fractions.
    void send(const SequencerEvent& event, double offset) noexcept;

    // Whether the key of a note was struck, where it goes to, and not ended.
    bool isSounding(const SequencerEvent& note) const noexcept;

    // The note-offs of what sounds, and pedals up on each channel in use; with `all` also all notes off
    // there.
    void release(bool all) noexcept;

    // Brings the destinations to where they would stand at `seconds` had they played all of it since they
    // were made, on each channel in use or ever heard of.
    void chase(double seconds) noexcept;

    // Ends all sounds at once on the same channels.
    void silence() noexcept;

private:
    struct Unit {
        std::shared_ptr<AVAudioUnit> node;
        std::uint16_t channels = 0;          // in use
        std::vector<std::uint16_t> sounding; // notes by 128 * channel + key
        ChannelHistory history;
        DeviceChannels states;      // at the last start
        ExclusiveMemory exclusives; // the same

        std::uint16_t heardChannels() const noexcept;
    };

    void fillHistories();
    static void sendShort(Unit& unit, const ShortMessage& message) noexcept;
    static void releaseNotes(Unit& unit, int channel) noexcept;
    void findExclusives(Unit& unit, double seconds) const noexcept;
    static void tellExclusives(Unit& unit) noexcept;
    static void tellChannels(Unit& unit) noexcept;
    static void sendLong(Unit& unit, std::span<const std::uint8_t> bytes, double offset) noexcept;
    static void take(Unit& unit, const SequencerEvent& event) noexcept;

    std::vector<Unit> units;
    std::vector<int> unitOfTrack; // -1: none
};

} // namespace volvelle
