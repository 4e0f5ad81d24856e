#include "tests/cli/ProgramRun.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <unistd.h>

namespace volvelle::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using JSON = nlohmann::json;

std::string bytes(std::initializer_list<int> values)
{
    std::string result;
    for (const int value : values) {
        result += static_cast<char>(value);
    }
    return result;
}

// One track at 96 ticks: a name, a time signature, a tempo, a triad of two beats on channel 3, a program.
std::string smallFile()
{
    const std::string track = bytes({0,    0xFF, 3,    3,  'A',  0xC4, 'b',     // a name in Latin-1
                                     0,    0xFF, 0x58, 4,  6,    3,    24,   8, // 6/8
                                     0,    0xFF, 0x51, 3,  0x09, 0x27, 0xC0,    // 100 beats per minute
                                     0,    0xC2, 17,                            // program
                                     0,    0x92, 60,   90, 0,    64,   91,   0,  67, 92,     // C E G
                                     0x81, 0x40, 0x82, 60, 10,   0,    64,   11, 0,  67, 12, //
                                     0x60, 0xFF, 0x2F, 0});
    return "MThd" + bytes({0, 0, 0, 6, 0, 0, 0, 1, 0, 96}) + "MTrk" +
           bytes({0, 0, 0, static_cast<int>(track.size())}) + track;
}

using InspectCommandTest = ProgramRun;

TEST_F(InspectCommandTest, TheJSONHoldsEverythingOfTheFile)
{
    write("small.mid", smallFile());
    const auto result = volvelle("inspect small.mid --json");
    ASSERT_EQ(result.status, 0) << result.error;
    const auto expected = JSON::parse(R"({
        "division": 96, "lengthBeats": 3.0,
        "tempo": [{"position": 0.0, "bpm": 100.0}],
        "tracks": [{
            "index": 0, "channel": 2, "name": "AÄb", "lengthBeats": 3.0,
            "notes": [
              {"position": 0.0, "duration": 2.0, "number": 60, "velocity": 90, "releaseVelocity": 10, "channel": 2},
              {"position": 0.0, "duration": 2.0, "number": 64, "velocity": 91, "releaseVelocity": 11, "channel": 2},
              {"position": 0.0, "duration": 2.0, "number": 67, "velocity": 92, "releaseVelocity": 12, "channel": 2}
            ],
            "events": [
              {"position": 0.0, "type": "track name", "data": [65, 196, 98], "text": "AÄb"},
              {"position": 0.0, "type": "time signature", "data": [6, 3, 24, 8]},
              {"position": 0.0, "type": "program", "channel": 2, "data": [17]}
            ]}],
        "chords": [{"position": 0.0, "duration": 3.0, "shortName": "CM", "longName": "C Major",
                    "notes": [60, 64, 67]}],
        "warnings": []})");
    EXPECT_EQ(JSON::parse(result.output), expected);
}

TEST_F(InspectCommandTest, TheTextIsForAReader)
{
    write("small.mid", smallFile());
    EXPECT_EQ(volvelle("inspect small.mid").output,
              "'small.mid': 3.0 beats, 96 ticks to the beat\n"
              "Tempo\n"
              "  0.0  100.0 beats per minute\n"
              "Tracks\n"
              "  0  channel 3, 3 notes, keys 60 to 67, 3 other events, 3.0 beats, \"AÄb\"\n"
              "Chords\n"
              "  0.0  CM for 3.0 beats\n");
}

TEST_F(InspectCommandTest, AMadeIdeaShowsTheChordsThatTheGeneratorTold)
{
    const auto made = volvelle("generate --out idea.mid");
    const auto begin = made.output.find("Chords\n") + 7;
    const std::string told = made.output.substr(begin, made.output.find("Notes\n") - begin);
    std::istringstream lines(told);
    const auto shown = JSON::parse(volvelle("inspect idea.mid --json").output)["chords"];
    std::size_t count = 0;
    double position = 0.0;
    for (std::string name; lines >> position >> name; ++count) {
        ASSERT_LT(count, shown.size());
        EXPECT_EQ(shown[count]["position"], position);
        EXPECT_EQ(shown[count]["shortName"], name);
    }
    EXPECT_EQ(count, shown.size());
    EXPECT_GT(count, 0U);
}

