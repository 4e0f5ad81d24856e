#pragma once

namespace volvelle {

// The numbers of SoundFont generators.
namespace Generator {
inline constexpr int startOffset = 0;
inline constexpr int endOffset = 1;
inline constexpr int loopStartOffset = 2;
inline constexpr int loopEndOffset = 3;
inline constexpr int startCoarseOffset = 4;
inline constexpr int lfoToPitch = 5;
inline constexpr int vibratoToPitch = 6;
inline constexpr int modulationEnvelopeToPitch = 7;
inline constexpr int cutoff = 8;
inline constexpr int resonance = 9;
inline constexpr int lfoToCutoff = 10;
inline constexpr int modulationEnvelopeToCutoff = 11;
inline constexpr int endCoarseOffset = 12;
inline constexpr int lfoToVolume = 13;
inline constexpr int chorus = 15;
inline constexpr int reverb = 16;
inline constexpr int pan = 17;
inline constexpr int lfoDelay = 21;
inline constexpr int lfoFrequency = 22;
inline constexpr int vibratoDelay = 23;
inline constexpr int vibratoFrequency = 24;
inline constexpr int modulationDelay = 25;
inline constexpr int modulationAttack = 26;
inline constexpr int modulationHold = 27;
inline constexpr int modulationDecay = 28;
inline constexpr int modulationSustain = 29;
inline constexpr int modulationRelease = 30;
inline constexpr int keyToModulationHold = 31;
inline constexpr int keyToModulationDecay = 32;
inline constexpr int volumeDelay = 33;
inline constexpr int volumeAttack = 34;
inline constexpr int volumeHold = 35;
inline constexpr int volumeDecay = 36;
inline constexpr int volumeSustain = 37;
inline constexpr int volumeRelease = 38;
inline constexpr int keyToVolumeHold = 39;
inline constexpr int keyToVolumeDecay = 40;
inline constexpr int instrument = 41;
inline constexpr int keyRange = 43;
inline constexpr int velocityRange = 44;
inline constexpr int loopStartCoarseOffset = 45;
inline constexpr int keyNumber = 46;
inline constexpr int velocity = 47;
inline constexpr int attenuation = 48;
inline constexpr int loopEndCoarseOffset = 50;
inline constexpr int coarseTune = 51;
inline constexpr int fineTune = 52;
inline constexpr int sample = 53;
inline constexpr int sampleModes = 54;
inline constexpr int scaleTuning = 56;
inline constexpr int exclusiveClass = 57;
inline constexpr int rootKey = 58;
inline constexpr int count = 61;
} // namespace Generator

// The numbers of what moves a SoundFont modulator, and the bits that shape it.
namespace ModulatorSource {
inline constexpr int none = 0;
inline constexpr int velocity = 2;
inline constexpr int keyNumber = 3;
inline constexpr int keyPressure = 10;
inline constexpr int channelPressure = 13;
inline constexpr int pitchWheel = 14;
inline constexpr int bendRange = 16;
inline constexpr int inverted = 1;
inline constexpr int bipolar = 2;
inline constexpr int curveShift = 2;
inline constexpr int controller = 16;
} // namespace ModulatorSource

// How much of an attenuation written in a SoundFont is heard, by the custom of the synthesizers that play
// them.
inline constexpr double heardAttenuation = 0.4;
// Times, in cents of a second: the shortest and the longest of an envelope.
inline constexpr double shortestTime = -12000.0;
inline constexpr double longestTime = 8000.0;

} // namespace volvelle
