#include "tests/support/ScriptedRandomSource.h"

#include <gtest/gtest.h>

namespace volvelle::test {

ScriptedRandomSource::ScriptedRandomSource(std::vector<int> numbers)
    : before(setRandomSource(this)), script(std::move(numbers))
{
}

ScriptedRandomSource::~ScriptedRandomSource()
{
    setRandomSource(before);
}

int ScriptedRandomSource::draw(int lower, int upper)
{
    const std::size_t index = ranges.size();
    ranges.emplace_back(lower, upper);
    if (index >= script.size()) {
        ADD_FAILURE() << "draw " << index << " stands behind the end of the script";
        return lower;
    }
    const int number = script[index];
    if (number < lower || number > upper) {
        ADD_FAILURE() << number << " is outside " << lower << " to " << upper;
        return lower;
    }
    return number;
}

SeededRandomSource::SeededRandomSource(std::uint64_t seed) : before(setRandomSource(this)), engine(seed) {}

SeededRandomSource::~SeededRandomSource()
{
    setRandomSource(before);
}

int SeededRandomSource::draw(int lower, int upper)
{
    const auto span = static_cast<std::uint64_t>(upper - lower) + 1;
    return lower + static_cast<int>(engine() % span);
}

} // namespace volvelle::test