TEST_F(InspectCommandTest, BeatsAreRoundedForAReader)
{
    std::string file = smallFile();
    file.replace(file.find(bytes({0, 96}) + "MTrk"), 2, bytes({0, 97}));
    write("uneven.mid", file);
    EXPECT_EQ(volvelle("inspect uneven.mid").output,
              "'uneven.mid': 2.969 beats, 97 ticks to the beat\n"
              "Tempo\n"
              "  0.0  100.0 beats per minute\n"
              "Tracks\n"
              "  0  channel 3, 3 notes, keys 60 to 67, 3 other events, 2.969 beats, \"AÄb\"\n"
              "Chords\n"
              "  0.0  CM for 2.969 beats\n");
    EXPECT_EQ(JSON::parse(volvelle("inspect uneven.mid --json").output)["lengthBeats"], 288.0 / 97.0);
}

TEST_F(InspectCommandTest, SeveralFilesAreShownInTheirOrder)
{
    write("a.mid", smallFile());
    write("b.mid", smallFile());
    const auto shown = volvelle("inspect b.mid gone.mid a.mid");
    EXPECT_EQ(shown.status, 1);
    EXPECT_EQ(shown.error, "There is no file 'gone.mid'.\n");
    EXPECT_THAT(shown.output, StartsWith("'b.mid': 3.0 beats"));
    EXPECT_THAT(shown.output, HasSubstr("\n'a.mid': 3.0 beats"));

    const auto json = volvelle("inspect b.mid a.mid --json");
    EXPECT_EQ(json.status, 0);
    std::istringstream lines(json.output);
    for (const char* name : {"b.mid", "a.mid"}) {
        std::string line;
        std::getline(lines, line);
        EXPECT_THAT(line, StartsWith(std::string("{\"file\":\"") + name + "\",\"division\":96,"));
        EXPECT_EQ(JSON::parse(line)["tracks"].size(), 1U);
    }
}

