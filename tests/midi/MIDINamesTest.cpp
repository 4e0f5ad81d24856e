#include "midi/MIDINames.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace volvelle {
namespace {

std::string keyName(int key)
{
    const std::vector<std::string> names = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
    return names[static_cast<std::size_t>(key % 12)] + std::to_string(key / 12 - 2);
}

TEST(MIDIStatusNames, StandInTheirOrder)
{
    const std::array<std::string_view, 18> names = {
        "NOTE OFF",       "NOTE ON",        "POLYPHONIC PRESSURE",
        "CONTROL CHANGE", "PROGRAM CHANGE", "CHANNEL PRESSURE",
        "PITCH BEND",     "MIDI TIME CODE", "SONG POSITION POINTER",
        "SONG SELECT",    "TUNE REQUEST",   "SYSTEM EXCLUSIVE",
        "TIMING CLOCK",   "START SEQUENCE", "CONTINUE SEQUENCE",
        "STOP SEQUENCE",  "ACTIVE SENSING", "SYSTEM RESET"};
    EXPECT_EQ(MIDIStatusNames, names);
}

TEST(MIDIMetaNames, StandInTheirOrder)
{
    const std::array<std::string_view, 18> names = {
        "SEQUENCE NUMBER", "TEXT",          "COPYRIGHT",         "TRACK NAME",   "INSTRUMENT NAME",
        "LYRICS",          "MARKER",        "CUE POINT",         "PROGRAM NAME", "DEVICE NAME",
        "CHANNEL PREFIX",  "MIDI PORT",     "END OF TRACK",      "TEMPO",        "SMTP OFFSET",
        "TIME SIGNATURE",  "KEY SIGNATURE", "SEQUENCER SPECIFIC"};
    EXPECT_EQ(MIDIMetaNames, names);
}

std::string expectedName(int number)
{
    const std::vector<std::pair<int, std::string>> names = {{0, "Bank Select"},
                                                            {1, "Modulation"},
                                                            {2, "Breath Controller"},
                                                            {4, "Foot Controller"},
                                                            {5, "Portamento Time"},
                                                            {6, "Data Entry (MSB)"},
                                                            {7, "Volume"},
                                                            {8, "Balance"},
                                                            {10, "Pan"},
                                                            {11, "Expression"},
                                                            {12, "Effect Controller 1"},
                                                            {13, "Effect Controller 2"},
                                                            {16, "General Purpose 1"},
                                                            {17, "General Purpose 2"},
                                                            {18, "General Purpose 4"},
                                                            {19, "General Purpose 3"},
                                                            {64, "Damper/Sustain Pedal"},
                                                            {65, "Portamento On/Off"},
                                                            {66, "Sustenuto On/Off"},
                                                            {67, "Soft Pedal On/Off"},
                                                            {68, "Legato Switch"},
                                                            {69, "Hold 2"},
                                                            {84, "Portamento Control"},
                                                            {96, "Data Increment"},
                                                            {97, "Data Decrement"},
                                                            {98, "NRPN LSB"},
                                                            {99, "NRPN MSB"},
                                                            {100, "RPN LSB"},
                                                            {101, "RPN MSB"},
                                                            {120, "All Sound Off"},
                                                            {121, "Reset All Controllers"},
                                                            {122, "Local On/Off"},
                                                            {123, "All Notes Off"},
                                                            {124, "Omni Mode Off"},
                                                            {125, "Omni Mode On"},
                                                            {126, "Mono Mode"},
                                                            {127, "Poly Mode"}};
    for (const auto& [row, name] : names) {
        if (row == number) {
            return name;
        }
    }
    if (number >= 32 && number <= 63) {
        return "Controller LSB " + std::to_string(number - 32);
    }
    if (number >= 70 && number <= 79) {
        return "Sound Controller " + std::to_string(number - 69);
    }
    if (number >= 80 && number <= 83) {
        return "General Purpose " + std::to_string(number - 75);
    }
    if (number >= 91 && number <= 95) {
        return "Effect " + std::to_string(number - 90) + " Depth";
    }
    return "Controller No. " + std::to_string(number);
}

TEST(MIDIControllerNames, AreIndexedByControllerNumber)
{
    for (int number = 0; number < 128; ++number) {
        EXPECT_EQ(MIDIControllerNames[static_cast<std::size_t>(number)], expectedName(number));
    }
}

TEST(MIDIKeyNames, FollowTheRuleButForRow37)
{
    for (int key = 0; key < 128; ++key) {
        EXPECT_EQ(MIDIKeyNames[static_cast<std::size_t>(key)], key == 37 ? "C#" : keyName(key));
    }
    EXPECT_EQ(MIDIKeyNames[0], "C-2");
    EXPECT_EQ(MIDIKeyNames[12], "C-1");
    EXPECT_EQ(MIDIKeyNames[24], "C0");
    EXPECT_EQ(MIDIKeyNames[60], "C3");
    EXPECT_EQ(MIDIKeyNames[127], "G8");
}

TEST(MIDIPatchNames, HoldTheSoundSet)
{
    EXPECT_EQ(MIDIPatchNames[0], "Acoustic Grand Piano");
    EXPECT_EQ(MIDIPatchNames[7], "Clavi");
    EXPECT_EQ(MIDIPatchNames[31], "Guitar harmonics");
    EXPECT_EQ(MIDIPatchNames[32], "Acoustic Bass");
    EXPECT_EQ(MIDIPatchNames[50], "SynthStrings 1");
    EXPECT_EQ(MIDIPatchNames[63], "SynthBrass 2");
    EXPECT_EQ(MIDIPatchNames[64], "Soprano Sax");
    EXPECT_EQ(MIDIPatchNames[87], "Lead 8 (bass + lead)");
    EXPECT_EQ(MIDIPatchNames[96], "FX 1 (rain)");
    EXPECT_EQ(MIDIPatchNames[109], "Bag pipe");
    EXPECT_EQ(MIDIPatchNames[111], "Shanai");
    EXPECT_EQ(MIDIPatchNames[127], "Gunshot");
}

TEST(MIDIDrumNames, HoldThePercussionMapAmongKeyNames)
{
    EXPECT_EQ(MIDIDrumNames[35], "Acoustic Bass Drum");
    EXPECT_EQ(MIDIDrumNames[37], "Side Stick");
    EXPECT_EQ(MIDIDrumNames[42], "Closed Hi Hat");
    EXPECT_EQ(MIDIDrumNames[44], "Pedal Hi-Hat");
    EXPECT_EQ(MIDIDrumNames[46], "Open Hi-Hat");
    EXPECT_EQ(MIDIDrumNames[60], "Hi Bongo");
    EXPECT_EQ(MIDIDrumNames[62], "Mute Hi Conga");
    EXPECT_EQ(MIDIDrumNames[76], "Hi Wood Block");
    EXPECT_EQ(MIDIDrumNames[81], "Open Triangle");
    for (int key = 0; key < 128; ++key) {
        if (key < 35 || key > 81) {
            EXPECT_EQ(MIDIDrumNames[static_cast<std::size_t>(key)], keyName(key));
        }
    }
}

TEST(NoteNames, FollowTheRuleWithoutException)
{
    ASSERT_EQ(noteNames().values.size(), 128U);
    for (int key = 0; key < 128; ++key) {
        EXPECT_EQ(noteNames().values[static_cast<std::size_t>(key)], keyName(key));
        EXPECT_EQ(noteNames().getKeyNumber(keyName(key)), key);
    }
    EXPECT_EQ(noteNames().values[37], "C#1");
    EXPECT_EQ(noteNames().getKeyNumber("G8"), 127);
}

TEST(NoteNames, MatchExactlyOrNotAtAll)
{
    for (const char* key : {"C#", "c3", "Db3", " C3", ""}) {
        EXPECT_EQ(noteNames().getKeyNumber(key), -1) << key;
    }
}

TEST(NoteNames, KnowTheBlackKeysOfTheRange)
{
    EXPECT_FALSE(noteNames().isBlackKey(128));
    EXPECT_FALSE(noteNames().isBlackKey(-1));
    EXPECT_TRUE(noteNames().isBlackKey(61));
    EXPECT_FALSE(noteNames().isBlackKey(60));
    EXPECT_FALSE(noteNames().isBlackKey(127));
}

TEST(NoteNames, AreOneInstanceForAllThreads)
{
    const NoteNames* other = nullptr;
    std::thread([&other] { other = &noteNames(); }).join();
    EXPECT_EQ(other, &noteNames());
}

} // namespace
} // namespace volvelle
