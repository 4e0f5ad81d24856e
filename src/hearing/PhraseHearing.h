#pragma once

#include "hearing/Harmony.h"
#include "hearing/HeardNote.h"
#include "hearing/Share.h"

#include <cstdint>
#include <span>

// What is heard of the notes of one track, over plain lists. [any]
namespace volvelle {

// The sixteenths at which something happens, the first one lowest.
using Onsets = std::uint64_t;

// The notes as they follow the chords in an arrangement. Notes before the first chord and from beat 16 on are
// left out.
HeardNotes followed(const HeardNotes& notes, const Harmony& harmony);

// The sixteenths at which a tone sounds outside the chord that sounds then: held over a change.
Onsets outsideChords(const HeardNotes& notes, const Harmony& harmony);

// Of the chord changes those with an onset within a sixteenth; the first chord is no change.
Share changesMet(const HeardNotes& notes, const Harmony& harmony);

// Of the chords those in which the root is sounded.
Share rootsSounded(const HeardNotes& notes, const Harmony& harmony);

// Of the notes those with a kick under them.
Share onKicks(const HeardNotes& notes, Onsets kicks);

// Of the steps from one position to the next those that repeat the key.
Share keyRepeats(const HeardNotes& notes);

bool isKick(int key);
bool isSnare(int key); // or what stands for it: rim, clap

Onsets onsetsOf(const HeardNotes& notes);
Onsets kicksOf(const HeardNotes& drums);
Onsets snaresOf(const HeardNotes& drums);

// How far apart two phrases are that are struck at these places, row by row: the share of places that only
// one of them has, 0 to 1; 0 where neither has any.
double distanceOf(std::span<const Onsets> one, std::span<const Onsets> other);

// The smallest distance over all orders of the four bars of one of them.
double distanceInAnyOrder(std::span<const Onsets> one, std::span<const Onsets> other);

} // namespace volvelle
