#include "phrases/ArrangementTracks.h"

#include "base/Text.h"
#include "phrases/MIDIPhraseMixer.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using Lines = std::vector<std::string>;

TEST(ArrangementTracks, SevenTracksStandByChannelWithTheirLabelsAndFolders)
{
    Lines lines;
    for (const ArrangementTrack& track : arrangementTracks) {
        lines.push_back(concat(track.channel, " ", track.label, ": ", track.folder));
    }
    EXPECT_EQ(lines, (Lines{"0 CHORDS: Phrases/chord patterns", "1 CHORD PHRASE: Phrases2/01 chords",
                            "2 MELODY PHRASE: Phrases2/02 leads", "8 BASS PHRASE: Phrases2/09 basses",
                            "9 BASE DRUMS: Phrases2/10 drums",
                            "10 POLYRHYTHM GENERATOR: ", "14 POLYMETRIC GENERATOR: "}));
}

TEST(ArrangementTracks, EachTrackHasItsPhraseInTheMixer)
{
    const MIDIPhraseMixer mixer;
    const std::vector<const MIDIPhrase*> phrases{
        mixer.chordTrack.get(), mixer.phraseTrack0.get(), mixer.leadTrack0.get(), mixer.bassTrack0.get(),
        mixer.drumTrack0.get(), mixer.polyRhythm0.get(),  mixer.polyMeter0.get()};
    for (std::size_t i = 0; i < arrangementTracks.size(); ++i) {
        EXPECT_EQ(&arrangementTracks.at(i).phraseIn(mixer), phrases.at(i));
    }
}

TEST(ArrangementTracks, WhatFollowsNoChordsIsHeardAsLoaded)
{
    for (const ArrangementTrack& track : arrangementTracks) {
        const bool isHarmonic = track.channel == chordChannel || track.followsChords;
        EXPECT_EQ(track.heard, isHarmonic ? &MIDIPhrase::generatedEvents : &MIDIPhrase::loadedEvents);
    }
}

TEST(ArrangementTracks, ThePolyRhythmAloneIsNotActive)
{
    for (const ArrangementTrack& track : arrangementTracks) {
        EXPECT_EQ(track.isActive, track.channel != polyRhythmChannel);
    }
}

TEST(ArrangementTracks, AChannelThatIsNotInUseHasNoTrackAndALabel)
{
    for (const int channel : {-1, 3, 7, 11, 15, 16}) {
        EXPECT_EQ(arrangementTrackOf(channel), nullptr);
    }
    EXPECT_EQ(channelLabel(5), "CHANNEL 5");
    EXPECT_EQ(channelLabel(8), "BASS PHRASE");
    EXPECT_EQ(arrangementTrackOf(8)->channel, 8);
}

} // namespace
} // namespace volvelle
