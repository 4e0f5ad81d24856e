#pragma once

#include <cstdint>
#include <random>

namespace volvelle {

// Integers, uniform over a closed range. Owned by whoever installs it; used by one thread at a time.
class RandomSource {
public:
    virtual ~RandomSource() = default;

    // An integer from `lower` to `upper`, both included. Only called with lower <= upper.
    virtual int draw(int lower, int upper) = 0;
};

// The product's own source, seeded from the system's entropy where no seed is given.
class SystemRandomSource : public RandomSource {
public:
    SystemRandomSource() : SystemRandomSource(entropy()) {}

    explicit SystemRandomSource(std::uint64_t seed) : engine(seed) {}

    int draw(int lower, int upper) override;

private:
    static std::uint64_t entropy();

    std::mt19937_64 engine;
};

// A draw from the source in force; an inverted range is a fatal stop.
int randomInteger(int lower, int upper);

// Puts a source in force, null for the system's, which is made at its first draw, and returns the one before,
// null where it was the system's.
// Tests alone call it. [any]
RandomSource* setRandomSource(RandomSource* source);

} // namespace volvelle
