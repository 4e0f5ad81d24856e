#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstdint>

namespace volvelle {

// One stored event. A record of up to eight bytes stands in `payload` itself, a longer one in its track's
// arena. A deleted event has the type kMusicEventType_NULL; its payload is the distance to where a live event
// may stand.
struct MusicEvent {
    static constexpr std::uint32_t inlineRoom = 8;

    double time = 0.0; // beats
    MusicEventType type = kMusicEventType_NULL;
    std::uint32_t size = 0; // of the record, in bytes
    std::uint64_t payload = 0;

    bool isDeleted() const { return type == kMusicEventType_NULL; }

    bool isInline() const { return size <= inlineRoom; }
};

static_assert(sizeof(MusicEvent) == 24);

} // namespace volvelle
