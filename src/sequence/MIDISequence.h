#pragma once

#include "MIDISequences/AUMIDIEvents.h"
#include "midi/EventNodes.h"
#include "midi/SequenceNode.h"
#include "sequence/NodePlace.h"
#include "sequence/SequenceFoundDelegate.h"
#include "services/musicsequence/MusicSequence.h"
#include "wire/ShortMessage.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace volvelle {

class SequenceReadingReport;

// One music sequence of the service and one tree of nodes, and the ways between the two.
//
// Positions, lengths and durations are beats. A failed call of the service is logged, and the operation
// yields a default or goes on with what it has; nothing is undone. An absent value where one is promised is a
// fatal stop, and so is a null among the tree's nodes. Queued calls of the listener keep the sequence alive:
// one that writes while it has a listener must be held by std::shared_ptr, else the writing is a fatal stop.
// All calls on one object follow one another on one thread.
class MIDISequence : public std::enable_shared_from_this<MIDISequence> {
public:
    // Which track plays which channel.
    class ChannelAssignment {
    public:
        std::int64_t index = 0;   // of the track
        std::uint8_t channel = 0; // 0 to 15
    };

    static constexpr std::int16_t midiResolution = 480; // ticks to the beat

    std::uint16_t maxTracks = 16; // tracks that the reader takes over
    MusicSequenceLoadFlags loadFlag = kMusicSequenceLoadSMF_ChannelsToTracks;
    OSStatus loadStatus = noErr; // of the last loadFromFile()
    std::weak_ptr<SequenceFoundDelegate> delegate;
    MusicSequence musicSequence; // null for none
    std::shared_ptr<SequenceNode> sequenceNode;
    double sequenceLength = 0.0; // the greatest position seen
    double currentTempo = 120.0; // beats per minute, the last set

    // One track besides the tempo track, and a tree of one track.
    MIDISequence();
    // Clears the music sequence where this object is its last holder.
    virtual ~MIDISequence();
    MIDISequence(const MIDISequence&) = delete;
    MIDISequence& operator=(const MIDISequence&) = delete;

    // MARK: Life cycle and access

    // A new music sequence and a new tree; the old sequence's share is given up. On failure the old tree
    // stays.
    virtual void create(std::uint16_t numberOfTracks = 1);
    virtual MusicTrack createTrack(); // null on failure
    virtual void deleteTrack(const MusicTrack& track);
    // All tracks but the tempo track, each with its length; sequenceLength becomes 0.
    virtual void clear();
    virtual void clear(const MusicTrack& track);
    virtual std::uint32_t getTrackIndex(const MusicTrack& track); // 0 on failure
    // The object takes its share of `sequence`; the sequence before is not disposed.
    virtual void setMusicSequence(const MusicSequence& sequence);
    virtual MusicSequence getMusicSequence();
    virtual std::shared_ptr<SequenceNode> getSequenceNode();
    virtual double getLength();
    virtual int getNumberOfTracks(); // -1 without a sequence
    virtual MusicTrack getTrack(int trackIndex);
    // `channel` is a position in the list of assignments; 0 past its end.
    virtual std::uint8_t getChannelAssignment(std::uint8_t channel);
    virtual std::uint8_t getPatchForChannel(std::uint8_t channel); // 0 for 16 and above
    virtual bool isEmpty(const MusicTrack& track);
    virtual void diagnostics();
    // Takes a line of diagnosis and drops it: the one place to switch such reports on.
    virtual void diagnose(std::string_view text);
    virtual void checkStatus(OSStatus status);
    virtual void saveToFile(const std::filesystem::path& url);
    // Replaces the music sequence; the tree stays as it was. A failure leaves sixteen empty tracks and a new
    // tree of sixteen.
    virtual void loadFromFile(const std::filesystem::path& url);

    // MARK: Track properties

