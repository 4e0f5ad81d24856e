#pragma once

#include <memory>
#include <string>
#include <vector>

namespace volvelle {

// One step of a poly-metric cycle.
class PolyMeterStepEvent {
public:
    int index = -1; // place in the cycle; -1 for a step that was added by hand
    std::string type =
        "-"; // "-" ties, "#" rests, "0" plays the reference C, a signed number that many semitones off
    int velocity = 0; // 0 to 255
    int octave = 0;   // -1 to 1; drawn and stored, nothing reads it
};

// A short cycle of steps of a random length, which runs against the fixed grid of sixteenths.
class PolyMetricStepGenerator {
public:
    static constexpr int MAX_STEPS = 16;

    std::vector<std::shared_ptr<PolyMeterStepEvent>> steps;
    int currentStep = 0; // read position of nextStep()

    // Draws a cycle.
    PolyMetricStepGenerator();
    virtual ~PolyMetricStepGenerator();
    PolyMetricStepGenerator(const PolyMetricStepGenerator&) = delete;
    PolyMetricStepGenerator& operator=(const PolyMetricStepGenerator&) = delete;

    // Draws a new cycle and returns to its start.
    virtual void randomize();

private:
    virtual std::string makeStep(int kind);

public:
    // The step at the read position, which moves on, round and round; a new step where there are none.
    virtual std::shared_ptr<PolyMeterStepEvent> nextStep();

    // Back to the start of the cycle.
    virtual void reset();
};

} // namespace volvelle
