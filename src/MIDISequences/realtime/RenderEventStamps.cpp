#include "MIDISequences/realtime/RenderEventStamps.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

AURenderEvent* reversed(AURenderEvent* chain)
{
    AURenderEvent* result = nullptr;
    while (chain != nullptr) {
        AURenderEvent* const next = std::exchange(chain->head.next, result);
        result = std::exchange(chain, next);
    }
    return result;
}

} // namespace

void stampInOrder(AURenderEvent* chain, int cleanupCount, std::int64_t time, int frames) noexcept
{
    AURenderEvent* record = chain;
    for (int i = 0; i < cleanupCount && record != nullptr; ++i) {
        record->head.eventSampleTime = time;
        record = record->head.next;
    }
    AURenderEvent* const last = reversed(chain);
    std::int64_t least = time + frames;
    for (record = last; record != nullptr; record = record->head.next) {
        least = std::max(time, std::min(least, record->head.eventSampleTime));
        record->head.eventSampleTime = least;
    }
    reversed(last);
}

} // namespace volvelle
