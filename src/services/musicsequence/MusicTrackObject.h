#pragma once

#include "services/musicsequence/MusicEventList.h"
#include "services/musicsequence/MusicSequence.h"

namespace volvelle {

// A track: its events, its length and its settings. Owned by its sequence and by whoever has its handle; a
// track outside a sequence answers every operation with kAudioToolboxErr_NoSequence. [any]
class MusicTrackObject {
public:
    explicit MusicTrackObject(MusicSequenceObject* owner) : sequence(owner) {}

    MusicSequenceObject* sequence; // null for a track that was removed or whose sequence is dead
    bool isRemoved = false;        // taken out of a sequence that went on living
    MusicEventList events;
    double length = 0.0; // beats
    MusicTrackLoopInfo loopInfo;
    double offsetTime = 0.0; // beats
    bool isMuted = false;
    bool isSolo = false;
    bool hasAutomatedParameters = false;
    std::int16_t timeResolution = 480; // ticks to the beat

    // True for the tempo track of its sequence.
    bool isTempoTrack() const;

    // Adds the event and lengthens the track to its end.
    void append(double time, MusicEventType type, std::uint32_t size, const void* record,
                std::size_t recordSize);

    // Lengthens the track to the event's end.
    void include(const MusicEvent& event);
};

// The beat where the event ends: after its duration where it has one, else its start.
double endOfEvent(double time, MusicEventType type, const void* record);

// Whether the time may be given to an event.
bool isValidTime(double time);

} // namespace volvelle
