#include "phrases/PolyMetricStepGenerator.h"

#include "base/Checked.h"
#include "base/RandomSource.h"
#include "base/Text.h"

namespace volvelle {

PolyMetricStepGenerator::PolyMetricStepGenerator()
{
    PolyMetricStepGenerator::randomize();
}

PolyMetricStepGenerator::~PolyMetricStepGenerator() = default;

void PolyMetricStepGenerator::randomize()
{
    steps.clear();
    currentStep = 0;
    const int length = randomInteger(1, MAX_STEPS);
    for (int i = 0; i < length; ++i) {
        const auto step = std::make_shared<PolyMeterStepEvent>();
        step->index = i;
        step->type = makeStep(randomInteger(0, 5));
        step->velocity = step->type == "#" ? 0 : randomInteger(20, 120);
        step->octave = randomInteger(-1, 1);
        steps.push_back(step);
    }
}

std::string PolyMetricStepGenerator::makeStep(int kind)
{
    switch (kind) {
    case 0:
        return "-";
    case 1:
        return "0";
    case 2:
        return "#";
    default:
        return text(randomInteger(-12, 12));
    }
}

std::shared_ptr<PolyMeterStepEvent> PolyMetricStepGenerator::nextStep()
{
    if (steps.empty()) {
        return std::make_shared<PolyMeterStepEvent>();
    }
    if (std::cmp_greater_equal(currentStep, steps.size())) {
        currentStep = 0;
    }
    const auto step = checkedAt(steps, currentStep);
    currentStep += 1;
    return step;
}

void PolyMetricStepGenerator::reset()
{
    currentStep = 0;
}

} // namespace volvelle
