#include "base/RandomSource.h"

#include "base/FatalStop.h"

#include <utility>

namespace volvelle {

namespace {

RandomSource* installed = nullptr;

RandomSource& currentSource()
{
    if (installed != nullptr) {
        return *installed;
    }
    static SystemRandomSource system;
    return system;
}

} // namespace

std::uint64_t SystemRandomSource::entropy()
{
    std::random_device device;
    const std::uint64_t high = device();
    return (high << 32U) | device();
}

int SystemRandomSource::draw(int lower, int upper)
{
    return std::uniform_int_distribution<int>(lower, upper)(engine);
}

int randomInteger(int lower, int upper)
{
    if (lower > upper) {
        fatalStop(rangeMessage);
    }
    return currentSource().draw(lower, upper);
}

RandomSource* setRandomSource(RandomSource* source)
{
    return std::exchange(installed, source);
}

} // namespace volvelle