TEST_F(InspectCommandTest, AFileWithoutAnyTrackIsOnePlainLine)
{
    write("none.mid", "MThd" + bytes({0, 0, 0, 6, 0, 1, 0, 0, 0, 96}));
    for (const char* arguments : {"inspect none.mid", "inspect none.mid --json"}) {
        const auto result = volvelle(arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error, "'none.mid' holds no track.\n");
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(InspectCommandTest, ManyFaultsAreOneLineOfWarning)
{
    std::string file = smallFile();
    file.replace(file.find(bytes({0, 0, 0, 1, 0, 96})), 6, bytes({0, 7, 0, 9, 0, 96}));
    write("odd.mid", file.substr(0, file.size() - 8));
    const auto shown = volvelle("inspect odd.mid").output;
    const auto json = JSON::parse(volvelle("inspect odd.mid --json").output);
    EXPECT_EQ(json["warnings"].size(), 4U);
    EXPECT_EQ(shown.substr(shown.find("Warning: ")),
              "Warning: " + json["warnings"][0].get<std::string>() +
                  " Tracks kept: 1, notes: 3. There is more: 'inspect --json' lists it.\n");
}

TEST_F(InspectCommandTest, ADamagedFileOpensWithAWarning)
{
    const std::string whole = smallFile();
    write("cut.mid", whole.substr(0, whole.size() - 8));
    const auto result = volvelle("inspect cut.mid");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("3 notes"));
    EXPECT_THAT(result.output, HasSubstr("\nWarning: "));
    EXPECT_THAT(JSON::parse(volvelle("inspect cut.mid --json").output)["warnings"][0].get<std::string>(),
                StartsWith("Track 1 ends early"));
}

TEST_F(InspectCommandTest, OfManyWarningsTheNumberOfFurtherOnesIsAFieldOfItsOwn)
{
    const std::string track("MTrk\0\0\0\4\0\x90<d", 12);
    std::string file("MThd\0\0\0\6\0\1\0\x64\0\x60", 14);
    for (int i = 0; i < 100; ++i) {
        file += track;
    }
    write("junk.mid", file);
    const JSON json = JSON::parse(volvelle("inspect junk.mid --json").output);
    ASSERT_EQ(json["warnings"].size(), 20U);
    EXPECT_THAT(json["warnings"][19].get<std::string>(), StartsWith("Track 10: "));
    EXPECT_EQ(json["moreWarnings"], 180);
    write("junk.mid", file.substr(0, 14) + track);
    EXPECT_FALSE(JSON::parse(volvelle("inspect junk.mid --json").output).contains("moreWarnings"));
}

TEST_F(InspectCommandTest, NamesReachTheTerminalWithoutControlCharacters)
{
    std::string file = smallFile();
    file.replace(file.find("A\xC4"
                           "b"),
                 3, "\x1B\x9B\n");
    write("\x1B[2J\xFF.mid", file);
    const auto shown = volvelle("inspect \"$(printf '\\033[2J\\377.mid')\"");
    EXPECT_EQ(shown.error, "");
    EXPECT_THAT(shown.output, StartsWith("'?[2J\u00FF.mid': 3.0 beats, "));
    EXPECT_THAT(shown.output, HasSubstr(", 3.0 beats, \"?? \"\n"));
    const auto json = volvelle("inspect \"$(printf '\\033[2J\\377.mid')\" --json").output;
    EXPECT_THAT(json, HasSubstr("\"name\":\"\\u001b\\u009B\\n\""));
    EXPECT_EQ(JSON::parse(json)["tracks"][0]["name"], "\x1B\u009B\n");
}

TEST_F(InspectCommandTest, NamesReachTheTerminalWithoutMarksThatTurnItsDirection)
{
    std::string file = smallFile();
    file.replace(file.find("A\xC4"
                           "b"),
                 3, "\u202E");
    write("a.mid", file);
    EXPECT_THAT(volvelle("inspect a.mid").output, HasSubstr(", 3.0 beats, \"?\"\n"));
    const auto json = volvelle("inspect a.mid --json").output;
    EXPECT_THAT(json, HasSubstr("\"name\":\"\\u202E\""));
    EXPECT_EQ(JSON::parse(json)["tracks"][0]["name"], "\u202E");
}

TEST_F(InspectCommandTest, AFileThatIsNotThereIsOnePlainLine)
{
    const auto result = volvelle("inspect gone.mid");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "There is no file 'gone.mid'.\n");
    EXPECT_THAT(result.output, IsEmpty());
}

TEST_F(InspectCommandTest, RubbishIsOnePlainLine)
{
    for (const std::string& rubbish : {std::string(), std::string("hello"), std::string(5000, '\xFF')}) {
        write("rubbish.mid", rubbish);
        const auto result = volvelle("inspect rubbish.mid --json");
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error, "'rubbish.mid' is no Standard MIDI File.\n");
        EXPECT_EQ(read("rubbish.mid"), rubbish);
    }
}

TEST_F(InspectCommandTest, WhatCannotBeReadIsToldWithItsReason)
{
    write("folder/x", "");
    write("large", "");
    std::filesystem::resize_file(folder / "work/large", (std::uintmax_t{1} << 31U) + 1);
    std::filesystem::create_symlink("loop", folder / "work/loop");
    const std::string longName(300, 'a');
    const std::pair<std::string, std::string> cases[] = {{"folder", "it is a folder"},
                                                         {"large", "it is larger than 2 GiB"},
                                                         {"loop", "its links lead in a circle"},
                                                         {longName, "its name is too long"}};
    for (const auto& [name, reason] : cases) {
        const auto result = volvelle("inspect " + name);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error, "'" + name + "' could not be read: " + reason + ".\n");
    }
}

TEST_F(InspectCommandTest, AFileThatMayNotBeReadIsToldWithItsReason)
{
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser may read everything";
    }
    write("a.mid", "");
    std::filesystem::permissions(folder / "work/a.mid", std::filesystem::perms::none);
    EXPECT_EQ(volvelle("inspect a.mid").error, "'a.mid' could not be read: it may not be read.\n");
}

} // namespace
} // namespace volvelle::test
