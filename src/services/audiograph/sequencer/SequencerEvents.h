#pragma once

#include "services/audiograph/sequencer/SequencerEvent.h"
#include "services/audiograph/sequencer/TempoMap.h"
#include "services/musicsequence/TrackWalk.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace volvelle {

// An event that a start elsewhere must know of: whatever changes the state of a destination.
struct SequencerState {
    double seconds = 0.0;
    std::uint32_t longIndex = 0; // of a system exclusive message, where `bytes` are empty
    std::uint16_t track = 0;
    ShortMessage bytes{};

    bool isExclusive() const { return bytes[0] == 0; }
};

// A program that a track asks for.
struct SequencerProgram {
    std::uint16_t track = 0;
    std::uint8_t channel = 0;
    std::uint8_t bankMSB = 0;
    std::uint8_t bankLSB = 0;
    std::uint8_t program = 0;
};

struct SequencerTrackInfo {
    double lengthInBeats = 0.0;
    std::uint16_t channels = 0; // bit n: it has messages on channel n
};

// A sequence, flattened into what is sent and when. Never changes once it is read. [any]
class SequencerEvents {
public:
    std::vector<SequencerEvent> events; // by seconds, equal ones by track and place in it
    std::vector<SequencerState> states; // in the order of the events
    std::vector<std::vector<std::uint8_t>> longMessages;
    std::vector<SequencerTrackInfo> tracks{1}; // the tempo track first
    std::vector<SequencerProgram> programs;    // in the order of the tracks
    TempoMap tempo;
    std::string title;
    std::string copyright;

    // Reads the whole sequence; on failure the content is not to be used. [main]
    [[nodiscard]] OSStatus read(const MusicSequence& sequence);

    // The same piece with other events, which it brings in order: all that a later start is to know stays.
    SequencerEvents with(std::vector<SequencerEvent> others) const;

    // The first event at or after `seconds`.
    std::size_t firstFrom(double seconds) const noexcept;

private:
    [[nodiscard]] OSStatus readTempo(const MusicTrack& track);
    [[nodiscard]] OSStatus readTrack(const MusicTrack& track, std::uint16_t index);
    void readEvent(const TrackEvent& event, std::uint16_t index);
    void readNote(double beat, const MIDINoteMessage& note, std::uint16_t index);
    void readMessage(double beat, const MIDIChannelMessage& message, std::uint16_t index);
    void readLong(double beat, const MIDIRawData& data, std::uint16_t index);
    void readMeta(const MIDIMetaEvent& meta);
    void order();
    void findStates();
    void findPrograms();
};

} // namespace volvelle
