#pragma once

#include "wire/DeviceChannels.h"
#include "wire/ExclusiveMemory.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <unordered_map>
#include <vector>

namespace volvelle {

// What a device holds at any time of a piece that it plays from the start: the states of its channels and the
// system exclusive messages that count. Found in a few microseconds however long the piece is. Filled on one
// thread, then only read.
class ChannelHistory {
public:
    // The next channel message; times never decrease.
    void add(double seconds, const ShortMessage& message);

    // The next system exclusive message, whole, known to the caller by a number. One without a lasting effect
    // is passed over.
    void addExclusive(double seconds, std::span<const std::uint8_t> message, std::uint32_t number);

    // What the messages before `seconds` have set. [any]
    void find(double seconds, DeviceChannels& channels) const noexcept;

    // Calls visit(number) for the exclusives before `seconds` that still count, in their order: the last
    // reset, and the newest settings after it, as many as an ExclusiveMemory takes. [any]
    template <typename Visit>
    void forEachExclusive(double seconds, Visit&& visit) const
    {
        Numbers numbers;
        for (const std::uint32_t number : exclusivesBefore(seconds, numbers)) {
            visit(number);
        }
    }

private:
    static constexpr std::size_t stride = 1024; // messages, or exclusives, from one snapshot to the next
    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

    // Of the exclusives that count in a snapshot, and of those after it.
    using Numbers = std::array<std::uint32_t, ExclusiveMemory::maximumMessages + stride>;

    // A channel message, or, where the first byte is 0, what an exclusive does to the channels.
    struct Message {
        double seconds = 0.0;
        ShortMessage bytes{};
        ExclusiveChange change;
    };

    struct Exclusive {
        double seconds = 0.0;
        std::size_t lastReset = none;  // index of the last one up to this
        std::size_t replacedBy = none; // index of the one that sets the same
        std::uint32_t number = 0;
    };

    void append(const Message& message);
    static void apply(const Message& message, DeviceChannels& channels) noexcept;
    void count(std::size_t index, std::size_t replaced);
    std::span<const std::uint32_t> exclusivesBefore(double seconds, Numbers& numbers) const noexcept;

    std::vector<Message> messages;
    std::vector<DeviceChannels> snapshots; // one before each stride of messages
    DeviceChannels latest;                 // after all messages
    std::vector<Exclusive> exclusives;
    std::vector<std::vector<std::size_t>> exclusiveSnapshots; // of `counting`, one before each stride
    std::vector<std::size_t> counting; // indices of the exclusives that count after all, ascending
    std::unordered_map<std::uint64_t, std::size_t> lastOfKey; // index of the last exclusive with a key
};

} // namespace volvelle
