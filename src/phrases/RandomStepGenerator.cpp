#include "phrases/RandomStepGenerator.h"

#include "base/RandomSource.h"

namespace volvelle {

RandomStepGenerator::RandomStepGenerator()
{
    RandomStepGenerator::randomize();
}

RandomStepGenerator::~RandomStepGenerator() = default;

void RandomStepGenerator::randomize()
{
    steps.clear();
    const int count = randomInteger(1, 16);
    for (int i = 0; i < count; ++i) {
        const auto step = std::make_shared<RandomStepEvent>();
        step->index = i;
        steps.push_back(step);
    }
}

} // namespace volvelle
