#include "scores/PhraseFile.h"

#include "phrases/MIDIPhrases.h"
#include "scores/ScoreFile.h"
#include "scores/ScoreWriter.h"
#include "services/musicsequence/FaultPoint.h"
#include "tests/scores/ScoreTexts.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/inotify.h>
#include <tuple>
#include <unistd.h>

namespace volvelle {
namespace {

namespace fs = std::filesystem;
using test::head;
using test::parsed;

class PhraseFile : public testing::Test {
protected:
    void put(const Score& score, const std::string& name) const
    {
        const fs::path place = folder / phraseFolder(score.kind) / name;
        const auto bytes = scoreToMIDI(score);
        ASSERT_TRUE(bytes);
        fs::create_directories(place.parent_path());
        std::ofstream(place, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes->data()), std::ssize(*bytes));
    }

    // A file of one track, 96 ticks to the beat, with these events in hex and its end.
    void write(const std::string& name, std::string events) const
    {
        std::erase(events, ' ');
        std::string track;
        for (std::size_t i = 0; i < events.size(); i += 2) {
            track += static_cast<char>(std::stoi(events.substr(i, 2), nullptr, 16));
        }
        track += std::string("\xFF\x2F\0", 3);
        std::ofstream(folder / name, std::ios::binary)
            << std::string("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0", 21) << static_cast<char>(track.size())
            << track;
    }

    Score readElsewhere(const std::string& name, const std::string& hex, ScoreKind kind) const
    {
        write(name, hex);
        const auto score = readMIDIPhrase(folder / name, kind);
        EXPECT_EQ(score.error(), "");
        return score ? *score : Score();
    }

    Score readBack(const Score& score) const
    {
        put(score, "001.mid");
        return scoreOf(*loadPhrase(folder / phraseFolder(score.kind) / "001.mid", score.kind), score.kind);
    }

