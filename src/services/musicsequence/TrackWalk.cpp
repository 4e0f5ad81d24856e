#include "services/musicsequence/TrackWalk.h"

#include <tuple>

namespace volvelle {

namespace {

bool hasCurrentEvent(const MusicEventIterator& iterator, const WalkReport& report, OSStatus& status)
{
    bool current = false;
    status = MusicEventIteratorHasCurrentEvent(iterator, current);
    if (status != noErr) {
        report(WalkFailure::askCurrent, status);
        return false;
    }
    return current;
}

bool stepOn(const MusicEventIterator& iterator, const WalkReport& report)
{
    bool next = false;
    if (const OSStatus status = MusicEventIteratorHasNextEvent(iterator, next); status != noErr) {
        report(WalkFailure::askNext, status);
        return false;
    }
    if (const OSStatus status = MusicEventIteratorNextEvent(iterator); status != noErr) {
        report(WalkFailure::step, status);
        return false;
    }
    return true;
}

} // namespace

WalkResult walkTrack(const MusicTrack& track, const WalkReport& report, const WalkVisitor& visit)
{
    MusicEventIterator iterator;
    if (const OSStatus status = NewMusicEventIterator(track, iterator); status != noErr) {
        report(WalkFailure::makeIterator, status);
    }
    OSStatus asked = noErr;
    if (!hasCurrentEvent(iterator, report, asked)) {
        std::ignore = DisposeMusicEventIterator(iterator);
        return asked == noErr ? WalkResult::empty : WalkResult::failed;
    }
    TrackEvent event;
    do {
        event.payload = nullptr;
        event.size = 0;
        auto step = WalkStep::stepOn;
        const OSStatus status =
            MusicEventIteratorGetEventInfo(iterator, event.time, event.type, event.payload, event.size);
        if (status == noErr) {
            step = visit(event, iterator);
        } else {
            report(WalkFailure::readEvent, status);
        }
        if (step == WalkStep::stepOn && !stepOn(iterator, report)) {
            break;
        }
    } while (hasCurrentEvent(iterator, report, asked));
    std::ignore = DisposeMusicEventIterator(iterator);
    return WalkResult::walked;
}

OSStatus forEachEvent(const MusicTrack& track, const std::function<void(const TrackEvent& event)>& visit)
{
    return eraseEventsIf(track, [&visit](const TrackEvent& event) {
        visit(event);
        return false;
    });
}

OSStatus eraseEventsIf(const MusicTrack& track,
                       const std::function<bool(const TrackEvent& event)>& isUnwanted)
{
    OSStatus first = noErr;
    const auto keepFirst = [&first](OSStatus status) { first = first == noErr ? status : first; };
    const auto report = [&keepFirst](WalkFailure failure, OSStatus status) {
        if (failure != WalkFailure::step || status != kAudioToolboxErr_EndOfTrack) {
            keepFirst(status);
        }
    };
    walkTrack(track, report, [&](const TrackEvent& event, const MusicEventIterator& iterator) {
        if (!isUnwanted(event)) {
            return WalkStep::stepOn;
        }
        const OSStatus status = MusicEventIteratorDeleteEvent(iterator);
        keepFirst(status);
        return status == noErr ? WalkStep::stay : WalkStep::stepOn;
    });
    return first;
}

} // namespace volvelle
