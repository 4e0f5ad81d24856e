#pragma once

#include "phrases/ArrangementTracks.h"
#include "scores/ScoreChord.h"
#include "scores/ScoreKind.h"
#include "scores/ScoreNote.h"

#include <string>
#include <string_view>
#include <vector>

namespace volvelle {

// One phrase of four bars of four beats, read from its text.
// The notes stand by position; notes of one position stand in the order of the text.
struct Score {
    static constexpr int bars = 4;
    static constexpr double beatsInBar = 4;
    static constexpr double beats = arrangementBeats;
    static constexpr double sixteenth = 0.25; // beats
    static constexpr double gap = 0.03125;    // beats that a note ends ahead of its written end

    // How a style begins, and what the flags are called, in the texts of a compiled phrase.
    static constexpr std::string_view styleMark = "style: ";
    static constexpr std::string_view machineMark = "machine: yes";
    static constexpr std::string_view colourMark = "colour: yes";

    std::string title;
    std::string style;
    bool machine = false; // deliberately played with fewer than six velocities
    bool colour = false;  // at home beside some phrases alone: free of the bounds that carriers keep
    ScoreKind kind = ScoreKind::lead;
    int titleLine = 0; // in the text, counted from 1; 0 where there is none
    int bodyLine = 0;  // the line of the opening word
    std::vector<ScoreNote> notes;
    std::vector<ScoreChord> chords; // in chord patterns alone

    // The bar, from 1, in which a position of at least 0 beats lies.
    static int barAt(double position) { return static_cast<int>(position / beatsInBar) + 1; }
};

} // namespace volvelle