    test::TemporaryFolder temporary;
    fs::path folder = temporary.path;
};

TEST_F(PhraseFile, AScoreIsReadBackFromItsPhrase)
{
    const Score lead = parsed(
        head +
            "machine: yes\ncolour: yes\nnotes:\n| ff C4:3 r:1 [E4 G4]:4 r:8 | C4:16=90 | ~:4 r:12 | r:16 |\n",
        ScoreKind::lead);
    const Score back = readBack(lead);
    EXPECT_EQ(back.title, "T");
    EXPECT_TRUE(back.machine && back.colour);
    EXPECT_EQ(back.notes, lead.notes);
    EXPECT_EQ(back.kind, ScoreKind::lead);
    EXPECT_FALSE(readBack(parsed(head + "notes:\n| C4:16 | r:16 | r:16 | r:16 |\n", ScoreKind::lead)).colour);
}

TEST_F(PhraseFile, TheChordsOfAPatternAreThoseThatAreFound)
{
    const Score pattern =
        parsed(head + "chords:\n| Am . . G#+ | Bo7 | FM - | E7 |\n", ScoreKind::chordPattern);
    EXPECT_EQ(readBack(pattern).chords, pattern.chords);
}

TEST_F(PhraseFile, AMIDIFileFromElsewhereIsAScoreOfItsNotesOnTheGrid)
{
    const Score score = readElsewhere("my groove.mid",
                                      "00 924850 02 824800" // C4 for two ticks
                                      "01 924850 03 824800" // again at once
                                      "54 924F40 34 924F41" // G4 at beat 0.96 for a beat, and at 1.5
                                      "2C 824F00 04 824F00"
                                      "8A39 924850 04 824800" // C4 at beat 15.9
                                      "05",
                                      ScoreKind::lead);
    EXPECT_EQ(score.title, "my groove");
    EXPECT_EQ(score.kind, ScoreKind::lead);
    const std::vector<ScoreNote> notes = {
        {0.0, 0.21875, 72, 80}, {1.0, 0.46875, 79, 64}, {1.5, 0.46875, 79, 65}, {15.75, 0.21875, 72, 80}};
    EXPECT_EQ(score.notes, notes);
}

TEST_F(PhraseFile, AMIDIFileKeepsItsTexts)
{
    const Score lead =
        parsed(head + "machine: yes\ncolour: yes\nnotes:\n| ff C4:3 r:13 | C4:16=90 | ~:4 r:12 | r:16 |\n",
               ScoreKind::lead);
    put(lead, "001.mid");
    const auto back = readMIDIPhrase(folder / phraseFolder(ScoreKind::lead) / "001.mid", ScoreKind::lead);
    ASSERT_TRUE(back) << back.error();
    EXPECT_EQ(scoreToMIDI(*back).error(), "");
    EXPECT_EQ(*scoreToMIDI(*back), *scoreToMIDI(lead));
}

TEST_F(PhraseFile, AChordPatternFromElsewhereIsItsChords)
{
    const Score pattern = parsed(head + "chords:\n| Am . . G#+ | Bo7 | FM | E7 |\n", ScoreKind::chordPattern);
    put(pattern, "001.mid");
    const fs::path file = folder / phraseFolder(ScoreKind::chordPattern) / "001.mid";
    const auto back = readMIDIPhrase(file, ScoreKind::chordPattern);
    ASSERT_TRUE(back) << back.error();
    EXPECT_EQ(back->chords, pattern.chords);
    EXPECT_EQ(back->notes, pattern.notes);
}

TEST_F(PhraseFile, AChordThatIsFoundAtTheEndIsLeftOut)
{
    const std::string fifth = " 904050 00 904750 ";
    const Score score = readElsewhere(
        "a.mid", "00" + fifth + "60 804000 00 804700 8B19 904150 00 904850 04 804100 00 804800 03",
        ScoreKind::chordPattern);
    ASSERT_EQ(score.chords.size(), 1U);
    EXPECT_EQ(score.chords[0], (ScoreChord{0, "E5"}));
    EXPECT_EQ(score.notes.size(), 2U);
    EXPECT_EQ(score.notes[0].duration, 15.96875);
}

TEST_F(PhraseFile, AMIDIFileIsOpenedOnce)
{
    for (const ScoreKind kind : {ScoreKind::lead, ScoreKind::chordPattern}) {
        write("a.mid", "00 904050 00 904750 60 804000 00 804700 00");
        const int watch = inotify_init1(IN_NONBLOCK);
        ASSERT_GE(inotify_add_watch(watch, (folder / "a.mid").c_str(), IN_OPEN | IN_CLOSE), 0);
        EXPECT_EQ(readScore(folder / "a.mid", kind).error(), "");
        std::array<char, 4096> events{};
        EXPECT_EQ(read(watch, events.data(), events.size()), ssize_t{2 * sizeof(inotify_event)});
        close(watch);
    }
}

TEST_F(PhraseFile, WhatIsNoPhraseIsTold)
{
    const std::tuple<std::string, ScoreKind, std::string> cases[] = {
        {"00", ScoreKind::lead, "the MIDI file holds no notes"},
        {"00", ScoreKind::chordPattern, "the MIDI file holds no chords"},
        {"00 924850 18 824800 8C00", ScoreKind::lead, "the MIDI file is 16.25 beats long, at most 16"},
        {"8B7F 924850 01 824800 00", ScoreKind::drums, ""},
        {"00 904850 00 904950 60 804800 00 804900 00", ScoreKind::lead, ""},
        {"00 924850 8C0B 824800 00", ScoreKind::lead, ""},
    };
    for (const auto& [hex, kind, line] : cases) {
        write("a.mid", hex);
        EXPECT_EQ(readMIDIPhrase(folder / "a.mid", kind).error(), line) << hex;
    }
    std::ofstream(folder / "a.mid") << "x";
    EXPECT_EQ(readMIDIPhrase(folder / "a.mid", ScoreKind::lead).error(), "the MIDI file cannot be read");
    std::ofstream(folder / "a.mid") << std::string(
        "MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x20\0\x92H@\x10\x82H\0", 30);
    EXPECT_THAT(readMIDIPhrase(folder / "a.mid", ScoreKind::lead).error(), testing::EndsWith("."));
    EXPECT_EQ(readMIDIPhrase(folder / "gone.mid", ScoreKind::lead).error(), "the MIDI file cannot be read");
}

TEST_F(PhraseFile, AReadingThatFailsIsToldThoughTheNextWouldNot)
{
    write("a.mid", "00 904050 00 904750 60 804000 00 804700 00");
    const std::pair<MusicSequenceOperation, int> cases[] = {
        {MusicSequenceOperation::MusicSequenceFileLoad, 0}, {MusicSequenceOperation::NewMusicSequence, 2}};
    for (const auto& [operation, before] : cases) {
        for (const ScoreKind kind : {ScoreKind::lead, ScoreKind::chordPattern}) {
            setFault(operation, {-39, before, 1});
            EXPECT_EQ(readMIDIPhrase(folder / "a.mid", kind).error(), "the MIDI file cannot be read");
        }
    }
    clearFaults();
    EXPECT_EQ(readMIDIPhrase(folder / "a.mid", ScoreKind::lead).error(), "");
}

TEST_F(PhraseFile, WhatWasOddInALoadedFileIsKeptUntilTheNext)
{
    Score pattern = parsed(head + "chords:\n| Am | . | . | E7 |\n", ScoreKind::chordPattern);
    put(pattern, "001.mid");
    pattern.notes = {{0, 1, 60, 90}, {0, 1, 61, 90}, {1, 1, 61, 90}};
    put(pattern, "002.mid");
    const fs::path place = folder / phraseFolder(ScoreKind::chordPattern);
    const auto phrase = loadPhrase(place / "002.mid", ScoreKind::chordPattern);
    EXPECT_EQ(phrase->loadWarnings, (std::vector<std::string>{"Duplicated note event (61) at position 1.0.",
                                                              "No chord detected."}));
    phrase->loadPhrase(place / "001.mid", 0);
    EXPECT_EQ(phrase->loadWarnings, std::vector<std::string>{});
}

TEST_F(PhraseFile, ThePatternsAndDrumsOfALibraryAreTheCompanyOfAPhrase)
{
    put(parsed(head + "chords:\n| Am | FM | GM | . |\n", ScoreKind::chordPattern), "001.mid");
    put(parsed(head + "chords:\n| Em | FM | GM | . |\n", ScoreKind::chordPattern), "002.mid");
    put(parsed(head + "chords:\n| Em | DM | GM | . |\n", ScoreKind::chordPattern), "004.mid");
    const std::string silence = "................|";
    put(parsed(head + "drums:\nlow 36 |8...8...........|" + silence + silence + silence + "\n",
               ScoreKind::drums),
        "001.mid");
    const PhraseCompany company = companyIn(folder);
    EXPECT_EQ(company.harmonies.size(), 26U);
    EXPECT_EQ(company.kicks, std::vector<Onsets>{0x11});
    EXPECT_TRUE(companyIn(folder / "gone").harmonies.empty());
}

TEST_F(PhraseFile, APhraseThatVanishedOrIsBrokenIsNoCompany)
{
    put(parsed(head + "chords:\n| Am | FM | GM | . |\n", ScoreKind::chordPattern), "001.mid");
    put(parsed(head + "chords:\n| Em | FM | GM | . |\n", ScoreKind::chordPattern), "003.mid");
    const fs::path place = folder / phraseFolder(ScoreKind::chordPattern);
    std::ofstream(place / "002.mid") << "no music";
    EXPECT_EQ(companyIn(folder).harmonies.size(), 26U);
    EXPECT_EQ(readPhrase(place / "002.mid", ScoreKind::chordPattern), nullptr);
    EXPECT_EQ(readPhrase(place / "004.mid", ScoreKind::chordPattern), nullptr);
    EXPECT_NE(readPhrase(place / "003.mid", ScoreKind::chordPattern), nullptr);
}

TEST_F(PhraseFile, MoreNotesAtOnceThanAChordHasKeysForAreRefused)
{
    const auto cluster = [](int notes) {
        std::string on;
        std::string off;
        for (int i = 0; i < notes; ++i) {
            const std::string key = std::to_string(30 + i);
            on += "0090" + key + "50";
            off += (i == 0 ? "1880" : "0080") + key + "00";
        }
        return on + off + "00";
    };
    EXPECT_EQ(readElsewhere("ten.mid", cluster(10), ScoreKind::lead).notes.size(), 10U);
    EXPECT_EQ(readElsewhere("drums.mid", cluster(11), ScoreKind::drums).notes.size(), 11U);
    write("many.mid", cluster(11));
    EXPECT_EQ(readMIDIPhrase(folder / "many.mid", ScoreKind::lead).error(),
              "the MIDI file has more than 10 notes at once at beat 0.0");
}

} // namespace
} // namespace volvelle
