#pragma once

#include <memory>
#include <vector>

namespace volvelle {

class RandomStepEvent {
public:
    int index = -1;
    int velocity = 0;
};

// A bare list of one to sixteen steps, drawn at construction.
class RandomStepGenerator {
public:
    std::vector<std::shared_ptr<RandomStepEvent>> steps;

    RandomStepGenerator();
    virtual ~RandomStepGenerator();
    RandomStepGenerator(const RandomStepGenerator&) = delete;
    RandomStepGenerator& operator=(const RandomStepGenerator&) = delete;

    // Draws a new list.
    virtual void randomize();
};

} // namespace volvelle
