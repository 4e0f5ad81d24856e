#include "tests/cli/ProgramRun.h"

#include <gmock/gmock.h>

namespace volvelle::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

using CommandLine = ProgramRun;

TEST_F(CommandLine, TheVersionIsOneLine)
{
    const auto result = volvelle("--version");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, MatchesRegex("volvelle [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(CommandLine, HelpNamesEveryCommand)
{
    const auto result = volvelle("--help");
    EXPECT_EQ(result.status, 0);
    for (const char* command : {"generate", "inspect", "library"}) {
        EXPECT_THAT(result.output, HasSubstr(command));
    }
    EXPECT_THAT(volvelle("generate --help").output, HasSubstr("--count"));
}

TEST_F(CommandLine, WrongUsageIsToldOnStandardErrorAndIsStatusTwo)
{
    for (const char* arguments :
         {"", "sing", "generate --count 0", "generate --count x", "generate --long -1", "inspect", "library",
          "library compile here", "generate --loud"}) {
        const auto result = volvelle(arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_THAT(result.error, testing::Not(IsEmpty())) << arguments;
        EXPECT_THAT(result.output, IsEmpty()) << arguments;
    }
    EXPECT_THAT(names(), IsEmpty());
}

} // namespace
} // namespace volvelle::test
