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

TEST(MIDINamesOfStatus, StandInTheirOrder)
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

TEST(MIDINamesOfMetaEvents, StandInTheirOrder)
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

TEST(MIDINamesOfControllers, AreIndexedByControllerNumber)
{
    for (int number = 0; number < 128; ++number) {
        EXPECT_EQ(MIDIControllerNames[static_cast<std::size_t>(number)], expectedName(number));
    }
}

TEST(MIDINamesOfKeys, FollowTheRuleButForRow37)
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

template <std::size_t size>
std::string joined(const std::array<std::string_view, size>& names, std::size_t first, std::size_t last)
{
    std::string result;
    for (std::size_t i = first; i <= last; ++i) {
        result += i == first ? "" : ", ";
        result += names[i];
    }
    return result;
}

TEST(MIDINamesOfPatches, HoldTheSoundSet)
{
    const std::string names =
        "Acoustic Grand Piano, Bright Acoustic Piano, Electric Grand Piano, Honky-tonk Piano, "
        "Electric Piano 1, Electric Piano 2, Harpsichord, Clavi, Celesta, Glockenspiel, "
        "Music Box, Vibraphone, Marimba, Xylophone, Tubular Bells, Dulcimer, Drawbar Organ, "
        "Percussive Organ, Rock Organ, Church Organ, Reed Organ, Accordion, Harmonica, "
        "Tango Accordion, Acoustic Guitar (nylon), Acoustic Guitar (steel), "
        "Electric Guitar (jazz), Electric Guitar (clean), Electric Guitar (muted), "
        "Overdriven Guitar, Distortion Guitar, Guitar harmonics, Acoustic Bass, "
        "Electric Bass (finger), Electric Bass (pick), Fretless Bass, Slap Bass 1, Slap Bass 2, "
        "Synth Bass 1, Synth Bass 2, Violin, Viola, Cello, Contrabass, Tremolo Strings, "
        "Pizzicato Strings, Orchestral Harp, Timpani, String Ensemble 1, String Ensemble 2, "
        "SynthStrings 1, SynthStrings 2, Choir Aahs, Voice Oohs, Synth Voice, Orchestra Hit, "
        "Trumpet, Trombone, Tuba, Muted Trumpet, French Horn, Brass Section, SynthBrass 1, "
        "SynthBrass 2, Soprano Sax, Alto Sax, Tenor Sax, Baritone Sax, Oboe, English Horn, "
        "Bassoon, Clarinet, Piccolo, Flute, Recorder, Pan Flute, Blown Bottle, Shakuhachi, "
        "Whistle, Ocarina, Lead 1 (square), Lead 2 (sawtooth), Lead 3 (calliope), "
        "Lead 4 (chiff), Lead 5 (charang), Lead 6 (voice), Lead 7 (fifths), "
        "Lead 8 (bass + lead), Pad 1 (new age), Pad 2 (warm), Pad 3 (polysynth), Pad 4 (choir), "
        "Pad 5 (bowed), Pad 6 (metallic), Pad 7 (halo), Pad 8 (sweep), FX 1 (rain), "
        "FX 2 (soundtrack), FX 3 (crystal), FX 4 (atmosphere), FX 5 (brightness), "
        "FX 6 (goblins), FX 7 (echoes), FX 8 (sci-fi), Sitar, Banjo, Shamisen, Koto, Kalimba, "
        "Bag pipe, Fiddle, Shanai, Tinkle Bell, Agogo, Steel Drums, Woodblock, Taiko Drum, "
        "Melodic Tom, Synth Drum, Reverse Cymbal, Guitar Fret Noise, Breath Noise, Seashore, "
        "Bird Tweet, Telephone Ring, Helicopter, Applause, Gunshot";
    EXPECT_EQ(joined(MIDIPatchNames, 0, 127), names);
}

TEST(MIDINamesOfDrums, HoldThePercussionMapAmongKeyNames)
{
    const std::string names =
        "Acoustic Bass Drum, Bass Drum 1, Side Stick, Acoustic Snare, Hand Clap, Electric Snare, "
        "Low Floor Tom, Closed Hi Hat, High Floor Tom, Pedal Hi-Hat, Low Tom, Open Hi-Hat, "
        "Low-Mid Tom, Hi Mid Tom, Crash Cymbal 1, High Tom, Ride Cymbal 1, Chinese Cymbal, "
        "Ride Bell, Tambourine, Splash Cymbal, Cowbell, Crash Cymbal 2, Vibraslap, "
        "Ride Cymbal 2, Hi Bongo, Low Bongo, Mute Hi Conga, Open Hi Conga, Low Conga, "
        "High Timbale, Low Timbale, High Agogo, Low Agogo, Cabasa, Maracas, Short Whistle, "
        "Long Whistle, Short Guiro, Long Guiro, Claves, Hi Wood Block, Low Wood Block, "
        "Mute Cuica, Open Cuica, Mute Triangle, Open Triangle";
    EXPECT_EQ(joined(MIDIDrumNames, 35, 81), names);
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
