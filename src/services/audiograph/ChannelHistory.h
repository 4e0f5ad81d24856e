#pragma once

#include "services/audiograph/ChannelState.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace volvelle {

// What sixteen channels hold at any time of a piece, found in a few microseconds however long it is. Filled
// on the main thread, then only read.
class ChannelHistory {
public:
    static constexpr std::size_t channelCount = 16;

    using Channels = std::array<ChannelState, channelCount>;

    // The next controller, program, bend or channel pressure message; times never decrease. [main thread]
    void add(double seconds, const std::array<std::uint8_t, 3>& bytes);

    // What the messages before `seconds` have set. [any thread]
    void find(double seconds, Channels& channels) const noexcept;

private:
    static constexpr std::size_t stride = 1024; // messages from one snapshot to the next

    struct Message {
        double seconds = 0.0;
        std::array<std::uint8_t, 3> bytes{};
    };

    std::vector<Message> messages;
    std::vector<Channels> snapshots; // one before each stride of messages
    Channels latest;                 // behind all messages
    Channels mentioned;              // what any message sets
};

} // namespace volvelle
