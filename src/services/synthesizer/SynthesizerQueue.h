#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace volvelle {

// A message that waits for its place in the coming block.
struct SynthesizerEvent {
    int offset = 0; // frames from the start of the coming block
    std::array<std::uint8_t, 3> bytes{};
    std::uint32_t exclusiveStart = 0; // of a system exclusive message
    std::uint32_t exclusiveSize = 0;  // 0: a channel message

    bool isExclusive() const { return exclusiveSize != 0; }
};

// Waiting messages by offset, those of one offset in the order of entry. Room is taken once, at construction.
// [render thread]
class SynthesizerQueue {
public:
    static constexpr std::size_t maximumEvents = 16384;
    static constexpr std::size_t maximumBeginnings = maximumEvents / 2; // where more wait, no note-on enters
    static constexpr std::size_t maximumExclusiveBytes = 65536;

    SynthesizerQueue();

    // False, and nothing changed, where there is no room.
    bool add(int offset, std::array<std::uint8_t, 3> bytes);
    bool addExclusive(int offset, std::span<const std::uint8_t> bytes);

    bool isEmpty() const { return first == events.size(); }

    const SynthesizerEvent& front() const { return events[first]; }

    std::span<const std::uint8_t> exclusive(const SynthesizerEvent& event) const;
    void removeFront();

    // Moves what waits `frames` nearer.
    void advance(int frames);
    void clear();

private:
    bool insert(const SynthesizerEvent& event);

    std::vector<SynthesizerEvent> events;
    std::vector<std::uint8_t> exclusiveBytes;
    std::size_t first = 0; // what stands before it is done
};

} // namespace volvelle
