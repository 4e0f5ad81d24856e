#include "services/musicsequence/MusicEventIteratorObject.h"

#include "services/musicsequence/MusicTrackObject.h"

namespace volvelle {

MusicEventIteratorObject::MusicEventIteratorObject(const MusicTrack& owner) : track(owner)
{
    track->events.addCursor(cursor);
}

MusicEventIteratorObject::~MusicEventIteratorObject()
{
    track->events.removeCursor(cursor);
}

} // namespace volvelle