    virtual double getTrackLength(const MusicTrack& track);
    virtual MusicTrackLoopInfo getTrackLoopInfo(const MusicTrack& track);
    virtual double getTrackOffsetTime(const MusicTrack& track); // -1 on failure
    virtual bool getTrackMuteStaus(const MusicTrack& track);
    virtual bool getTrackSoloStatus(const MusicTrack& track);
    virtual bool getTrackAutomatedParameters(const MusicTrack& track);
    virtual std::int16_t getTrackTimeResolution(const MusicTrack& track);
    virtual void setTrackLength(const MusicTrack& track, double value = 4.0); // below 0 counts as 0
    virtual void setOfssetTime(const MusicTrack& track, double offset);
    virtual void setMuteStatus(const MusicTrack& track, bool value);
    // Writes the mute status: a solo request mutes the track.
    virtual void setSoloStatus(const MusicTrack& track, bool value);
    // A loop from `from` to `to`; an inverted one lasts 4 beats. `times` 0 is endless.
    virtual void setLoopInfo(const MusicTrack& track, double from, double to, std::int32_t times = 0);
    virtual void setAutomatedParameters(const MusicTrack& track); // does nothing
    virtual void setTimeResolution(const MusicTrack& track);      // does nothing

    // MARK: Writing events
    //
    // createXEvent makes a node, adds it to the tree's track of its channel and calls createXMessage, which
    // writes it into the music track whose index is the node's channel and queues the listener's call on the
    // main thread. System and meta events have channel 0. A node stays in the tree though its writing fails.

    virtual void createNoteEvent(double position, std::uint8_t channel, std::uint8_t note,
                                 std::uint8_t velocity, std::uint8_t releaseVelocity, float duration);
    virtual void createNoteMessage(const std::shared_ptr<MidiNoteEvent>& event);
    virtual void createPolyphonicPressureEvent(double position, std::uint8_t channel, std::uint8_t number,
                                               std::uint8_t value);
    virtual void createPolyphonicPressureMessage(const std::shared_ptr<MidiPolyPressureEvent>& event);
    virtual void createControllerEvent(double position, std::uint8_t channel, std::uint8_t number,
                                       std::uint8_t value);
    virtual void createControllerMessage(const std::shared_ptr<MidiControllerEvent>& event);
    virtual void createProgramChangeEvent(double position, std::uint8_t channel, std::uint8_t value);
    virtual void createProgramChangeMessage(const std::shared_ptr<MidiProgramChangeEvent>& event);
    virtual void createAfterTouchEvent(double position, std::uint8_t channel, std::uint8_t value);
    virtual void createAfterTouchMessage(const std::shared_ptr<MidiChannelPressureEvent>& event);
    virtual void createPitchWheelEvent(double position, std::uint8_t channel, std::uint8_t msb,
                                       std::uint8_t lsb);
    virtual void createPitchWheelMessage(const std::shared_ptr<MidiPitchBendEvent>& event);
    // `length` is taken and not used: the bytes count.
    virtual void createSysExEvent(double position, std::uint16_t length,
                                  const std::vector<std::uint8_t>& data);
    virtual void createSysExMessage(const std::shared_ptr<SystemExclusiveEvent>& event);
    virtual void createSystemTimeCodeEvent(double position, std::uint8_t value);
    virtual void createSystemTimeCodeMessage(const std::shared_ptr<SystemTimeCodeEvent>& event);
    virtual void createSystemSongPositionPointerEvent(double position, std::uint8_t msb, std::uint8_t lsb);
    virtual void
    createSystemSongPositionPointerMessage(const std::shared_ptr<SystemSongPositionPointerEvent>& event);
    virtual void createSystemSongSelectEvent(double position, std::uint8_t value);
    virtual void createSystemSongSelectMessage(const std::shared_ptr<SystemSongSelectEvent>& event);
    virtual void createSystemTuneRequestEvent(double position);
    virtual void createSystemTuneRequestMessage(const std::shared_ptr<SystemTuneRequestEvent>& event);
    virtual void createSystemTimingClockEvent(double position);
    virtual void createSystemTimingClockMessage(const std::shared_ptr<SystemClockEvent>& event);
    virtual void createSystemStartEvent(double position);
    virtual void createSystemStartMessage(const std::shared_ptr<SystemStartEvent>& event);
    virtual void createSystemContinueEvent(double position);
    virtual void createSystemContinueMessage(const std::shared_ptr<SystemContinueEvent>& event);
    virtual void createSystemStopEvent(double position);
    virtual void createSystemStopMessage(const std::shared_ptr<SystemStopEvent>& event);
    virtual void createSystemActiveSensingEvent(double position);
    virtual void createSystemActiveSensingMessage(const std::shared_ptr<SystemActiveSensingEvent>& event);
    virtual void createSystemResetEvent(double position);
    virtual void createSystemResetMessage(const std::shared_ptr<SystemResetEvent>& event);

