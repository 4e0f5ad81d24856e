#include "services/musicsequence/MusicTrackObject.h"

#include "services/musicsequence/MusicSequenceObject.h"

#include <algorithm>
#include <cmath>

namespace volvelle {

bool MusicTrackObject::isTempoTrack() const
{
    return sequence != nullptr && sequence->tempoTrack.get() == this;
}

void MusicTrackObject::append(double time, MusicEventType type, std::uint32_t size, const void* record,
                              std::size_t recordSize)
{
    const double end = endOfEvent(time, type, record);
    events.append(time, type, size, record, recordSize);
    length = std::max(length, end);
}

void MusicTrackObject::include(const MusicEvent& event)
{
    length = std::max(length, endOfEvent(event.time, event.type, events.payload(event)));
}

double endOfEvent(double time, MusicEventType type, const void* record)
{
    if (type == kMusicEventType_MIDINoteMessage) {
        return time + static_cast<double>(static_cast<const MIDINoteMessage*>(record)->duration);
    }
    if (type == kMusicEventType_ExtendedNote) {
        return time + static_cast<double>(static_cast<const ExtendedNoteOnEvent*>(record)->duration);
    }
    return time;
}

bool isValidTime(double time)
{
    return std::isfinite(time) && time >= 0.0;
}

} // namespace volvelle
