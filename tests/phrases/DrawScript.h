#pragma once

#include "tests/support/ScriptedRandomSource.h"

#include <utility>
#include <vector>

namespace volvelle::test {

// The draws of an operation in their order: the number that each is given, and the range that it has to ask
// for.
class DrawScript {
public:
    DrawScript& draw(int number, int lower, int upper);

    DrawScript& metricCycle(); // a cycle of one step "0" of velocity 100
    DrawScript& silentInstance();
    DrawScript& rhythms();   // eight silent instances
    DrawScript& newPhrase(); // the three generators of a phrase
    DrawScript& newMixer();  // those of seven phrases

    std::vector<int> numbers;
    std::vector<std::pair<int, int>> ranges;
};

} // namespace volvelle::test
