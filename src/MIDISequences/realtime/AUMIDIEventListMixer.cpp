#include "MIDISequences/realtime/AUMIDIEventListMixer.h"

#include "MIDISequences/realtime/RenderEventChain.h"
#include "MIDISequences/realtime/ReusedMIDIEvent.h"
#include "base/Checked.h"
#include "base/Console.h"
#include "wire/MIDIConstants.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace volvelle {

namespace {

constexpr std::uint8_t keyCount = 128;
constexpr std::string_view becameZero =
    "AUMIDIEvents::mixEvents() : WARNING: An ON velocity was mapped to zero!";

static_assert(CONTROLLER_SOUNDS_OFF == CONTROLLER_NOTES_OFF);

bool isCommandOfSilence(const AUMIDIEvent& event)
{
    const std::uint8_t number = event.data[1];
    return kindOf(event) == STATUS_CONTROLLER &&
           (number == CONTROLLER_NOTES_OFF || number == CONTROLLER_RESET_CONTROLLERS);
}

} // namespace

AUMIDIEventListMixer::AUMIDIEventListMixer()
{
    notes.reserve(keyCount);
    AUMIDIEventListMixer::reset();
    specialEvents.reserve(listRoomAhead);
    ordered.reserve(listRoomAhead);
    tempListSort.reserve(listRoomAhead);
    places.reserve(listRoomAhead);
    for (std::size_t i = 0; i < listRoomAhead; ++i) {
        reused.events.push_back(std::make_shared<ReusedMIDIEvent>());
    }
    for (std::size_t i = 0; i < longListRoomAhead; ++i) {
        reusedLong.events.push_back(std::make_shared<ReusedMIDIEvent>(largeRenderEvent));
    }
}

AUMIDIEventListMixer::~AUMIDIEventListMixer()
{
    releaseRenderEvents(lastResult);
}

void AUMIDIEventListMixer::reset()
{
    ChannelFilter::reset();
    std::iota(velocities.begin(), velocities.end(), std::uint8_t{0});
    velocities.front() = 1;
    notes.resize(keyCount);
    std::iota(notes.begin(), notes.end(), std::uint8_t{0});
}

void AUMIDIEventListMixer::makeNoteFilter(int channels, int index)
{
    if (channels == 0) {
        fatalStop(arithmeticMessage);
    }
    notes.clear();
    for (int i = 0; i < keyCount; ++i) {
        const int key = checkedAdd(index, i);
        if (key >= keyCount) {
            break;
        }
        if (i % channels == 0) {
            notes.push_back(checkedCast<std::uint8_t>(key));
        }
    }
}

AURenderEvent* AUMIDIEventListMixer::mixEvents(const AURenderEvent* ev1, const AURenderEvent* ev2,
                                               std::int64_t offset1, std::int64_t offset2, bool noteSplit)
{
    deallocateRealtimeEventListHead();
    specialEvents.clear();
    reused.count = 0;
    reusedLong.count = 0;
    collect(ev1, {.offset = offset1, .noteSplit = noteSplit, .silences = true});
    collect(ev2, {.offset = offset2, .noteSplit = noteSplit, .silences = false});
    sortSpecialEvents();
    tempListSort.clear();
    RenderEventChain chain;
    for (const std::shared_ptr<AUMIDIEventEx>& event : specialEvents) {
        const AUMIDIEvent record = event->event();
        tempListSort.push_back(asRenderEvent(heldByValue(record)));
        chain.append(record, event->data());
    }
    lastResult = chain.head;
    return lastResult;
}

void AUMIDIEventListMixer::collect(const AURenderEvent* event, const Source& source)
{
    visitMIDI(event, [&](const AUMIDIEvent& given) {
        if (!passes(given, source)) {
            return;
        }
        AUMIDIEvent head = given;
        head.next = nullptr;
        head.reserved = 0;
        head.cable = 0;
        if (kindOf(given) < STATUS_SYSEX) {
            head.eventSampleTime = checkedAdd(head.eventSampleTime, source.offset);
            mapVelocity(head, source);
        }
        append(given, head);
    });
}

bool AUMIDIEventListMixer::passes(const AUMIDIEvent& event, const Source& source) const
{
    const std::uint8_t kind = kindOf(event);
    if (kind < STATUS_NOTEOFF) {
        return false;
    }
    if (kind >= STATUS_SYSEX) {
        return true;
    }
    if (filters(channelOf(event)) && !(source.silences && isCommandOfSilence(event))) {
        return false;
    }
    const bool isNote = kind == STATUS_NOTEON || kind == STATUS_NOTEOFF;
    return !source.noteSplit || !isNote || std::ranges::find(notes, event.data[1]) != notes.end();
}

void AUMIDIEventListMixer::mapVelocity(AUMIDIEvent& event, const Source& source) const
{
    std::uint8_t& velocity = event.data[2];
    if (kindOf(event) != STATUS_NOTEON || velocity == 0 || velocity >= velocities.size()) {
        return;
    }
    velocity = velocities[velocity];
    if (velocity == 0 && source.silences) {
        realtimeprint(becameZero);
    }
}

void AUMIDIEventListMixer::append(const AUMIDIEvent& event, const AUMIDIEvent& head)
{
    if (event.length > largeRenderEvent) {
        specialEvents.push_back(std::make_shared<AUMIDIEventEx>(event, event.length));
    } else {
        const bool isLong = event.length > AUMIDIEventEx::MAXBYTES;
        specialEvents.push_back(isLong ? next(reusedLong, largeRenderEvent)
                                       : next(reused, AUMIDIEventEx::MAXBYTES));
        specialEvents.back()->InitializeWith(event);
    }
    specialEvents.back()->setEvent(head);
}

const std::shared_ptr<AUMIDIEventEx>& AUMIDIEventListMixer::next(Reused& of, std::uint32_t bytes)
{
    if (of.count == of.events.size()) {
        of.events.push_back(std::make_shared<ReusedMIDIEvent>(bytes));
    }
    return of.events[of.count++];
}

void AUMIDIEventListMixer::sortSpecialEvents()
{
    places.clear();
    for (const std::shared_ptr<AUMIDIEventEx>& event : specialEvents) {
        places.push_back({event->pEvent()->eventSampleTime, places.size()});
    }
    sortPlaces(places);
    for (const EventPlace& place : places) {
        ordered.push_back(std::move(specialEvents[place.index]));
    }
    specialEvents.swap(ordered);
    ordered.clear();
}

void AUMIDIEventListMixer::deallocateRealtimeEventListHead()
{
    releaseRenderEvents(std::exchange(lastResult, nullptr));
}

} // namespace volvelle
