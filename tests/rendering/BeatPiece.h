#pragma once

#include "services/audiograph/sequencer/SequencerEvents.h"

#include <gtest/gtest.h>

namespace volvelle::test {

// A note on each beat on channel 0 and 9, a controller on each fourth.
inline MusicSequence sequenceOf(int beats, double bpm)
{
    MusicSequence sequence;
    MusicTrack track;
    EXPECT_EQ(NewMusicSequence(sequence), noErr);
    EXPECT_EQ(MusicSequenceGetTempoTrack(sequence, track), noErr);
    EXPECT_EQ(MusicTrackNewExtendedTempoEvent(track, 0.0, bpm), noErr);
    EXPECT_EQ(MusicSequenceNewTrack(sequence, track), noErr);
    for (int beat = 0; beat < beats; ++beat) {
        const MIDINoteMessage note{0, 60, 100, 0, 1.0F};
        const MIDINoteMessage drum{9, 42, 90, 0, 0.5F};
        EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, beat, note), noErr);
        EXPECT_EQ(MusicTrackNewMIDINoteEvent(track, beat, drum), noErr);
        if (beat % 4 == 0) {
            EXPECT_EQ(MusicTrackNewMIDIChannelEvent(track, beat, {0xB0, 7, 80}), noErr);
        }
    }
    return sequence;
}

inline SequencerEvents eventsOf(const MusicSequence& sequence)
{
    SequencerEvents events;
    EXPECT_EQ(events.read(sequence), noErr);
    return events;
}

inline SequencerEvents piece(int beats, double bpm)
{
    return eventsOf(sequenceOf(beats, bpm));
}

} // namespace volvelle::test
