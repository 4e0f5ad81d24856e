#include "MIDISequences/realtime/MatrixSections.h"

namespace volvelle {

MatrixSections::MatrixSections()
{
    allEvents.reserve(MAXEVENTS);
    sections.reserve(sectionCount);
    for (int i = 0; i < sectionCount; ++i) {
        sections.push_back(std::make_shared<MatrixTracks>());
    }
}

void MatrixSections::prepare(std::int64_t time, int frameCount)
{
    allEvents.clear();
    for (const auto& section : sections) {
        for (const auto& cell : section->tracks) {
            if (cell->startAtOnce(0)) {
                const auto& due = cell->processInternal(time, frameCount);
                allEvents.insert(allEvents.end(), due.begin(), due.end());
            }
        }
    }
}

AURenderEvent* MatrixSections::process(std::int64_t time, int frameCount)
{
    prepare(time, frameCount);
    RenderEventChain chain;
    for (const AUMIDIEvent& event : allEvents) {
        chain.append(event, event.data);
    }
    return chain.head;
}

void MatrixSections::deallocateRealtimeEventListHead(AURenderEvent* head)
{
    releaseRenderEvents(head);
}

} // namespace volvelle
