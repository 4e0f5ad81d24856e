#include "services/musicsequence/FaultPoint.h"
#include "services/musicsequence/MusicEventIteratorObject.h"
#include "services/musicsequence/MusicTrackObject.h"

namespace volvelle {

namespace {

bool isAlive(const MusicEventIterator& iterator)
{
    return iterator != nullptr && iterator->track->sequence != nullptr;
}

} // namespace

OSStatus NewMusicEventIterator(const MusicTrack& track, MusicEventIterator& iterator)
{
    VOLVELLE_FAULT_POINT(NewMusicEventIterator);
    if (track == nullptr || track->sequence == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    iterator = std::make_shared<MusicEventIteratorObject>(track);
    return noErr;
}

OSStatus DisposeMusicEventIterator(MusicEventIterator& iterator)
{
    VOLVELLE_FAULT_POINT(DisposeMusicEventIterator);
    if (iterator == nullptr) {
        return kAudioToolboxErr_NoSequence;
    }
    iterator.reset();
    return noErr;
}

OSStatus MusicEventIteratorHasCurrentEvent(const MusicEventIterator& iterator, bool& flag)
{
    VOLVELLE_FAULT_POINT(MusicEventIteratorHasCurrentEvent);
    if (!isAlive(iterator)) {
        return kAudioToolboxErr_NoSequence;
    }
    flag = iterator->track->events.current(iterator->cursor) != nullptr;
    return noErr;
}

OSStatus MusicEventIteratorHasNextEvent(const MusicEventIterator& iterator, bool& flag)
{
    VOLVELLE_FAULT_POINT(MusicEventIteratorHasNextEvent);
    if (!isAlive(iterator)) {
        return kAudioToolboxErr_NoSequence;
    }
    flag = iterator->track->events.hasNext(iterator->cursor);
    return noErr;
}

OSStatus MusicEventIteratorNextEvent(const MusicEventIterator& iterator)
{
    VOLVELLE_FAULT_POINT(MusicEventIteratorNextEvent);
    if (!isAlive(iterator)) {
        return kAudioToolboxErr_NoSequence;
    }
    return iterator->track->events.next(iterator->cursor) ? noErr : kAudioToolboxErr_EndOfTrack;
}

OSStatus MusicEventIteratorGetEventInfo(const MusicEventIterator& iterator, double& time,
                                        MusicEventType& type, const void*& payload, std::uint32_t& size)
{
    VOLVELLE_FAULT_POINT(MusicEventIteratorGetEventInfo);
    if (!isAlive(iterator)) {
        return kAudioToolboxErr_NoSequence;
    }
    MusicEventList& events = iterator->track->events;
    const MusicEvent* const event = events.current(iterator->cursor);
    if (event == nullptr) {
        return kAudioToolboxErr_EndOfTrack;
    }
    time = event->time;
    type = event->type;
    payload = events.payload(*event);
    size = event->size;
    return noErr;
}

OSStatus MusicEventIteratorDeleteEvent(const MusicEventIterator& iterator)
{
    VOLVELLE_FAULT_POINT(MusicEventIteratorDeleteEvent);
    if (!isAlive(iterator)) {
        return kAudioToolboxErr_NoSequence;
    }
    MusicEventList& events = iterator->track->events;
    if (events.current(iterator->cursor) == nullptr) {
        return kAudioToolboxErr_EndOfTrack;
    }
    events.erase(iterator->cursor);
    return noErr;
}

} // namespace volvelle
