#pragma once

#include "phrases/PhraseEvent.h"
#include "phrases/PolyMetricStepGenerator.h"

#include <cstdint>

namespace volvelle {

// Lays a poly-metric cycle over a run of sixteenths. Lives for one pass.
class PolyMetricPass {
public:
    PolyMetricPass(PolyMetricStepGenerator& generator, std::uint8_t channel);

    // The notes of `steps` sixteenths; their ids are the places that they had beside their note-offs. A
    // negative `steps` is a fatal stop.
    PhraseEvents run(int steps);

private:
    void addNote(int step, std::uint8_t number, int velocity);
    void addNoteOff(double at);
    void append(const std::shared_ptr<PhraseEvent>& event);

    PolyMetricStepGenerator& generator;
    std::uint8_t channel;
    PhraseEvents events;
};

} // namespace volvelle
