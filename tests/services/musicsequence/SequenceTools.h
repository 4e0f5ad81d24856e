#pragma once

#include "services/musicsequence/MusicSequence.h"
#include "tests/support/Bytes.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// Short words for sequences in tests. Each fails the test where the service fails.
namespace volvelle::test {

MusicSequence newSequence();
MusicTrack newTrack(const MusicSequence& sequence);
MusicTrack tempoTrackOf(const MusicSequence& sequence);
MusicTrack trackOf(const MusicSequence& sequence, std::uint32_t index);
std::uint32_t trackCountOf(const MusicSequence& sequence);
MusicEventIterator iteratorOf(const MusicTrack& track);

void addNote(const MusicTrack& track, double time, int note, float duration = 1.0F, int channel = 0,
             int velocity = 100, int release = 0);
void addMessage(const MusicTrack& track, double time, int status, int data1, int data2 = 0);
void addTempo(const MusicSequence& sequence, double time, double bpm);
OSStatus tryMeta(const MusicTrack& track, double time, std::uint8_t type, const Bytes& bytes);
OSStatus tryRawData(const MusicTrack& track, double time, const Bytes& bytes);
OSStatus tryUserData(const MusicTrack& track, double time, const Bytes& bytes);
void addMeta(const MusicTrack& track, double time, std::uint8_t type, const Bytes& bytes);
void addRawData(const MusicTrack& track, double time, const Bytes& bytes);

double lengthOf(const MusicTrack& track);
void setLength(const MusicTrack& track, double length);

// A line for each event: "0.0 note 0 60 100 0 1.0" (channel, number, velocity, release, duration),
// "0.0 message B0 07 64", "0.0 tempo 120.0", "0.0 meta 03 41 42", "0.0 raw F0 7E F7", "0.0 user 01",
// "0.0 extended 1.0", "0.0 parameter 7", "0.0 preset 7".
Lines eventsOf(const MusicTrack& track);

// " 4D 54" for two bytes.
std::string hexOf(const Bytes& bytes);

// A header of the format with the count of tracks and the division, and the bytes as track chunks.
Bytes fileOf(int format, int division, std::initializer_list<Bytes> tracks);
Bytes chunkOf(const Bytes& body);
Bytes joined(std::initializer_list<Bytes> parts);

MusicSequence load(const Bytes& bytes, MusicSequenceLoadFlags flags = kMusicSequenceLoadSMF_PreserveTracks);
OSStatus tryLoad(const Bytes& bytes, MusicSequenceLoadFlags flags = kMusicSequenceLoadSMF_PreserveTracks);
Lines warningsOf(const MusicSequence& sequence);
Bytes save(const MusicSequence& sequence, std::int16_t resolution = 480);

} // namespace volvelle::test
