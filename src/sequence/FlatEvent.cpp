#include "sequence/FlatEvent.h"

#include "base/Checked.h"

#include <algorithm>
#include <vector>

namespace volvelle {

namespace {

std::shared_ptr<AUMIDIEventEx> made(std::span<const std::uint8_t> bytes, std::int64_t time)
{
    return std::make_shared<AUMIDIEventEx>(AURenderEventMIDI, bytes.data(),
                                           checkedCast<std::uint32_t>(bytes.size()), time);
}

} // namespace

std::shared_ptr<AUMIDIEventEx> FlatEvent::event() const
{
    std::shared_ptr<AUMIDIEventEx> result;
    if (headCount == 0) {
        result = made(body, time);
    } else if (body.empty()) {
        result = made(std::span(head).first(headCount), time);
    } else {
        std::vector<std::uint8_t> bytes(head.begin(), head.begin() + headCount);
        bytes.insert(bytes.end(), body.begin(), body.end());
        result = made(bytes, time);
    }
    result->beats = beats;
    result->duration = duration;
    result->meta = meta;
    return result;
}

AUMIDIEvent FlatEvent::record() const
{
    AUMIDIEvent result{};
    result.eventSampleTime = time;
    result.eventType = AURenderEventMIDI;
    const auto bytes = headCount > 0 ? std::span<const std::uint8_t>(head).first(headCount)
                                     : body.first(std::min(body.size(), head.size()));
    result.length = static_cast<std::uint16_t>(bytes.size());
    std::ranges::copy(bytes, result.data);
    return result;
}

bool FlatEvent::isBefore(const FlatEvent& a, const FlatEvent& b)
{
    return a.time != b.time ? a.time < b.time : a.rank < b.rank;
}

} // namespace volvelle
