#pragma once

#include "base/Checked.h"
#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <functional>

namespace volvelle {

// An event as an iterator gives it. The payload stays valid until the track changes.
struct TrackEvent {
    double time = -1.0; // beats
    MusicEventType type = kMusicEventType_NULL;
    const void* payload = nullptr;
    std::uint32_t size = 0; // bytes

    // The record behind the payload; none is a fatal stop.
    template <class Record>
    const Record& record() const
    {
        return required(static_cast<const Record*>(payload));
    }
};

// What can fail in a walk, in the order of the walk.
enum class WalkFailure { makeIterator, askCurrent, readEvent, askNext, step };

// What the visitor did with the iterator: nothing, or a deletion, which has moved it on already.
enum class WalkStep { stepOn, stay };

enum class WalkResult { empty, walked, failed };

using WalkReport = std::function<void(WalkFailure failure, OSStatus status)>;
using WalkVisitor = std::function<WalkStep(const TrackEvent& event, const MusicEventIterator& iterator)>;

// Visits the events of a track in order. Every failure is reported: an event that cannot be read is skipped,
// a question or a step that fails ends the walk. The step past the last event fails, too, and is reported.
// `failed` is given where the walk did not begin.
WalkResult walkTrack(const MusicTrack& track, const WalkReport& report, const WalkVisitor& visit);

// The same without reports: answers the first failure, the step past the last event is none.
[[nodiscard]] OSStatus forEachEvent(const MusicTrack& track,
                                    const std::function<void(const TrackEvent& event)>& visit);

// Asks of each event in order whether it is unwanted, and deletes it then. Answers the first failure; an
// event that cannot be deleted stays.
[[nodiscard]] OSStatus eraseEventsIf(const MusicTrack& track,
                                     const std::function<bool(const TrackEvent& event)>& isUnwanted);

} // namespace volvelle
