#include "MIDISequences/realtime/AUMIDIEventListSorter.h"

#include "MIDISequences/realtime/RenderEventChain.h"
#include "base/Checked.h"
#include "wire/MIDIConstants.h"

#include <utility>

namespace volvelle {

AUMIDIEventListSorter::AUMIDIEventListSorter()
{
    tempListSort.reserve(listRoomAhead);
    places.reserve(listRoomAhead);
    sources.reserve(listRoomAhead);
}

AUMIDIEventListSorter::~AUMIDIEventListSorter()
{
    releaseRenderEvents(lastResult);
}

AURenderEvent* AUMIDIEventListSorter::sortEvents(const AURenderEvent* event, std::int64_t offset)
{
    deallocateRealtimeEventListHead();
    tempListSort.clear();
    places.clear();
    sources.clear();
    visitMIDI(event, [&](const AUMIDIEvent& source) {
        const std::uint8_t kind = kindOf(source);
        if (kind < STATUS_NOTEOFF || (kind < STATUS_SYSEX && filters(channelOf(source)))) {
            return;
        }
        places.push_back({checkedAdd(source.eventSampleTime, offset), sources.size()});
        sources.push_back(&source);
    });
    sortPlaces(places);
    RenderEventChain chain;
    for (const EventPlace& place : places) {
        AUMIDIEvent moved = *sources[place.index];
        moved.eventSampleTime = place.stamp;
        tempListSort.push_back(asRenderEvent(heldByValue(moved)));
        chain.append(moved, renderEventBytes(*sources[place.index]));
    }
    lastResult = chain.head;
    return lastResult;
}

void AUMIDIEventListSorter::deallocateRealtimeEventListHead()
{
    releaseRenderEvents(std::exchange(lastResult, nullptr));
}

} // namespace volvelle
