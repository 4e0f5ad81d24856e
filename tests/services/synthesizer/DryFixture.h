#pragma once

#include "services/synthesizer/Synthesizer.h"
#include "tests/services/synthesizer/Measuring.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

namespace volvelle::test {

// A synthesizer without effects for each test; skipped where the build made no bank.
class DryFixture : public testing::Test {
protected:
    void SetUp() override
    {
        if (!std::filesystem::exists(builtInBank())) {
            GTEST_SKIP() << "the built-in bank was not made";
        }
        dry = drySynthesizer(builtInBank());
        ASSERT_TRUE(dry);
    }

    std::unique_ptr<Synthesizer> dry;
};

} // namespace volvelle::test
