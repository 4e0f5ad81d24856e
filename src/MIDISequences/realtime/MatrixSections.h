#pragma once

#include "MIDISequences/realtime/MatrixTracks.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace volvelle {

// A grid of sequencers, sections by tracks, whose events make one chain. In every cycle each cell stops and
// starts anew: it sends all its events from the first to the end of the block, over and over, and its
// stopping fills what waits to be sent, which then drops and counts, and prints more lines than the console's
// ring holds.
class MatrixSections {
public:
    MatrixSections();
    virtual ~MatrixSections() = default;
    MatrixSections(const MatrixSections&) = delete;
    MatrixSections& operator=(const MatrixSections&) = delete;

    static constexpr int MAXEVENTS = 4096; // room ahead in allEvents
    static constexpr int sectionCount = 8;
    static constexpr int trackCount = MatrixTracks::trackCount;

    std::vector<std::shared_ptr<MatrixTracks>> sections;
    std::vector<AUMIDIEvent> allEvents; // of the last cycle

private:
    const RenderEventRoom room{{MAXEVENTS, 0, 0, 0}};
    virtual void prepare(std::int64_t time, int frameCount);

public:
    // The events of all cells, by section, track and time, in records of three bytes at most; null for none.
    // The caller owns the chain. A cell that another thread operates gives nothing. [render]
    virtual AURenderEvent* process(std::int64_t time, int frameCount);

    // Takes back such a chain. [any]
    virtual void deallocateRealtimeEventListHead(AURenderEvent* head);
};

} // namespace volvelle
