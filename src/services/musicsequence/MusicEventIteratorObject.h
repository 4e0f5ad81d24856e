#pragma once

#include "services/musicsequence/EventCursor.h"
#include "services/musicsequence/MusicSequence.h"

namespace volvelle {

// A cursor on a track that it keeps alive, though not the track's sequence. [any]
class MusicEventIteratorObject {
public:
    explicit MusicEventIteratorObject(const MusicTrack& owner);
    ~MusicEventIteratorObject();
    MusicEventIteratorObject(const MusicEventIteratorObject&) = delete;
    MusicEventIteratorObject& operator=(const MusicEventIteratorObject&) = delete;

    MusicTrack track; // never null
    EventCursor cursor;
};

} // namespace volvelle
