#include "services/musicsequence/FaultPoint.h"
#include "services/musicsequence/MusicTrackObject.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

namespace volvelle {

namespace {

// The events of a span, as indices of allWithMarked(), and what speaks against the span.
struct Run {
    OSStatus status = noErr;
    std::size_t first = 0;
    std::size_t last = 0;

    bool isEmpty() const { return first == last; }
};

std::size_t firstAt(std::span<const MusicEvent> events, double time)
{
    const auto found = std::ranges::lower_bound(events, time, {}, &MusicEvent::time);
    return static_cast<std::size_t>(found - events.begin());
}

Run runOf(const MusicTrack& track, double start, double end)
{
    if (track == nullptr || track->sequence == nullptr) {
        return {kAudioToolboxErr_NoSequence};
    }
    if (!isValidTime(start) || !isValidTime(end) || end < start) {
        return {kAudioToolboxErr_InvalidEventType};
    }
    const auto events = track->events.allWithMarked();
    const std::size_t first = firstAt(events, start);
    if (start == end) {
        return {noErr, first, first};
    }
    return {noErr, first, end >= track->length ? events.size() : firstAt(events, end)};
}

// The same as indices of all().
Run unmarkedRunOf(const MusicTrack& track, double start, double end)
{
    if (track != nullptr) {
        track->events.all();
    }
    return runOf(track, start, end);
}

std::vector<MusicEvent> copyOf(const MusicTrack& track, const Run& run)
{
    std::vector<MusicEvent> copies;
    for (const MusicEvent& event : track->events.allWithMarked().subspan(run.first, run.last - run.first)) {
        if (!event.isDeleted()) {
            copies.push_back(event);
        }
    }
    return copies;
}

OSStatus destinationStatus(const std::vector<MusicEvent>& copies, const MusicTrack& destination, double start,
                           double at)
{
    if (destination == nullptr || destination->sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    if (!isValidTime(at) || (!copies.empty() && !std::isfinite(at + (copies.back().time - start)))) {
        return kAudioToolboxErr_InvalidEventType;
    }
    const auto isTempo = [](const MusicEvent& event) { return event.type == kMusicEventType_ExtendedTempo; };
    const bool isRefused = !destination->isTempoTrack() && std::ranges::any_of(copies, isTempo);
    return isRefused ? kAudioToolboxErr_IllegalTrackDestination : noErr;
}

void append(const std::vector<MusicEvent>& copies, const MusicTrack& source, double start,
            const MusicTrack& destination, double at)
{
    for (const MusicEvent& event : copies) {
        destination->append(at + (event.time - start), event.type, event.size, source->events.payload(event),
                            event.size);
    }
}

} // namespace

OSStatus MusicTrackClear(const MusicTrack& track, double start, double end)
{
    VOLVELLE_FAULT_POINT(MusicTrackClear);
    const Run run = runOf(track, start, end);
    if (run.status == noErr) {
        track->events.eraseRun(run.first, run.last);
    }
    return run.status;
}

OSStatus MusicTrackCut(const MusicTrack& track, double start, double end)
{
    VOLVELLE_FAULT_POINT(MusicTrackCut);
    const Run run = runOf(track, start, end);
    if (run.status != noErr || start == end) {
        return run.status;
    }
    track->events.shiftFrom(run.first, start - end, start);
    track->events.eraseRun(run.first, run.last);
    track->length = track->length > start ? std::max(start, track->length - (end - start)) : track->length;
    return noErr;
}

OSStatus MusicTrackCopyInsert(const MusicTrack& source, double start, double end,
                              const MusicTrack& destination, double at)
{
    VOLVELLE_FAULT_POINT(MusicTrackCopyInsert);
    const Run run = runOf(source, start, end);
    if (run.status != noErr) {
        return run.status;
    }
    const std::vector<MusicEvent> copies = copyOf(source, run);
    if (const OSStatus status = destinationStatus(copies, destination, start, at); status != noErr) {
        return status;
    }
    const double span = end - start;
    const auto standing = destination->events.allWithMarked();
    if (!std::isfinite(destination->length + span) ||
        (!standing.empty() && !std::isfinite(standing.back().time + span))) {
        return kAudioToolboxErr_InvalidEventType;
    }
    destination->events.shiftFrom(firstAt(standing, at), span, at);
    destination->length += span;
    append(copies, source, start, destination, at);
    return noErr;
}

OSStatus MusicTrackMerge(const MusicTrack& source, double start, double end, const MusicTrack& destination,
                         double at)
{
    VOLVELLE_FAULT_POINT(MusicTrackMerge);
    const Run run = runOf(source, start, end);
    if (run.status != noErr) {
        return run.status;
    }
    const std::vector<MusicEvent> copies = copyOf(source, run);
    const OSStatus status = destinationStatus(copies, destination, start, at);
    if (status == noErr) {
        append(copies, source, start, destination, at);
    }
    return status;
}

OSStatus MusicTrackMoveEvents(const MusicTrack& track, double start, double end, double by)
{
    VOLVELLE_FAULT_POINT(MusicTrackMoveEvents);
    const Run run = unmarkedRunOf(track, start, end);
    if (run.status != noErr) {
        return run.status;
    }
    const auto events = track->events.all();
    if (!std::isfinite(by) || (!run.isEmpty() && !std::isfinite(events[run.last - 1].time + by))) {
        return kAudioToolboxErr_InvalidEventType;
    }
    if (run.isEmpty()) {
        return noErr;
    }
    if (events[run.first].time + by < 0.0) {
        return kAudioToolboxErr_StartOfTrack;
    }
    const std::vector<MusicEvent> moved = copyOf(track, run);
    track->events.moveRun(run.first, run.last, by);
    for (MusicEvent event : moved) {
        event.time += by;
        track->include(event);
    }
    return noErr;
}

} // namespace volvelle
