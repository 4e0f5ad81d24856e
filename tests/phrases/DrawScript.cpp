#include "tests/phrases/DrawScript.h"

namespace volvelle::test {

DrawScript& DrawScript::draw(int number, int lower, int upper)
{
    numbers.push_back(number);
    ranges.emplace_back(lower, upper);
    return *this;
}

DrawScript& DrawScript::metricCycle()
{
    return draw(1, 1, 16).draw(1, 0, 5).draw(100, 20, 120).draw(0, -1, 1);
}

DrawScript& DrawScript::silentInstance()
{
    return draw(1, 1, 16).draw(36, 36, 60).draw(1, 0, 3);
}

DrawScript& DrawScript::rhythms()
{
    for (int instance = 0; instance < 8; ++instance) {
        silentInstance();
    }
    return *this;
}

DrawScript& DrawScript::newPhrase()
{
    return metricCycle().rhythms().draw(1, 1, 16);
}

DrawScript& DrawScript::newMixer()
{
    for (int track = 0; track < 7; ++track) {
        newPhrase();
    }
    return *this;
}

} // namespace volvelle::test
