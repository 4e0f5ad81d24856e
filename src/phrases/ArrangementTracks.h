#pragma once

#include "phrases/PhraseEvent.h"
#include "wire/ShortMessage.h"

#include <array>
#include <string>
#include <string_view>

// The seven tracks of an arrangement. [any]
namespace volvelle {

class MIDIPhrase;
class MIDIPhraseMixer;

inline constexpr int arrangementBeats = 16;
inline constexpr int polyMeterSteps = arrangementBeats * 4; // sixteenths

// MARK: Channels, counted from 0; the drums have drumChannel

inline constexpr int chordChannel = 0;
inline constexpr int chordPhraseChannel = 1;
inline constexpr int leadChannel = 2;
inline constexpr int bassChannel = 8;
inline constexpr int polyRhythmChannel = 10;
inline constexpr int polyMeterChannel = 14;

// What an arrangement does with one of its tracks.
struct ArrangementTrack {
    enum class Source { chordPattern, phrase, polyRhythm, polyMeter };

    int channel;
    std::string_view label;
    Source source;
    std::string_view folder; // of its files below the resources, empty where steps are its source
    MIDIPhrase& (*phraseIn)(const MIDIPhraseMixer& mixer);
    PhraseEvents MIDIPhrase::* heard; // the list that is mixed
    bool followsChords;
    bool isActive; // in a new mixer
};

// In the order in which they are made and mixed.
extern const std::array<ArrangementTrack, 7> arrangementTracks;

// The track of a channel, null for a channel that is not in use.
const ArrangementTrack* arrangementTrackOf(int channel);

// The label of its track, "CHANNEL 5" for a channel that is not in use.
std::string channelLabel(int channel);

} // namespace volvelle