    virtual void createMetaSequenceNumberEvent(double position, std::uint16_t value);
    virtual void createMetaSequenceNumberMessage(const std::shared_ptr<MetaSequenceNumberEvent>& event);
    virtual void createMetaTextEvent(double position, std::string_view text);
    virtual void createMetaTextMessage(const std::shared_ptr<MetaTextEvent>& event);
    virtual void createMetaCopyrightEvent(double position, std::string_view text);
    virtual void createMetaCopyrightMessage(const std::shared_ptr<MetaCopyrightEvent>& event);
    virtual void createMetaTrackNameEvent(double position, std::string_view text);
    virtual void createMetaTrackNameMessage(const std::shared_ptr<MetaTrackNameEvent>& event);
    virtual void createMetaInstrumentNameEvent(double position, std::string_view text);
    virtual void createMetaInstrumentNameMessage(const std::shared_ptr<MetaInstrumentNameEvent>& event);
    virtual void createMetaLyricsEvent(double position, std::string_view text);
    virtual void createMetaLyricsMessage(const std::shared_ptr<MetaLyricsEvent>& event);
    virtual void createMetaMarkerEvent(double position, std::string_view text);
    virtual void createMetaMarkerMessage(const std::shared_ptr<MetaMarkerEvent>& event);
    virtual void createMetaCuePointEvent(double position, std::string_view text);
    virtual void createMetaCuePointMessage(const std::shared_ptr<MetaCuePointEvent>& event);
    virtual void createMetaProgramNameEvent(double position, std::string_view text);
    virtual void createMetaProgramNameMessage(const std::shared_ptr<MetaProgramNameEvent>& event);
    virtual void createMetaDeviceNameEvent(double position, std::string_view text);
    virtual void createMetaDeviceNameMessage(const std::shared_ptr<MetaDeviceNameEvent>& event);
    virtual void createMetaChannelPrefixEvent(double position, std::uint8_t prefix);
    virtual void createMetaChannelPrefixMessage(const std::shared_ptr<MetaChannelPrefixEvent>& event);
    virtual void createMetaMidiPortEvent(double position, std::uint8_t port);
    virtual void createMetaMidiPortMessage(const std::shared_ptr<MetaMidiPortEvent>& event);
    virtual void createMetaEndOfTrackEvent(double position);
    virtual void createMetaEndOfTrackMessage(const std::shared_ptr<MetaEndOfTrackEvent>& event);
    virtual void createMetaSetTempoEvent(double position, std::uint8_t value1, std::uint8_t value2,
                                         std::uint8_t value3);
    virtual void createMetaSetTempoMessage(const std::shared_ptr<MetaSetTempoEvent>& event);
    virtual void createMetaSMTPOffsetEvent(double position, std::uint8_t hours, std::uint8_t minutes,
                                           std::uint8_t seconds, std::uint8_t frames, std::uint8_t fract);
    virtual void createMetaSMTPOffsetMessage(const std::shared_ptr<MetaSMTPOffsetEvent>& event);
    virtual void createMetaTimeSignatureEvent(double position, std::uint8_t numerator,
                                              std::uint8_t denumerator, std::uint8_t _8th,
                                              std::uint8_t _32nd);
    virtual void createMetaTimeSignatureMessage(const std::shared_ptr<MetaTimeSignatureEvent>& event);
    virtual void createMetaKeySignatureEvent(double position, std::uint8_t sf, std::uint8_t mi);
    virtual void createMetaKeySignatureMessage(const std::shared_ptr<MetaKeySignatureEvent>& event);
    virtual void createMetaSequencerSpecificEvent(double position, std::uint32_t length,
                                                  const std::vector<std::uint8_t>& data);
    virtual void createMetaSequencerSpecificMessage(const std::shared_ptr<MetaSequencerSpecificEvent>& event);

