#pragma once

#include "sequence/MIDISequence.h"

#include <source_location>
#include <variant>
#include <vector>

namespace volvelle {

// A sequence of sixteen tracks, of which track n holds what plays on MIDI channel n: the shape of a document.
class MIDISequence16 : public MIDISequence {
public:
    // A copy of an event's record; of a record of variable length the head with its first byte.
    using EventRecord =
        std::variant<std::monostate, ExtendedNoteOnEvent, ExtendedTempoEvent, MusicEventUserData,
                     MIDIMetaEvent, MIDINoteMessage, MIDIChannelMessage, MIDIRawData, ParameterEvent>;

    // One event of a track as the service holds it.
    struct TimedMIDIEvent {
        MusicEventType eventType = kMusicEventType_NULL;
        double eventTimeStamp = 0.0; // beats
        EventRecord event;           // std::monostate for none
    };

    static constexpr std::uint8_t trackCount = 16;

    MIDISequence16();

    // True if the sequence has all sixteen tracks; more than sixteen pass.
    virtual bool checkTracks();

    // The events of a track in the service's order. Presets, and what the service may add, are reported and
    // left out.
    std::vector<TimedMIDIEvent> getTrackEvents(int trackIndex);
    std::vector<TimedMIDIEvent> getTrackEvents(const MusicTrack& track);

    // Takes the sequence through the steps of starting it on a new player of the service, and reports those
    // that fail. Nothing sounds: the service's player has no sound of its own, and it ends with the call.
    void play();

private:
    void report(std::string_view word, OSStatus status, std::string_view text,
                std::source_location place = std::source_location::current());
};

} // namespace volvelle
