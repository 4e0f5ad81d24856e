#include "phrases/ArrangementTracks.h"

#include "base/Text.h"
#include "phrases/MIDIPhraseMixer.h"

#include <algorithm>

namespace volvelle {

namespace {

template <auto track>
MIDIPhrase& phraseOf(const MIDIPhraseMixer& mixer)
{
    return *(mixer.*track);
}

using Mixer = MIDIPhraseMixer;
using Source = ArrangementTrack::Source;

constexpr auto loaded = &MIDIPhrase::loadedEvents;
constexpr auto generated = &MIDIPhrase::generatedEvents;

} // namespace

// Channel, label, source, folder, phrase, the list that is heard, follows the chords, is active.
constinit const std::array<ArrangementTrack, 7> arrangementTracks = {{
    {chordChannel, "CHORDS", Source::chordPattern, "Phrases/chord patterns", phraseOf<&Mixer::chordTrack>,
     generated, false, true},
    {chordPhraseChannel, "CHORD PHRASE", Source::phrase, "Phrases2/01 chords", phraseOf<&Mixer::phraseTrack0>,
     generated, true, true},
    {leadChannel, "MELODY PHRASE", Source::phrase, "Phrases2/02 leads", phraseOf<&Mixer::leadTrack0>,
     generated, true, true},
    {bassChannel, "BASS PHRASE", Source::phrase, "Phrases2/09 basses", phraseOf<&Mixer::bassTrack0>,
     generated, true, true},
    {drumChannel, "BASE DRUMS", Source::phrase, "Phrases2/10 drums", phraseOf<&Mixer::drumTrack0>, loaded,
     false, true},
    {polyRhythmChannel, "POLYRHYTHM GENERATOR", Source::polyRhythm, "", phraseOf<&Mixer::polyRhythm0>, loaded,
     false, false},
    {polyMeterChannel, "POLYMETRIC GENERATOR", Source::polyMeter, "", phraseOf<&Mixer::polyMeter0>, generated,
     true, true},
}};

const ArrangementTrack* arrangementTrackOf(int channel)
{
    const auto* const track = std::ranges::find(arrangementTracks, channel, &ArrangementTrack::channel);
    return track == arrangementTracks.end() ? nullptr : track;
}

std::string channelLabel(int channel)
{
    const ArrangementTrack* track = arrangementTrackOf(channel);
    return track == nullptr ? concat("CHANNEL ", channel) : std::string(track->label);
}

} // namespace volvelle
