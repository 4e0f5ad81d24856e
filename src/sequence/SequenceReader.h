#pragma once

#include "sequence/EventKind.h"
#include "sequence/MIDISequence.h"
#include "sequence/NodePlace.h"
#include "sequence/SequenceReadingReport.h"
#include "services/musicsequence/TrackWalk.h"
#include "wire/ShortMessage.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace volvelle {

// Turns the events of one track into nodes, puts each into its place and tells the listener of the sequence.
// Lives as long as one walk.
class SequenceReader {
public:
    using Patches = std::array<std::uint8_t, channelCount>; // program per channel

    // Notes what it reads of channels in `channelOfTrack` and `programs`.
    SequenceReader(MIDISequence& owner, NodePlace placeOfNode,
                   MIDISequence::ChannelAssignment& channelOfTrack, Patches& programs);

    void readTrack(const MusicTrack& track);

    // Hand the tempo track, and every track below the sequence's limit, to its iterateEvents.
    static void readTempoTrack(MIDISequence& owner, SequenceReadingReport& report);
    static void readTracks(MIDISequence& owner, SequenceReadingReport& report);

    // The places in the sequence's own tree. `index` is the track's index there, -1 the tempo track.
    static NodePlace placeInTree(MIDISequence& owner, int index);

    // Appends up to 1040 bytes to the node's data. `kind` heads the lines of diagnosis.
    static void appendPayload(MIDISequence& owner, std::string_view kind, const std::uint8_t* bytes,
                              std::uint32_t length, UserEvent& dest);

private:
    void read(const TrackEvent& event);
    void diagnose(const TrackEvent& event);
    void readUnknown(const TrackEvent& event);

    template <class Node>
    void take(const TrackEvent& event, const EventKind<Node>& kind);
    void setChannel(EventNode& event, std::uint8_t channel);

    void fill(MidiNoteEvent& note, const TrackEvent& event);
    static void fill(TempoEvent& tempo, const TrackEvent& event);
    void fill(UserEvent& user, const TrackEvent& event);
    void fill(SystemExclusiveEvent& exclusive, const TrackEvent& event);
    void fill(MetaEvent& meta, const TrackEvent& event);
    template <ShortMessageNode Node>
    void fill(Node& message, const TrackEvent& event);

    // The others hold no values.
    static void fill(EventNode& /*node*/, const TrackEvent& /*event*/) {}

    MIDISequence& sequence;
    NodePlace place;
    MIDISequence::ChannelAssignment& assignment;
    Patches& patches;
};

} // namespace volvelle
