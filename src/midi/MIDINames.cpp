#include "midi/MIDINames.h"

#include <algorithm>

namespace volvelle {

namespace {

// clang-format off
constexpr std::array<std::string_view, 128> keys = {
    "C-2", "C#-2", "D-2", "D#-2", "E-2", "F-2", "F#-2", "G-2", "G#-2", "A-2", "A#-2", "B-2",
    "C-1", "C#-1", "D-1", "D#-1", "E-1", "F-1", "F#-1", "G-1", "G#-1", "A-1", "A#-1", "B-1",
    "C0", "C#0", "D0", "D#0", "E0", "F0", "F#0", "G0", "G#0", "A0", "A#0", "B0",
    "C1", "C#1", "D1", "D#1", "E1", "F1", "F#1", "G1", "G#1", "A1", "A#1", "B1",
    "C2", "C#2", "D2", "D#2", "E2", "F2", "F#2", "G2", "G#2", "A2", "A#2", "B2",
    "C3", "C#3", "D3", "D#3", "E3", "F3", "F#3", "G3", "G#3", "A3", "A#3", "B3",
    "C4", "C#4", "D4", "D#4", "E4", "F4", "F#4", "G4", "G#4", "A4", "A#4", "B4",
    "C5", "C#5", "D5", "D#5", "E5", "F5", "F#5", "G5", "G#5", "A5", "A#5", "B5",
    "C6", "C#6", "D6", "D#6", "E6", "F6", "F#6", "G6", "G#6", "A6", "A#6", "B6",
    "C7", "C#7", "D7", "D#7", "E7", "F7", "F#7", "G7", "G#7", "A7", "A#7", "B7",
    "C8", "C#8", "D8", "D#8", "E8", "F8", "F#8", "G8"};
// clang-format on

// clang-format off
constexpr std::array<std::string_view, 47> drums = {
    "Acoustic Bass Drum", "Bass Drum 1", "Side Stick", "Acoustic Snare", "Hand Clap", "Electric Snare",
    "Low Floor Tom", "Closed Hi Hat", "High Floor Tom", "Pedal Hi-Hat", "Low Tom", "Open Hi-Hat",
    "Low-Mid Tom", "Hi Mid Tom", "Crash Cymbal 1", "High Tom", "Ride Cymbal 1", "Chinese Cymbal",
    "Ride Bell", "Tambourine", "Splash Cymbal", "Cowbell", "Crash Cymbal 2", "Vibraslap", "Ride Cymbal 2",
    "Hi Bongo", "Low Bongo", "Mute Hi Conga", "Open Hi Conga", "Low Conga", "High Timbale", "Low Timbale",
    "High Agogo", "Low Agogo", "Cabasa", "Maracas", "Short Whistle", "Long Whistle", "Short Guiro",
    "Long Guiro", "Claves", "Hi Wood Block", "Low Wood Block", "Mute Cuica", "Open Cuica", "Mute Triangle",
    "Open Triangle"};
// clang-format on

constexpr std::array<std::string_view, 128> keysWithShortRow()
{
    auto table = keys;
    table[37] = "C#";
    return table;
}

constexpr std::array<std::string_view, 128> drumsAmongKeys()
{
    auto table = keys;
    std::ranges::copy(drums, table.begin() + 35);
    return table;
}

} // namespace

constinit const std::array<std::string_view, 18> MIDIStatusNames = {
    "NOTE OFF",       "NOTE ON",        "POLYPHONIC PRESSURE",
    "CONTROL CHANGE", "PROGRAM CHANGE", "CHANNEL PRESSURE",
    "PITCH BEND",     "MIDI TIME CODE", "SONG POSITION POINTER",
    "SONG SELECT",    "TUNE REQUEST",   "SYSTEM EXCLUSIVE",
    "TIMING CLOCK",   "START SEQUENCE", "CONTINUE SEQUENCE",
    "STOP SEQUENCE",  "ACTIVE SENSING", "SYSTEM RESET"};

constinit const std::array<std::string_view, 18> MIDIMetaNames = {
    "SEQUENCE NUMBER", "TEXT",          "COPYRIGHT",         "TRACK NAME",   "INSTRUMENT NAME",
    "LYRICS",          "MARKER",        "CUE POINT",         "PROGRAM NAME", "DEVICE NAME",
    "CHANNEL PREFIX",  "MIDI PORT",     "END OF TRACK",      "TEMPO",        "SMTP OFFSET",
    "TIME SIGNATURE",  "KEY SIGNATURE", "SEQUENCER SPECIFIC"};

// clang-format off
constinit const std::array<std::string_view, 128> MIDIControllerNames = {
    "Bank Select", "Modulation", "Breath Controller", "Controller No. 3", "Foot Controller",
    "Portamento Time", "Data Entry (MSB)", "Volume", "Balance", "Controller No. 9", "Pan", "Expression",
    "Effect Controller 1", "Effect Controller 2", "Controller No. 14", "Controller No. 15",
    "General Purpose 1", "General Purpose 2", "General Purpose 4", "General Purpose 3", "Controller No. 20",
    "Controller No. 21", "Controller No. 22", "Controller No. 23", "Controller No. 24", "Controller No. 25",
    "Controller No. 26", "Controller No. 27", "Controller No. 28", "Controller No. 29", "Controller No. 30",
    "Controller No. 31",
    "Controller LSB 0", "Controller LSB 1", "Controller LSB 2", "Controller LSB 3", "Controller LSB 4",
    "Controller LSB 5", "Controller LSB 6", "Controller LSB 7", "Controller LSB 8", "Controller LSB 9",
    "Controller LSB 10", "Controller LSB 11", "Controller LSB 12", "Controller LSB 13", "Controller LSB 14",
    "Controller LSB 15",
    "Controller LSB 16", "Controller LSB 17", "Controller LSB 18", "Controller LSB 19", "Controller LSB 20",
    "Controller LSB 21", "Controller LSB 22", "Controller LSB 23", "Controller LSB 24", "Controller LSB 25",
    "Controller LSB 26", "Controller LSB 27", "Controller LSB 28", "Controller LSB 29", "Controller LSB 30",
    "Controller LSB 31",
    "Damper/Sustain Pedal", "Portamento On/Off", "Sustenuto On/Off", "Soft Pedal On/Off", "Legato Switch",
    "Hold 2", "Sound Controller 1", "Sound Controller 2", "Sound Controller 3", "Sound Controller 4",
    "Sound Controller 5", "Sound Controller 6", "Sound Controller 7", "Sound Controller 8",
    "Sound Controller 9", "Sound Controller 10",
    "General Purpose 5", "General Purpose 6", "General Purpose 7", "General Purpose 8", "Portamento Control",
    "Controller No. 85", "Controller No. 86", "Controller No. 87", "Controller No. 88", "Controller No. 89",
    "Controller No. 90", "Effect 1 Depth", "Effect 2 Depth", "Effect 3 Depth", "Effect 4 Depth",
    "Effect 5 Depth",
    "Data Increment", "Data Decrement", "NRPN LSB", "NRPN MSB", "RPN LSB", "RPN MSB", "Controller No. 102",
    "Controller No. 103", "Controller No. 104", "Controller No. 105", "Controller No. 106",
    "Controller No. 107", "Controller No. 108", "Controller No. 109", "Controller No. 110",
    "Controller No. 111",
    "Controller No. 112", "Controller No. 113", "Controller No. 114", "Controller No. 115",
    "Controller No. 116", "Controller No. 117", "Controller No. 118", "Controller No. 119", "All Sound Off",
    "Reset All Controllers", "Local On/Off", "All Notes Off", "Omni Mode Off", "Omni Mode On", "Mono Mode",
    "Poly Mode"};
// clang-format on

constinit const std::array<std::string_view, 128> MIDIKeyNames = keysWithShortRow();

// clang-format off
constinit const std::array<std::string_view, 128> MIDIPatchNames = {
    "Acoustic Grand Piano", "Bright Acoustic Piano", "Electric Grand Piano", "Honky-tonk Piano",
    "Electric Piano 1", "Electric Piano 2", "Harpsichord", "Clavi",
    "Celesta", "Glockenspiel", "Music Box", "Vibraphone", "Marimba", "Xylophone", "Tubular Bells",
    "Dulcimer",
    "Drawbar Organ", "Percussive Organ", "Rock Organ", "Church Organ", "Reed Organ", "Accordion",
    "Harmonica", "Tango Accordion",
    "Acoustic Guitar (nylon)", "Acoustic Guitar (steel)", "Electric Guitar (jazz)",
    "Electric Guitar (clean)", "Electric Guitar (muted)", "Overdriven Guitar", "Distortion Guitar",
    "Guitar harmonics",
    "Acoustic Bass", "Electric Bass (finger)", "Electric Bass (pick)", "Fretless Bass", "Slap Bass 1",
    "Slap Bass 2", "Synth Bass 1", "Synth Bass 2",
    "Violin", "Viola", "Cello", "Contrabass", "Tremolo Strings", "Pizzicato Strings", "Orchestral Harp",
    "Timpani",
    "String Ensemble 1", "String Ensemble 2", "SynthStrings 1", "SynthStrings 2", "Choir Aahs", "Voice Oohs",
    "Synth Voice", "Orchestra Hit",
    "Trumpet", "Trombone", "Tuba", "Muted Trumpet", "French Horn", "Brass Section", "SynthBrass 1",
    "SynthBrass 2",
    "Soprano Sax", "Alto Sax", "Tenor Sax", "Baritone Sax", "Oboe", "English Horn", "Bassoon", "Clarinet",
    "Piccolo", "Flute", "Recorder", "Pan Flute", "Blown Bottle", "Shakuhachi", "Whistle", "Ocarina",
    "Lead 1 (square)", "Lead 2 (sawtooth)", "Lead 3 (calliope)", "Lead 4 (chiff)", "Lead 5 (charang)",
    "Lead 6 (voice)", "Lead 7 (fifths)", "Lead 8 (bass + lead)",
    "Pad 1 (new age)", "Pad 2 (warm)", "Pad 3 (polysynth)", "Pad 4 (choir)", "Pad 5 (bowed)",
    "Pad 6 (metallic)", "Pad 7 (halo)", "Pad 8 (sweep)",
    "FX 1 (rain)", "FX 2 (soundtrack)", "FX 3 (crystal)", "FX 4 (atmosphere)", "FX 5 (brightness)",
    "FX 6 (goblins)", "FX 7 (echoes)", "FX 8 (sci-fi)",
    "Sitar", "Banjo", "Shamisen", "Koto", "Kalimba", "Bag pipe", "Fiddle", "Shanai",
    "Tinkle Bell", "Agogo", "Steel Drums", "Woodblock", "Taiko Drum", "Melodic Tom", "Synth Drum",
    "Reverse Cymbal",
    "Guitar Fret Noise", "Breath Noise", "Seashore", "Bird Tweet", "Telephone Ring", "Helicopter",
    "Applause", "Gunshot"};
// clang-format on

constinit const std::array<std::string_view, 128> MIDIDrumNames = drumsAmongKeys();

} // namespace volvelle
