#include "services/synthesizer/SynthesizerQueue.h"

#include <algorithm>

namespace volvelle {

SynthesizerQueue::SynthesizerQueue()
{
    events.reserve(maximumEvents);
    exclusiveBytes.reserve(maximumExclusiveBytes);
}

bool SynthesizerQueue::add(int offset, std::array<std::uint8_t, 3> bytes)
{
    const bool begins = (bytes[0] & 0xF0) == 0x90 && bytes[2] != 0;
    if (begins && events.size() - first >= maximumBeginnings) {
        return false;
    }
    return insert({offset, bytes, 0, 0});
}

bool SynthesizerQueue::addExclusive(int offset, std::span<const std::uint8_t> bytes)
{
    const std::size_t start = exclusiveBytes.size();
    if (bytes.empty() || bytes.size() > maximumExclusiveBytes - start) {
        return false;
    }
    if (!insert({offset, {}, static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(bytes.size())})) {
        return false;
    }
    exclusiveBytes.insert(exclusiveBytes.end(), bytes.begin(), bytes.end());
    return true;
}

bool SynthesizerQueue::insert(const SynthesizerEvent& event)
{
    if (events.size() == maximumEvents && first > 0) {
        events.erase(events.begin(), events.begin() + static_cast<std::ptrdiff_t>(first));
        first = 0;
    }
    if (events.size() == maximumEvents) {
        return false;
    }
    const auto from = events.begin() + static_cast<std::ptrdiff_t>(first);
    const auto place =
        std::upper_bound(from, events.end(), event.offset,
                         [](int offset, const SynthesizerEvent& other) { return offset < other.offset; });
    events.insert(place, event);
    return true;
}

std::span<const std::uint8_t> SynthesizerQueue::exclusive(const SynthesizerEvent& event) const
{
    return std::span(exclusiveBytes).subspan(event.exclusiveStart, event.exclusiveSize);
}

void SynthesizerQueue::removeFront()
{
    first += 1;
    if (isEmpty()) {
        clear();
    }
}

void SynthesizerQueue::advance(int frames)
{
    for (std::size_t i = first; i < events.size(); ++i) {
        events[i].offset -= frames;
    }
}

void SynthesizerQueue::clear()
{
    events.clear();
    exclusiveBytes.clear();
    first = 0;
}

} // namespace volvelle
