#pragma once

#include "base/RandomSource.h"

#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace volvelle::test {

// Gives the numbers of a script for its lifetime, whatever the range, and keeps the ranges asked for. A draw
// after the script's end, or one outside the range, fails the test and gives the lower end.
class ScriptedRandomSource : public RandomSource {
public:
    explicit ScriptedRandomSource(std::vector<int> script);
    ~ScriptedRandomSource() override;
    ScriptedRandomSource(const ScriptedRandomSource&) = delete;
    ScriptedRandomSource& operator=(const ScriptedRandomSource&) = delete;

    int draw(int lower, int upper) override;

    std::vector<std::pair<int, int>> ranges;

private:
    RandomSource* before;
    std::vector<int> script;
};

// A seeded source for its lifetime: the same numbers in every run.
class SeededRandomSource : public RandomSource {
public:
    explicit SeededRandomSource(std::uint64_t seed);
    ~SeededRandomSource() override;
    SeededRandomSource(const SeededRandomSource&) = delete;
    SeededRandomSource& operator=(const SeededRandomSource&) = delete;

    int draw(int lower, int upper) override;

private:
    RandomSource* before;
    std::mt19937_64 engine;
};

} // namespace volvelle::test
