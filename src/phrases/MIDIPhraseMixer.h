#pragma once

#include "MIDISequences/AUMIDIEvents.h"
#include "phrases/MIDIChordPhrase.h"
#include "phrases/MIDIPhrase.h"
#include "sequence/MIDISequence16.h"
#include "wire/ShortMessage.h"

#include <array>
#include <filesystem>
#include <memory>
#include <vector>

namespace volvelle {

// The seven tracks of one arrangement, and the mix of those that are active. Made anew for each arrangement.
// Used by one thread at a time.
class MIDIPhraseMixer {
public:
    MIDIPhraseMixer();
    virtual ~MIDIPhraseMixer();
    MIDIPhraseMixer(const MIDIPhraseMixer&) = delete;
    MIDIPhraseMixer& operator=(const MIDIPhraseMixer&) = delete;

    std::shared_ptr<MIDIChordPhrase> chordTrack; // the master
    std::shared_ptr<MIDIPhrase> phraseTrack0;
    std::shared_ptr<MIDIPhrase> leadTrack0;
    std::shared_ptr<MIDIPhrase> bassTrack0;
    std::shared_ptr<MIDIPhrase> drumTrack0;
    std::shared_ptr<MIDIPhrase> polyMeter0;
    std::shared_ptr<MIDIPhrase> polyRhythm0;
    std::array<bool, channelCount> activeState{}; // by channel; all but channel 10 at the start
    std::shared_ptr<MIDISequence16> sequence;     // the last mix as a sequence, null before
    PhraseEvents mixedEvents;                     // the last mix; the tracks' own objects

    // Does nothing.
    virtual void loadTrack(int track, const std::filesystem::path& url);

    // A new mix from the tracks as they are, in a new sequence.
    virtual std::shared_ptr<MIDISequence16> getSequence();

private:
    virtual void makeSequence();

public:
    // Mixes anew and saves.
    virtual void save(const std::filesystem::path& url);

    // Saves the given sequence; nothing is mixed.
    virtual void save(MIDISequence16& given, const std::filesystem::path& url);

    // Rebuilds mixedEvents: all events of the active tracks by position, and at one position in the order of
    // arrangementTracks.
    virtual void mixChannels();

    // A new mix as realtime events at 24,000 samples to the beat, by sample time.
    virtual std::vector<AUMIDIEvent> phraseEventsToAUMIDIEvents();
};

} // namespace volvelle
