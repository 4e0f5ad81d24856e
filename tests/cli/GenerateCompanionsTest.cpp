#include "tests/cli/ProgramRun.h"

#include <gmock/gmock.h>

namespace volvelle::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using GenerateCompanions = ProgramRun;

TEST_F(GenerateCompanions, APictureAndTheSoundOfAnIdeaStandBesideIt)
{
    const auto result = volvelle("generate --out idea.mid --png idea.png --wav idea.WAV");
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.error, IsEmpty());
    EXPECT_THAT(names(), ElementsAre("idea.WAV", "idea.mid", "idea.png"));
    EXPECT_THAT(read("idea.png"), StartsWith("\x89PNG"));
    EXPECT_THAT(read("idea.WAV"), StartsWith("RIFF"));
    EXPECT_THAT(result.output, HasSubstr("\nWrote 'idea.mid'.\nWrote 'idea.png'.\nWrote 'idea.WAV': "));
}

TEST_F(GenerateCompanions, ThoseOfSeveralIdeasAreNumberedAsTheIdeasAre)
{
    write("New MIDI Idea 1.mid", "old");
    const auto result = volvelle("generate --count 2 --png a.png");
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(names(), ElementsAre("New MIDI Idea 1.mid", "New MIDI Idea 2.mid", "New MIDI Idea 3.mid",
                                     "a 2.png", "a 3.png"));
    EXPECT_THAT(result.output, testing::Not(HasSubstr(".png")));
}

TEST_F(GenerateCompanions, AQuietCommandMakesThemInSilence)
{
    const auto result = volvelle("--quiet generate --out ./-a.mid --png=-b.png --wav=-c.wav");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output + result.error, "");
    EXPECT_THAT(names(), ElementsAre("-a.mid", "-b.png", "-c.wav"));
}

TEST_F(GenerateCompanions, OtherNamesAreAQuestionOfUsage)
{
    const std::pair<const char*, const char*> cases[] = {
        {"--png a.jpg", "A picture is a PNG: name a file that ends in .png, not 'a.jpg'.\n"},
        {"--png /dev/volvelle", "A picture is a PNG: name a file that ends in .png, not '/dev/volvelle'.\n"},
        {"--png -", "Standard output takes an idea alone: leave --png and --wav out.\n"},
        {"--png /dev/stdout", "Standard output takes an idea alone: leave --png and --wav out.\n"},
        {"--wav /dev/fd/1", "Standard output takes an idea alone: leave --png and --wav out.\n"},
        {"--wav a.flac", "Sound is a WAV: name a file that ends in .wav, not 'a.flac'.\n"},
        {"--out - --wav a.wav", "Standard output takes an idea alone: leave --png and --wav out.\n"}};
    for (const auto& [arguments, line] : cases) {
        const auto result = volvelle(std::string("generate ") + arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_EQ(result.error, line);
        EXPECT_THAT(result.output, IsEmpty());
    }
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(GenerateCompanions, WhatCannotBeWrittenIsRefusedBeforeAnythingIs)
{
    std::filesystem::create_directory(folder / "work/a.png");
    const std::pair<const char*, const char*> cases[] = {
        {"--png a.png", "'a.png' could not be written: it is a folder.\n"},
        {"--wav no/a.wav", "'no/a.wav' could not be written: its folder does not exist.\n"},
        {"--count 2 --png no/a.png", "'no/a 1.png' could not be written: its folder does not exist.\n"}};
    for (const auto& [arguments, line] : cases) {
        const auto result = volvelle(std::string("generate ") + arguments);
        EXPECT_EQ(result.status, 1) << arguments;
        EXPECT_EQ(result.error, line);
    }
    EXPECT_THAT(names(), ElementsAre("a.png"));
}

TEST_F(GenerateCompanions, ThoseOfAllIdeasAreLookedAtBeforeTheFirstIsWritten)
{
    std::filesystem::create_directory(folder / "work/a 2.png");
    const auto named = volvelle("generate --count 2 --out idea.mid --png a.png");
    EXPECT_EQ(named.status, 1);
    EXPECT_EQ(named.error, "'a 2.png' could not be written: it is a folder.\n");
    EXPECT_THAT(names(), ElementsAre("a 2.png"));

    write("New MIDI Idea 2.mid", "old");
    std::filesystem::rename(folder / "work/a 2.png", folder / "work/a 3.wav");
    const auto free = volvelle("generate --count 2 --wav a.wav");
    EXPECT_EQ(free.status, 1);
    EXPECT_EQ(free.error, "'a 3.wav' could not be written: it is a folder.\n");
    EXPECT_THAT(names(), ElementsAre("New MIDI Idea 2.mid", "a 3.wav"));

    std::filesystem::rename(folder / "work/a 3.wav", folder / "work/a 2.wav");
    EXPECT_EQ(volvelle("generate --count 2 --wav a.wav").status, 0);
    EXPECT_THAT(names(), ElementsAre("New MIDI Idea 1.mid", "New MIDI Idea 2.mid", "New MIDI Idea 3.mid",
                                     "a 1.wav", "a 2.wav", "a 3.wav"));
}

TEST_F(GenerateCompanions, AMissingProgramIsToldBeforeAnythingIsWritten)
{
    const auto result =
        shell("cp \"$VOLVELLE\" alone; ./alone generate --resources \"${VOLVELLE%/*}/resources\" "
              "--png a.png");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "The program 'volvelle-app' is missing beside this one.\n");
    EXPECT_THAT(names(), ElementsAre("alone"));
}

TEST_F(GenerateCompanions, TheStatusOfAProgramThatFailsIsThatOfTheCommand)
{
    const std::string place =
        "cp \"$VOLVELLE\" . ; ln -s \"${VOLVELLE%/*}/resources\" resources; printf '%s\\n' ";
    const std::string begin =
        " > volvelle-app; chmod +x volvelle-app; ./volvelle generate --quiet --png a.png";
    const auto failed = shell(place + "'#!/bin/sh' 'echo No ink. >&2; exit 1'" + begin);
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.error, "No ink.\n");
    const auto ended = shell(place + "'#!/bin/sh' 'kill -9 $$'" + begin);
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.error, EndsWith("The program 'volvelle-app' ended before its work was done.\n"));
}

} // namespace
} // namespace volvelle::test
