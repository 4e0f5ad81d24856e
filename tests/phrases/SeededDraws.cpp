#include "tests/support/ScriptedRandomSource.h"

#include <gtest/gtest.h>

#include <optional>

// Every phrase draws steps when it is made: the same ones in every run, where a test does not script its own.
namespace volvelle::test {
namespace {

class SeededDraws : public testing::Environment {
public:
    void SetUp() override { source.emplace(1); }

    void TearDown() override { source.reset(); }

private:
    std::optional<SeededRandomSource> source;
};

const testing::Environment* const seededDraws = testing::AddGlobalTestEnvironment(new SeededDraws);

} // namespace
} // namespace volvelle::test
