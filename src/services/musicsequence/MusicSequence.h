#pragma once

#include "base/Status.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

// The music sequence service: sequences of tracks of timed events, and their Standard MIDI Files.
//
// Times are in beats (quarter notes), finite and not negative. Every operation returns a status, noErr for
// success, and changes nothing where it fails unless it says otherwise. Out parameters keep their values on
// failure. A sequence and what belongs to it is used by one thread at a time. [any]
namespace volvelle {

// A music sequence. The handle counts its holders: the sequence dies with the last one. Null is no sequence,
// and every operation on it answers kAudioToolboxErr_NoSequence.
class MusicSequenceObject;
using MusicSequence = std::shared_ptr<MusicSequenceObject>;

// A track of a sequence. Handles of one track compare equal. A track of a dead sequence answers
// kAudioToolboxErr_NoSequence; so does a null handle.
class MusicTrackObject;
using MusicTrack = std::shared_ptr<MusicTrackObject>;

class MusicEventIteratorObject;
using MusicEventIterator = std::shared_ptr<MusicEventIteratorObject>;

class MusicPlayerObject;
using MusicPlayer = std::shared_ptr<MusicPlayerObject>;

using MusicSequenceFileTypeID = std::uint32_t;
inline constexpr MusicSequenceFileTypeID kMusicSequenceFile_MIDIType = 0x6D696469; // 'midi'

using MusicSequenceFileFlags = std::uint32_t;
inline constexpr MusicSequenceFileFlags kMusicSequenceFileFlags_EraseFile = 1;

using MusicSequenceLoadFlags = std::uint32_t;
inline constexpr MusicSequenceLoadFlags kMusicSequenceLoadSMF_PreserveTracks = 0;
inline constexpr MusicSequenceLoadFlags kMusicSequenceLoadSMF_ChannelsToTracks = 1;

using MusicTrackProperty = std::uint32_t;
inline constexpr MusicTrackProperty kSequenceTrackProperty_LoopInfo = 0;            // MusicTrackLoopInfo
inline constexpr MusicTrackProperty kSequenceTrackProperty_OffsetTime = 1;          // double, beats
inline constexpr MusicTrackProperty kSequenceTrackProperty_MuteStatus = 2;          // bool, 1 byte
inline constexpr MusicTrackProperty kSequenceTrackProperty_SoloStatus = 3;          // bool, 1 byte
inline constexpr MusicTrackProperty kSequenceTrackProperty_AutomatedParameters = 4; // bool, 1 byte
inline constexpr MusicTrackProperty kSequenceTrackProperty_TrackLength = 5;         // double, beats
inline constexpr MusicTrackProperty kSequenceTrackProperty_TimeResolution = 6; // int16, ticks to the beat

struct MusicTrackLoopInfo {
    double loopDuration = 0.0;      // beats
    std::int32_t numberOfLoops = 0; // 0 is endless
};

// The kinds of events, and the record that each carries.
using MusicEventType = std::uint32_t;
inline constexpr MusicEventType kMusicEventType_NULL = 0;
inline constexpr MusicEventType kMusicEventType_ExtendedNote = 1;  // ExtendedNoteOnEvent
inline constexpr MusicEventType kMusicEventType_ExtendedTempo = 3; // ExtendedTempoEvent
inline constexpr MusicEventType kMusicEventType_User = 4;          // MusicEventUserData
inline constexpr MusicEventType kMusicEventType_Meta = 5;          // MIDIMetaEvent
inline constexpr MusicEventType kMusicEventType_MIDINoteMessage = 6;
inline constexpr MusicEventType kMusicEventType_MIDIChannelMessage = 7;
inline constexpr MusicEventType kMusicEventType_MIDIRawData = 8;
inline constexpr MusicEventType kMusicEventType_Parameter = 9; // ParameterEvent
inline constexpr MusicEventType kMusicEventType_AUPreset = 10; // AUPresetEvent

struct MIDINoteMessage {
    std::uint8_t channel = 0; // 0 to 15
    std::uint8_t note = 0;    // 0 to 127, as the two below
    std::uint8_t velocity = 0;
    std::uint8_t releaseVelocity = 0;
    float duration = 0.0F; // beats, finite and not negative
};

// A channel message (0x80 to 0xEF) or a system message (0xF1 to 0xFF); data bytes 0 to 127.
struct MIDIChannelMessage {
    std::uint8_t status = 0;
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;
    std::uint8_t reserved = 0;
};

struct ExtendedTempoEvent {
    double bpm = 0.0; // finite and above 0
};

struct ExtendedNoteOnEvent {
    std::uint32_t instrumentID = 0;
    std::uint32_t groupID = 0;
    float duration = 0.0F; // beats
    float extendedParams[2] = {};
};

struct ParameterEvent {
    std::uint32_t parameterID = 0;
    std::uint32_t scope = 0;
    std::uint32_t element = 0;
    float value = 0.0F;
};

struct AUPresetEvent {
    std::uint32_t presetID = 0;
};

// The heads of the records of variable length. The bytes stand right after the length, data[0] first; a
// payload that an iterator gives is at least sizeof(record) bytes long.
struct MIDIMetaEvent {
    std::uint8_t metaEventType = 0;
    std::uint8_t unused1 = 0;
    std::uint8_t unused2 = 0;
    std::uint8_t unused3 = 0;
    std::uint32_t dataLength = 0;
    std::uint8_t data[1] = {};
};

struct MIDIRawData {
    std::uint32_t length = 0;
    std::uint8_t data[1] = {};
};

struct MusicEventUserData {
    std::uint32_t length = 0;
    std::uint8_t data[1] = {};
};

// MARK: Sequences and their tracks

// A new sequence with an empty tempo track and no other track.
[[nodiscard]] OSStatus NewMusicSequence(MusicSequence& sequence);

// Gives up the caller's share; what another holder still has does not change. `sequence` is null afterwards.
[[nodiscard]] OSStatus DisposeMusicSequence(MusicSequence& sequence);

// Appends a track; its index is the previous count.
[[nodiscard]] OSStatus MusicSequenceNewTrack(const MusicSequence& sequence, MusicTrack& track);

// Removes the track; the indices after it move down by one. The handle then belongs to no sequence and
// answers kAudioToolboxErr_NoSequence. The tempo track, as any track that is not in the list, answers
// kAudioToolboxErr_TrackNotFound.
[[nodiscard]] OSStatus MusicSequenceDisposeTrack(const MusicSequence& sequence, const MusicTrack& track);

// The count without the tempo track.
[[nodiscard]] OSStatus MusicSequenceGetTrackCount(const MusicSequence& sequence, std::uint32_t& count);

// kAudioToolboxErr_TrackIndexError for an index out of range.
[[nodiscard]] OSStatus MusicSequenceGetIndTrack(const MusicSequence& sequence, std::uint32_t index,
                                                MusicTrack& track);

// kAudioToolboxErr_TrackNotFound for a track that is not in the list.
[[nodiscard]] OSStatus MusicSequenceGetTrackIndex(const MusicSequence& sequence, const MusicTrack& track,
                                                  std::uint32_t& index);

// The tempo track always exists and is no member of the list.
[[nodiscard]] OSStatus MusicSequenceGetTempoTrack(const MusicSequence& sequence, MusicTrack& track);

// MARK: Files

// The sequence as the bytes of a Standard MIDI File of format 1: the tempo track, then the tracks in order.
// Notes, channel messages, tempos, metas and raw data are written; what else a track holds counts for its
// length alone. A note-off of release velocity 0 is written as a note-on of velocity 0, and read back as
// such. `type` is kMusicSequenceFile_MIDIType. `resolution` is in ticks to the beat, 0 means 480.
[[nodiscard]] OSStatus MusicSequenceFileCreateData(const MusicSequence& sequence,
                                                   MusicSequenceFileTypeID type, MusicSequenceFileFlags flags,
                                                   std::int16_t resolution, std::vector<std::uint8_t>& data);

// The same into a file. Without kMusicSequenceFileFlags_EraseFile an existing file answers fileExistsErr. The
// file is replaced only when all bytes are on disk (a temporary file in the same folder, then a rename); a
// device or a pipe is written directly.
[[nodiscard]] OSStatus MusicSequenceFileCreate(const MusicSequence& sequence,
                                               const std::filesystem::path& url, MusicSequenceFileTypeID type,
                                               MusicSequenceFileFlags flags, std::int16_t resolution);

// Reads a Standard MIDI File into the sequence, whose tracks are replaced; the tempo track stays the same,
// with other content. On failure nothing changes. Every file that holds notes opens; what was mended is told
// by MusicSequenceGetLoadWarnings.
[[nodiscard]] OSStatus MusicSequenceFileLoad(const MusicSequence& sequence, const std::filesystem::path& url,
                                             MusicSequenceFileTypeID type, MusicSequenceLoadFlags flags);
[[nodiscard]] OSStatus MusicSequenceFileLoadData(const MusicSequence& sequence,
                                                 const std::vector<std::uint8_t>& data,
                                                 MusicSequenceFileTypeID type, MusicSequenceLoadFlags flags);

// A new sequence with what a Standard MIDI File holds, as the two above read it; null where that fails.
[[nodiscard]] OSStatus NewMusicSequenceFromFile(const std::filesystem::path& url,
                                                MusicSequenceLoadFlags flags, MusicSequence& sequence);
[[nodiscard]] OSStatus NewMusicSequenceFromData(const std::vector<std::uint8_t>& data,
                                                MusicSequenceLoadFlags flags, MusicSequence& sequence);

// What the last load mended, as plain lines; empty for a clean file.
[[nodiscard]] OSStatus MusicSequenceGetLoadWarnings(const MusicSequence& sequence,
                                                    std::vector<std::string>& warnings);

// The division of the file last loaded in ticks to the beat, 480 before any load.
[[nodiscard]] OSStatus MusicSequenceGetLoadDivision(const MusicSequence& sequence, std::int16_t& division);

// MARK: Track properties

// `size` is the room at `value` on entry and what was written on return.
[[nodiscard]] OSStatus MusicTrackGetProperty(const MusicTrack& track, MusicTrackProperty property,
                                             void* value, std::uint32_t& size);
// Sizes are 8 for floats, 16 for loop info, 1 for truth values, 2 for the resolution. A length or an offset
// that is not finite, and a negative length, answer kAudioToolboxErr_InvalidEventType.
[[nodiscard]] OSStatus MusicTrackSetProperty(const MusicTrack& track, MusicTrackProperty property,
                                             const void* value, std::uint32_t size);

// MARK: Spans
//
// A span is half open and takes events by their start. One that reaches the track's length or beyond takes in
// everything to the end; one whose start equals its end holds nothing. A start or an end that is negative or
// not finite, and a start past the end, answer kAudioToolboxErr_InvalidEventType. Tempos are copied to a
// tempo track only, else kAudioToolboxErr_IllegalTrackDestination.

// Deletes the events of the span; later events keep their times.
[[nodiscard]] OSStatus MusicTrackClear(const MusicTrack& track, double start, double end);

// Deletes the events of the span and moves later events earlier by the span; the track gets shorter by it.
[[nodiscard]] OSStatus MusicTrackCut(const MusicTrack& track, double start, double end);

// Inserts a copy of the span; destination events from `at` on move later by the span, the destination gets
// longer by it. Source and destination may be one track.
[[nodiscard]] OSStatus MusicTrackCopyInsert(const MusicTrack& source, double start, double end,
                                            const MusicTrack& destination, double at);

// Adds a copy of the span at `at`; destination events keep their times.
[[nodiscard]] OSStatus MusicTrackMerge(const MusicTrack& source, double start, double end,
                                       const MusicTrack& destination, double at);

// Adds `by` to the times of the events of the span; at equal times they then stand after the others. A move
// to below 0 answers kAudioToolboxErr_StartOfTrack.
[[nodiscard]] OSStatus MusicTrackMoveEvents(const MusicTrack& track, double start, double end, double by);

// MARK: New events
//
// The record is copied on entry. Events of equal times keep the order of entry. A time that is negative or
// not finite, or a data byte above 127, answers kAudioToolboxErr_InvalidEventType. Tempo goes to the tempo
// track only, everything else may go to any track; a wrong track answers
// kAudioToolboxErr_IllegalTrackDestination.

[[nodiscard]] OSStatus MusicTrackNewMIDINoteEvent(const MusicTrack& track, double time,
                                                  const MIDINoteMessage& message);
[[nodiscard]] OSStatus MusicTrackNewMIDIChannelEvent(const MusicTrack& track, double time,
                                                     const MIDIChannelMessage& message);
[[nodiscard]] OSStatus MusicTrackNewMIDIRawDataEvent(const MusicTrack& track, double time,
                                                     const MIDIRawData* record);
[[nodiscard]] OSStatus MusicTrackNewMetaEvent(const MusicTrack& track, double time,
                                              const MIDIMetaEvent* record);
[[nodiscard]] OSStatus MusicTrackNewExtendedTempoEvent(const MusicTrack& track, double time, double bpm);
[[nodiscard]] OSStatus MusicTrackNewUserEvent(const MusicTrack& track, double time,
                                              const MusicEventUserData* record);
[[nodiscard]] OSStatus MusicTrackNewExtendedNoteEvent(const MusicTrack& track, double time,
                                                      const ExtendedNoteOnEvent& record);
[[nodiscard]] OSStatus MusicTrackNewParameterEvent(const MusicTrack& track, double time,
                                                   const ParameterEvent& record);
[[nodiscard]] OSStatus MusicTrackNewAUPresetEvent(const MusicTrack& track, double time,
                                                  const AUPresetEvent& record);

// MARK: Walking a track

// An iterator on the first event; on an empty track it is past the end. Through all edits it keeps to its
// event, wherever that moves; where the event is deleted it goes to the one that followed, and past the end
// where none did. Once past the end it stays there, whatever is added. A load puts the iterators of the
// tempo track past the end. The iterators of a track that left its sequence answer
// kAudioToolboxErr_NoSequence.
[[nodiscard]] OSStatus NewMusicEventIterator(const MusicTrack& track, MusicEventIterator& iterator);
[[nodiscard]] OSStatus DisposeMusicEventIterator(MusicEventIterator& iterator);

// False on an empty track and past the last event.
[[nodiscard]] OSStatus MusicEventIteratorHasCurrentEvent(const MusicEventIterator& iterator, bool& flag);

// True while an event follows the current one.
[[nodiscard]] OSStatus MusicEventIteratorHasNextEvent(const MusicEventIterator& iterator, bool& flag);

// Steps on. Past the last event it answers kAudioToolboxErr_EndOfTrack and leaves the iterator after the
// end, without a current event.
[[nodiscard]] OSStatus MusicEventIteratorNextEvent(const MusicEventIterator& iterator);

// The current event. `payload` points to the stored record and stays valid until the track changes; `size` is
// the record's whole size in bytes. Without a current event kAudioToolboxErr_EndOfTrack.
[[nodiscard]] OSStatus MusicEventIteratorGetEventInfo(const MusicEventIterator& iterator, double& time,
                                                      MusicEventType& type, const void*& payload,
                                                      std::uint32_t& size);

// Removes the current event and stands on the one that followed it.
[[nodiscard]] OSStatus MusicEventIteratorDeleteEvent(const MusicEventIterator& iterator);

// MARK: Playing straight away

[[nodiscard]] OSStatus NewMusicPlayer(MusicPlayer& player);
[[nodiscard]] OSStatus MusicPlayerSetSequence(const MusicPlayer& player, const MusicSequence& sequence);
// Both answer kAudioToolboxErr_NoSequence for a player without a sequence.
[[nodiscard]] OSStatus MusicPlayerPreroll(const MusicPlayer& player);
[[nodiscard]] OSStatus MusicPlayerStart(const MusicPlayer& player);

// Prints a description of the sequence to the console, at once.
void CAShow(const MusicSequence& sequence);

} // namespace volvelle