    // A meta event of any type on track 0; nothing for a `length` below 4.
    virtual void createMetaEvent(double position, int length, const std::vector<std::uint8_t>& data,
                                 std::uint8_t type);
    // Both write no event; they only lengthen the song.
    virtual void createUserEvent(double position);
    virtual void createExtraEvent(double position);
    // sequenceLength becomes at least `length`.
    virtual void ensureSongLength(double length);

    // MARK: Tree to music sequence

    // Adds `offset` to the node's own position, for good, and writes it to the track of its channel; `track`
    // only has to be there.
    virtual void eventsToMusicTrack(const std::shared_ptr<EventNode>& event, const MusicTrack& track,
                                    double offset = 0.0);
    virtual void sequenceNodeToMusicSequence();
    virtual void trackNodeToMusicTrack(const std::shared_ptr<TrackNode>& trackNode,
                                       const MusicTrack& musicTrack);
    virtual void trackNodeToMusicSequence(const std::shared_ptr<TrackNode>& trackNode);
    virtual void patternNodeToMusicTrack(const std::shared_ptr<PatternNode>& patternNode,
                                         const MusicTrack& musicTrack);
    virtual void patternNodeToMusicSequence(const std::shared_ptr<PatternNode>& patternNode);

    // MARK: Music sequence to tree

    // Reads everything into the tree and tells the listener about each event inside the walk. A listener may
    // give up the sequence there: a shared one lives until the walk ends.
    virtual void musicSequenceToSequenceNode();
    // One track. `index` is its index in the tree, -1 the tempo track.
    virtual void iterateEvents(const MusicTrack& track, int index);
    // Append the payload, cut off at 1040 bytes, to the node's data; its length stays as it is. A node that
    // is read has its position already.
    virtual void fillMetaData(const MIDIMetaEvent* source, UserEvent& dest);
    virtual void fillSysExData(const MIDIRawData* source, UserEvent& dest);
    virtual void fillUserData(const MusicEventUserData* source, UserEvent& dest);

    // MARK: Tempo

    virtual MusicTrack getTempoTrack(); // null on failure
    virtual double getTempo();
    // Replaces all tempos by one at 0.
    virtual void setTempo(double tempo);
    // Adds a tempo and leaves currentTempo alone.
    virtual void setTempo(double tempo, double at);
    virtual void removeTempoEvents(const MusicTrack& track);
    // One event for each tempo, in the track's order: 0xFD, 0x51, the tempo as a byte (120 where it does not
    // fit), 0xFF, 0x51, 3 and three bytes. Sample times are at 120 beats per minute.
    virtual std::vector<std::shared_ptr<AUMIDIEventEx>> getTempoEvents(const MusicTrack& track,
                                                                       double samplerate);

    // MARK: Tree to realtime events
    //
    // Ascending by sample time, at 120 beats per minute whatever the tempo. At equal times note-offs come
    // first, save the off of a note that is on and off at one sample, which stands right after its on;
    // else the order of the tree. Nodes that have no realtime form give a record of three zeros.

    // With the tempo events; each element's id is its index.
    virtual std::vector<std::shared_ptr<AUMIDIEventEx>> nodesToAUMIDIEvent(double samplerate,
                                                                           std::uint8_t cable);
    // Plain records of at most three bytes each, without the tempo events.
    virtual std::vector<AUMIDIEvent> nodesToAUMIDIEvent(double samplerate);

protected:
    // Reads everything, each track by iterateEvents, with the lines of `report`.
    void readSequence(SequenceReadingReport& report);
    // The walk of iterateEvents; each node goes where `place` says.
    void readTrack(const MusicTrack& track, int index, const NodePlace& place);

private:
    std::vector<std::shared_ptr<ChannelAssignment>> channelAssignments;
    std::array<std::uint8_t, channelCount> patches{};
};

} // namespace volvelle
