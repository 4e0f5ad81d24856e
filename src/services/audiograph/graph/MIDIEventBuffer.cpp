#include "services/audiograph/graph/MIDIEventBuffer.h"

#include "wire/ShortMessage.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace volvelle {

MIDIEventBuffer::MIDIEventBuffer()
{
    events.reserve(capacity);
    longBytes.reserve(longCapacity);
    gathered.reserve(longCapacity);
}

bool MIDIEventBuffer::insert(const AUMIDIRenderEvent& event) noexcept
{
    const std::uint8_t* bytes = event.bytes();
    const bool begins = event.length == 3 && isNoteOn({bytes[0], bytes[1], bytes[2]});
    if (events.size() >= static_cast<std::size_t>(begins ? noteOnCapacity : capacity)) {
        return false;
    }
    AUMIDIRenderEvent own = event;
    if (event.longBytes != nullptr) {
        own.longBytes = copied({event.longBytes, static_cast<std::size_t>(event.length)});
        if (own.longBytes == nullptr) {
            return false;
        }
    }
    const auto behind =
        std::upper_bound(events.begin(), events.end(), event.offset,
                         [](int offset, const AUMIDIRenderEvent& e) { return offset < e.offset; });
    events.insert(behind, own);
    return true;
}

// Null where there is no room.
const std::uint8_t* MIDIEventBuffer::copied(std::span<const std::uint8_t> bytes) noexcept
{
    if (bytes.size() > longCapacity - longBytes.size()) {
        gatherLongBytes();
    }
    if (bytes.size() > longCapacity - longBytes.size()) {
        return nullptr;
    }
    longBytes.insert(longBytes.end(), bytes.begin(), bytes.end());
    return longBytes.data() + (longBytes.size() - bytes.size());
}

void MIDIEventBuffer::gatherLongBytes() noexcept
{
    gathered.clear();
    for (AUMIDIRenderEvent& event : events) {
        if (event.longBytes != nullptr) {
            const std::uint8_t* moved = gathered.data() + gathered.size();
            gathered.insert(gathered.end(), event.longBytes, event.longBytes + event.length);
            event.longBytes = moved;
        }
    }
    std::swap(longBytes, gathered);
}

void MIDIEventBuffer::clear() noexcept
{
    events.clear();
    longBytes.clear();
}

std::span<const AUMIDIRenderEvent> MIDIEventBuffer::upTo(int frames) const noexcept
{
    const auto behind = std::lower_bound(events.begin(), events.end(), frames,
                                         [](const AUMIDIRenderEvent& e, int f) { return e.offset < f; });
    return {events.begin(), behind};
}

void MIDIEventBuffer::consume(std::size_t count, int frames) noexcept
{
    events.erase(events.begin(), events.begin() + static_cast<std::ptrdiff_t>(count));
    for (AUMIDIRenderEvent& event : events) {
        event.offset -= frames;
    }
    if (events.empty()) {
        longBytes.clear();
    }
}

} // namespace volvelle
