#include "base/MainQueue.h"
#include "tests/support/ScriptedRandomSource.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

// The same draws in every run of a test, where it does not script its own: none come from the system.
class SeededDraws : public testing::EmptyTestEventListener {
public:
    void OnTestProgramStart(const testing::UnitTest& /*program*/) override { renew(); }

    void OnTestStart(const testing::TestInfo& /*test*/) override { renew(); }

private:
    void renew()
    {
        source.reset();
        source.emplace(1);
    }

    std::optional<volvelle::test::SeededRandomSource> source;
};

} // namespace

int main(int argc, char** argv)
{
    volvelle::mainQueue();
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new SeededDraws);
    return RUN_ALL_TESTS();
}
