#include "MIDISequences/realtime/AUMIDIEventListSplitter.h"

#include "MIDISequences/realtime/RenderEventChain.h"
#include "base/Checked.h"
#include "wire/MIDIConstants.h"

#include <utility>

namespace volvelle {

namespace {

constexpr int allChannels = -1;

} // namespace

AUMIDIEventListSplitter::AUMIDIEventListSplitter()
{
    tempListME.reserve(listRoomAhead);
    tempListRE.reserve(listRoomAhead);
    sources.reserve(listRoomAhead);
    replaced.reserve(maximumReplaced);
}

AUMIDIEventListSplitter::~AUMIDIEventListSplitter()
{
    for (AURenderEvent* const head : channelHeads) {
        releaseRenderEvents(head);
    }
    for (AURenderEvent* const head : replaced) {
        releaseRenderEvents(head);
    }
}

bool AUMIDIEventListSplitter::passes(const AUMIDIEvent& event, int instance) const
{
    const std::uint8_t status = event.data[0];
    if (status < STATUS_NOTEOFF) {
        return false;
    }
    if (status >= STATUS_SYSEX) {
        return true;
    }
    return !filters(channelOf(event)) && (instance == allChannels || channelOf(event) == instance);
}

AURenderEvent* AUMIDIEventListSplitter::splitRealtimeEventListHead(const AURenderEvent* allEvents,
                                                                   int instance)
{
    if (instance < allChannels || instance >= NUMSAMPLERS) {
        return nullptr;
    }
    tempListME.clear();
    sources.clear();
    visitMIDI(allEvents, [&](const AUMIDIEvent& event) {
        if (passes(event, instance)) {
            tempListME.push_back(heldByValue(event));
            sources.push_back(&event);
        }
    });
    if (tempListME.empty()) {
        return nullptr;
    }
    tempListRE.clear();
    RenderEventChain chain;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (instance == allChannels || channelOf(*sources[i]) == instance) {
            tempListRE.push_back(asRenderEvent(tempListME[i]));
            chain.append(*sources[i], renderEventBytes(*sources[i]));
        }
    }
    if (instance != allChannels) {
        AURenderEvent* const before = std::exchange(checkedAt(channelHeads, instance), chain.head);
        if (before != nullptr) {
            keepReplaced(before);
        }
    }
    return chain.head;
}

void AUMIDIEventListSplitter::keepReplaced(AURenderEvent* head)
{
    if (replaced.size() == maximumReplaced) {
        releaseRenderEvents(replaced.front());
        replaced.erase(replaced.begin());
    }
    replaced.push_back(head);
}

void AUMIDIEventListSplitter::deallocateRealtimeEventListHead(int instance)
{
    if (instance > allChannels && instance < NUMSAMPLERS) {
        releaseRenderEvents(std::exchange(checkedAt(channelHeads, instance), nullptr));
    }
}

} // namespace volvelle
