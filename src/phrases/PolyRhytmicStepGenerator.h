#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace volvelle {

// One step of a poly-rhythmic instance.
class PolyRhythmStepEvent {
public:
    int index = -1;        // number of the step in its instance
    int velocity = 0;      // 0 for a silent step, else 1 to 255
    double position = 0.0; // beats, within one bar of four
    double duration = 0.0; // beats
    std::uint8_t note = 60;
};

// One instance: a bar of four beats divided into equal steps.
class PolyRhythmStepEvents {
public:
    std::vector<std::shared_ptr<PolyRhythmStepEvent>> steps;
};

// Eight independent divisions of one bar, which over each other give a poly-rhythm.
class PolyRhythmicStepGenerator {
public:
    static constexpr int NUM_INSTANCES = 8;
    static constexpr int MAX_STEPS = 16;

    std::vector<std::shared_ptr<PolyRhythmStepEvents>> instances;

    // Eight instances, all drawn.
    PolyRhythmicStepGenerator();
    virtual ~PolyRhythmicStepGenerator();
    PolyRhythmicStepGenerator(const PolyRhythmicStepGenerator&) = delete;
    PolyRhythmicStepGenerator& operator=(const PolyRhythmicStepGenerator&) = delete;

    // Draws all instances anew, in order.
    virtual void randomize();

    // Draws one instance anew; nothing for an instance outside 0 to 7. Notes do not repeat within an
    // instance, and three of four steps are silent.
    virtual void randomize(int instance);

    // The instance's steps; none for an instance outside 0 to 7.
    virtual std::vector<std::shared_ptr<PolyRhythmStepEvent>> getSteps(int instance);
};

} // namespace volvelle
