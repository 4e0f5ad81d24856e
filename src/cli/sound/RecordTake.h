#pragma once

#include "MIDISequences/realtime/AUMIDIRecorder.h"
#include "base/Result.h"
#include "services/soundunits/PortInbox.h"
#include "wire/HeldSounds.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <vector>

namespace volvelle {

// What came in at a MIDI port from a beginning to an end, on its way into a file. Notes of key 0 are left
// out. [main]
class RecordTake {
public:
    using Moment = PortInbox::Moment;

    static constexpr std::int64_t shortestNote = 50; // samples at 48,000 Hz: a tick of the file

    const std::shared_ptr<PortInbox> inbox = std::make_shared<PortInbox>(); // for the port

    // Called once, first of all.
    void begin(Moment at);

    // Records what waits in the inbox. What came later than `until` is left out; what came before the
    // beginning came with it.
    void collect(Moment until);

    // Collects, and ends at that moment what sounds on: each note, each pedal that is down.
    void end(Moment at);

    // Messages that came and were recorded.
    int events() const { return count; }

    // The keys that sound, in ascending order.
    std::vector<int> keys() const;

    // Messages that were dropped on their way.
    std::size_t dropped() const { return inbox->dropped(); }

    // The bytes of a Standard MIDI File of it, at 120 beats per minute. Notes without an end are not in it.
    Result<std::vector<std::uint8_t>> file();

private:
    using Starts = std::array<std::array<std::int64_t, 128>, channelCount>; // samples, of the last note

    std::int64_t positionOf(Moment moment) const;
    // False for what is left out.
    bool add(std::int64_t position, std::span<const std::uint8_t> message);
    void endNotes(std::int64_t position, int channel);
    std::int64_t placeOf(const AUMIDIEvent& event, std::int64_t position);

    AUMIDIRecorder recorder;
    HeldSounds sounds{std::numeric_limits<int>::max()};
    Starts starts{};
    Moment start;
    int count = 0;
};

} // namespace volvelle
