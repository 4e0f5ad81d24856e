#pragma once

#include "midi/BackLink.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace volvelle {

class PatternNode;
class TrackNode;

// One event of a sequence. Nodes are shared by std::shared_ptr and not copied; the container that takes a
// node sets `track`, `pattern` and `uid`. Used on the thread of the sequence that owns it.
class EventNode {
public:
    EventNode() = default;
    virtual ~EventNode() = default;
    EventNode(const EventNode&) = delete;
    EventNode& operator=(const EventNode&) = delete;

    BackLink<TrackNode> track;     // the track that took the node last
    BackLink<PatternNode> pattern; // the pattern that took the node last
    std::int64_t uid = -1;
    std::uint8_t statusMask = 0; // the status byte without channel
    double position = 0.0;       // beats
    std::uint8_t channel = 0;    // 0 to 15; 0xFF on the tempo track

    // "0x" and the byte as two hexadecimal digits, filled up with a blank.
    virtual std::string toHex(std::uint8_t value) const;

    // Writes each field to the log as a line of its own.
    virtual void dumpout() const;

    // statusMask + channel; a sum above 255 is a fatal stop.
    virtual std::uint8_t getStausByte() const;

    // How the node describes itself.
    virtual std::string_view className() const { return "EventNode"; }

protected:
    EventNode(std::uint8_t statusMask, double position, std::uint8_t channel)
        : statusMask(statusMask), position(position), channel(channel)
    {
    }
};

} // namespace volvelle
