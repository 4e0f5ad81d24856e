#include "app/shell/EndSignals.h"

#include "base/PendingFiles.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace volvelle::test {
namespace {

TEST(EndSignalsDeathTest, WhereOneWaitsTooLongTheNextEndsTheProcessWithoutItsTemporaryFiles)
{
    const TemporaryFolder folder;
    const auto half = folder.write("half", "a");
    EXPECT_EXIT(
        {
            alarm(30); // seconds, for a process that would not end
            rememberPendingFile(half.string());
            EndSignals::hold();
            std::raise(SIGTERM);
            std::raise(SIGTERM);
            std::fputs("They wait.", stderr);
            while (true) {
                std::raise(SIGHUP);
            }
        },
        testing::ExitedWithCode(128 + SIGHUP), "They wait.");
    EXPECT_EQ(folder.names(), std::vector<std::string>{});
}

} // namespace
} // namespace volvelle::test
