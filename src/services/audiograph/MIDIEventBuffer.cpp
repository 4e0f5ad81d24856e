#include "services/audiograph/MIDIEventBuffer.h"

#include <algorithm>
#include <cstddef>

namespace volvelle {

bool MIDIEventBuffer::insert(const AUMIDIRenderEvent& event) noexcept
{
    const bool isNoteOn = event.length > 0 && (event.bytes()[0] & 0xF0) == 0x90;
    if (events.size() >= static_cast<std::size_t>(isNoteOn ? noteOnCapacity : capacity)) {
        return false;
    }
    const auto behind =
        std::upper_bound(events.begin(), events.end(), event.offset,
                         [](int offset, const AUMIDIRenderEvent& e) { return offset < e.offset; });
    events.insert(behind, event);
    return true;
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
}

} // namespace volvelle
