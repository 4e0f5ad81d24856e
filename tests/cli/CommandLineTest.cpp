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

TEST_F(CommandLine, TheHelpOfEachCommandHasAnExampleAndItsDefaults)
{
    const std::pair<const char*, std::vector<const char*>> commands[] = {
        {"generate", {"New MIDI Idea.mid", "1 without it"}},
        {"inspect", {"--json"}},
        {"play",
         {"Keys: the space bar pauses and goes on, q and Ctrl-C end.", "the sound device without it"}},
        {"record",
         {"Keys: q and Ctrl-C end the recording, and it is saved.", "until it is ended without it"}},
        {"render", {"48000 without it", "all without it", "takes WAV, too"}},
        {"library check", {"the one in use without it", "--ear"}},
        {"library compile", {"SCORES", "DIR"}}};
    for (const auto& [command, parts] : commands) {
        const auto result = volvelle(std::string(command) + " --help | tr -s ' \\n' ' '");
        EXPECT_THAT(result.output, HasSubstr(std::string("Example: volvelle ") + command));
        for (const char* const part : parts) {
            EXPECT_THAT(result.output, HasSubstr(part)) << command;
        }
    }
}

TEST_F(CommandLine, AnOptionThatCannotActIsAQuestionOfUsage)
{
    const auto compile = volvelle("library compile scores lib --resources elsewhere");
    EXPECT_EQ(compile.status, 2);
    EXPECT_EQ(compile.error, "'library compile' takes no --resources: DIR is the folder of phrases.\n");
    const auto check = volvelle("library check lib --resources elsewhere");
    EXPECT_EQ(check.status, 2);
    EXPECT_EQ(check.error, "DIR and --resources name one thing each: leave one of them out.\n");
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(CommandLine, WrongUsageIsToldOnStandardErrorAndIsStatusTwo)
{
    for (const char* arguments :
         {"sing", "sing song.mid", "generate song.mid", "generate --count 0", "generate --count x",
          "generate --long -1", "record --out a", "record --port x", "record --port x --out a.wav",
          "record --port x --out a --seconds x", "inspect", "library", "library compile here",
          "generate --loud"}) {
        const auto result = volvelle(arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_THAT(result.error, testing::Not(IsEmpty())) << arguments;
        EXPECT_THAT(result.output, IsEmpty()) << arguments;
    }
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(CommandLine, APortHasAName)
{
    for (const char* arguments : {"record --port '' --out a", "play a.mid --port ''",
                                  "library hear a.score --port ''", "play --port= a.mid"}) {
        const auto result = volvelle(arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_EQ(result.error, "A MIDI port has a name: --port list shows them all.\n") << arguments;
        EXPECT_THAT(result.output, IsEmpty()) << arguments;
    }
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(CommandLine, AnEmptyValueIsAQuestionOfUsageAndTakesNotTheNextWord)
{
    const std::pair<const char*, const char*> cases[] = {{"generate --out= --quiet", "--out"},
                                                         {"generate --out ''", "--out"},
                                                         {"generate --out=", "--out"},
                                                         {"generate --png= --quiet", "--png"},
                                                         {"--resources= generate", "--resources"},
                                                         {"--resources '' generate", "--resources"},
                                                         {"library hear a.score --bank ''", "--bank"},
                                                         {"render a.mid --out= b.wav", "--out"},
                                                         {"picture a.mid --out=", "--out"},
                                                         {"record --port x --out=", "--out"}};
    for (const auto& [arguments, option] : cases) {
        const auto result = volvelle(arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_EQ(result.error, std::string(option) + " is given an empty value.\n") << arguments;
        EXPECT_THAT(result.output, IsEmpty()) << arguments;
    }
    for (const char* arguments :
         {"generate --count= 3", "play a.mid --engine= render", "generate --long ''"}) {
        EXPECT_EQ(volvelle(arguments).status, 2) << arguments;
    }
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(volvelle("inspect --json -- --out=").error, "There is no file '--out='.\n");
    EXPECT_EQ(volvelle("inspect gone.mid --json=").error, "There is no file 'gone.mid'.\n");
}

TEST_F(CommandLine, TheTimeOfARecordingIsAboveNothingAndUpToADay)
{
    for (const std::string seconds : {"0", "-1", "86400.1", "inf", "nan"}) {
        const auto result = volvelle("record --port x --out a --seconds " + seconds);
        EXPECT_EQ(result.status, 2) << seconds;
        EXPECT_EQ(result.error, "--seconds: Value " + seconds + " is not above 0 and up to 86400\n" +
                                    "Run with --help for more information.\n");
    }
    for (const char* seconds : {"0.1", "86400"}) {
        const auto result = volvelle(std::string("record --port x --out no/a --seconds ") + seconds);
        EXPECT_EQ(result.error, "'no/a.mid' could not be written: its folder does not exist.\n");
    }
}

TEST_F(CommandLine, WrongUsageIsToldInPlainLines)
{
    const std::string word = "\"$(printf 'a\\033[31m\\nb\\377')\"";
    for (const std::string& arguments : {"generate " + word, "generate --" + word, "generate --count " + word,
                                         word, "library " + word, "play a.mid --engine " + word}) {
        const auto result = volvelle(arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_THAT(result.error, HasSubstr("a?[31m b\xC3\xBF")) << arguments;
        for (const char* raw : {"\x1B", "m\n", "b\xFF"}) {
            EXPECT_THAT(result.error, testing::Not(HasSubstr(raw))) << arguments;
        }
    }
}

TEST_F(CommandLine, AnUnknownCommandIsToldWithTheNearest)
{
    const std::pair<const char*, const char*> cases[] = {
        {"gen", "There is no command 'gen': 'generate' is the nearest. --help lists all.\n"},
        {"--quiet insepct a.mid",
         "There is no command 'insepct': 'inspect' is the nearest. --help lists all.\n"},
        {"library chek", "There is no command 'chek': 'check' is the nearest. --help lists all.\n"},
        {"song", "There is no command 'song'. --help lists all.\n"}};
    for (const auto& [arguments, line] : cases) {
        const auto result = volvelle(arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_EQ(result.error, line);
    }
}

TEST_F(CommandLine, CommonOptionsStandBeforeAndBehindTheCommand)
{
    for (const char* arguments : {"--quiet generate --out a", "generate --out a --quiet",
                                  "--quiet --resources \"${VOLVELLE%/*}/resources\" library check",
                                  "library --quiet check", "library check --quiet"}) {
        const auto result = volvelle(arguments);
        EXPECT_EQ(result.status, 0) << arguments << result.error;
        EXPECT_EQ(result.output, "") << arguments;
    }
    const std::string version = volvelle("--version").output;
    EXPECT_EQ(volvelle("generate --version").output, version);
    EXPECT_EQ(volvelle("inspect --version").output, version);
    EXPECT_THAT(volvelle("--verbose generate --out a").output, testing::StartsWith("MIDIClipGenerator::"));
}

TEST_F(CommandLine, WithoutADisplayTheWindowIsRefusedInOneLine)
{
    const std::string line = "There is no display: 'volvelle generate' writes an idea without one.\n";
    for (const char* display : {"unset DISPLAY", "export DISPLAY="}) {
        const auto result =
            shell(std::string("unset WAYLAND_DISPLAY QT_QPA_PLATFORM; ") + display + "; exec \"$VOLVELLE\"");
        EXPECT_EQ(result.status, 1) << display;
        EXPECT_EQ(result.error, line);
    }
}

TEST_F(CommandLine, APictureStandsOnStandardOutputAlone)
{
    volvelle("generate --out a.mid");
    const auto result = volvelle("picture a.mid --size 64 --out - --verbose");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, testing::StartsWith("\x89PNG"));
    EXPECT_THAT(result.error, IsEmpty());
}

TEST_F(CommandLine, AnInspectionInJSONStandsOnStandardOutputAlone)
{
    volvelle("generate --out a.mid");
    const auto alone = volvelle("inspect a.mid --json");
    EXPECT_THAT(volvelle("inspect a.mid").output, testing::StartsWith("'a.mid': "));
    EXPECT_THAT(volvelle("inspect a.mid --verbose").output, testing::Not(testing::StartsWith("'a.mid': ")));
    EXPECT_EQ(volvelle("inspect a.mid --json --verbose").output, alone.output);
    for (const char* command : {"inspect", "library compile"}) {
        EXPECT_THAT(volvelle(std::string(command) + " --help").output, HasSubstr("Also --verbose"))
            << command;
    }
}

TEST_F(CommandLine, APictureGoesIntoAPipeOrADeviceOfAnyName)
{
    volvelle("generate --out a.mid");
    EXPECT_EQ(volvelle("picture a.mid --size 64 --out a.png").status, 0);
    const auto piped = shell("mkfifo pipe && cat pipe >got & while ! test -p pipe; do :; done; "
                             "\"$VOLVELLE\" picture a.mid --size 64 --out pipe; wait");
    EXPECT_EQ(piped.error, "");
    EXPECT_TRUE(read("got") == read("a.png"));
    EXPECT_EQ(volvelle("picture a.mid --size 64 --out /dev/full").error,
              "'/dev/full' could not be written: the device is full.\n");
    EXPECT_EQ(shell("exec \"$VOLVELLE\" picture a.mid --size 64 --out - >/dev/full").error,
              "'standard output' could not be written: the device is full.\n");
    const auto both = shell("exec 3>png 4>wav; \"$VOLVELLE\" generate --quiet --out b.mid --png /dev/fd/3 "
                            "--wav /dev/fd/4 | cat");
    EXPECT_EQ(both.error, "");
    EXPECT_THAT(read("png"), testing::StartsWith("\x89PNG"));
    EXPECT_THAT(read("wav"), testing::StartsWith("RIFF"));
    EXPECT_EQ(volvelle("generate --count 2 --png /dev/null").status, 2);
    EXPECT_EQ(volvelle("generate --png /dev/stdout").status, 2);
}

TEST_F(CommandLine, APictureOfAFileWithoutAnyTrackIsOnePlainLine)
{
    write("none.mid", std::string("MThd\0\0\0\6\0\1\0\0\0\x60", 14));
    for (const char* command : {"picture none.mid --out a.png", "inspect none.mid"}) {
        const auto result = volvelle(command);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error, "'none.mid' holds no track.\n");
    }
    EXPECT_THAT(names(), testing::ElementsAre("none.mid"));
}

TEST_F(CommandLine, OutputThatCannotBeWrittenIsAFailure)
{
    volvelle("generate --out a.mid");
    for (const char* arguments : {"--version", "--help", "inspect a.mid", "inspect a.mid --json",
                                  "generate --out b.mid", "library check"}) {
        for (const char* stream : {">/dev/full", ">&-"}) {
            const auto result = shell(std::string("exec \"$VOLVELLE\" ") + arguments + stream);
            EXPECT_EQ(result.status, 1) << arguments << stream;
            EXPECT_EQ(result.error, "Standard output could not be written.\n") << arguments << stream;
        }
    }
    EXPECT_EQ(shell("exec \"$VOLVELLE\" generate --quiet --out c.mid >&- 2>&- <&-").status, 0);
    EXPECT_THAT(read("c.mid"), testing::StartsWith("MThd"));
}

} // namespace
} // namespace volvelle::test
