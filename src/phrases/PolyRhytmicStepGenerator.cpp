#include "phrases/PolyRhytmicStepGenerator.h"

#include "base/Checked.h"
#include "base/RandomSource.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr double barLength = 4.0; // beats

void makeSounding(PolyRhythmStepEvent& step, int note, int place, double stepLength)
{
    step.velocity = randomInteger(20, 120);
    step.note = checkedCast<std::uint8_t>(note);
    step.duration = stepLength + 0.99;
    step.position = place * stepLength;
}

} // namespace

PolyRhythmicStepGenerator::PolyRhythmicStepGenerator()
{
    for (int i = 0; i < NUM_INSTANCES; ++i) {
        instances.push_back(std::make_shared<PolyRhythmStepEvents>());
    }
    PolyRhythmicStepGenerator::randomize();
}

PolyRhythmicStepGenerator::~PolyRhythmicStepGenerator() = default;

void PolyRhythmicStepGenerator::randomize()
{
    for (int instance = 0; instance < NUM_INSTANCES; ++instance) {
        randomize(instance);
    }
}

void PolyRhythmicStepGenerator::randomize(int instance)
{
    if (instance < 0 || instance >= NUM_INSTANCES) {
        return;
    }
    auto& steps = required(checkedAt(instances, instance)).steps;
    steps.clear();
    std::vector<int> usedNotes;
    const int count = randomInteger(1, MAX_STEPS);
    const double stepLength = barLength / count;
    for (int i = 0; i < count; ++i) {
        const int note = randomInteger(36, 60);
        if (std::ranges::find(usedNotes, note) != usedNotes.end()) {
            continue;
        }
        usedNotes.push_back(note);
        const auto step = std::make_shared<PolyRhythmStepEvent>();
        step->index = checkedCast<int>(steps.size());
        if (randomInteger(0, 3) == 0) {
            makeSounding(*step, note, i, stepLength);
        }
        steps.push_back(step);
    }
}

std::vector<std::shared_ptr<PolyRhythmStepEvent>> PolyRhythmicStepGenerator::getSteps(int instance)
{
    if (instance < 0 || instance >= NUM_INSTANCES) {
        return {};
    }
    return required(checkedAt(instances, instance)).steps;
}

} // namespace volvelle
