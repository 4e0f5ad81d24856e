#include "hearing/PhraseHearing.h"

#include "phrases/ChordFollowing.h"

#include <algorithm>
#include <array>
#include <bit>
#include <vector>

namespace volvelle {

namespace {

constexpr int end = Harmony::sixteenths;

Onsets bit(int sixteenth)
{
    return sixteenth >= 0 && sixteenth < end ? Onsets{1} << sixteenth : 0;
}

// Notes by position alone: those that stand at the position of a new one are the last ones.
bool isTaken(const HeardNotes& notes, int position, std::uint8_t key)
{
    for (auto note = notes.rbegin(); note != notes.rend() && note->position == position; ++note) {
        if (note->key == key) {
            return true;
        }
    }
    return false;
}

bool sounds(const HeardNote& note, int from, int to)
{
    return note.position < to && note.position + note.length > from;
}

template <class IsMeant>
Onsets onsetsWhere(const HeardNotes& notes, const IsMeant& isMeant)
{
    Onsets onsets = 0;
    for (const HeardNote& note : notes) {
        onsets |= isMeant(note.key) ? bit(note.position) : 0;
    }
    return onsets;
}

} // namespace

HeardNotes followed(const HeardNotes& notes, const Harmony& harmony)
{
    HeardNotes moved;
    moved.reserve(notes.size());
    for (const HeardNote& note : notes) {
        const HeardChord* chord = harmony.chordAt(note.position);
        if (chord == nullptr) {
            continue;
        }
        const auto key = nextFreeKey(note.key, [&](std::uint8_t candidate) {
            return isFreeTone(
                candidate, [chord](int tone) { return chord->hasTone(tone); },
                [&](std::uint8_t taken) { return isTaken(moved, note.position, taken); });
        });
        if (key) {
            moved.push_back({note.position, note.length, *key, note.velocity});
        }
    }
    return moved;
}

Onsets outsideChords(const HeardNotes& notes, const Harmony& harmony)
{
    Onsets outside = 0;
    for (const HeardNote& note : notes) {
        for (int place = note.position; place < std::min(note.position + note.length, end); ++place) {
            const HeardChord* chord = harmony.chordAt(place);
            outside |= chord != nullptr && !chord->hasTone(note.key % 12) ? bit(place) : 0;
        }
    }
    return outside;
}

Share changesMet(const HeardNotes& notes, const Harmony& harmony)
{
    const Onsets struck = onsetsOf(notes);
    Share met;
    for (std::size_t i = 1; i < harmony.chords.size(); ++i) {
        const int place = harmony.chords[i].position;
        met += {(struck & (bit(place - 1) | bit(place) | bit(place + 1))) != 0 ? 1 : 0, 1};
    }
    return met;
}

Share rootsSounded(const HeardNotes& notes, const Harmony& harmony)
{
    Share sounded;
    for (std::size_t i = 0; i < harmony.chords.size(); ++i) {
        const HeardChord& chord = harmony.chords[i];
        const bool isSounded = std::ranges::any_of(notes, [&](const HeardNote& note) {
            return note.key % 12 == chord.root && sounds(note, chord.position, harmony.endOf(i));
        });
        sounded += {isSounded ? 1 : 0, 1};
    }
    return sounded;
}

Share onKicks(const HeardNotes& notes, Onsets kicks)
{
    Share share;
    for (const HeardNote& note : notes) {
        share += {(kicks & bit(note.position)) != 0 ? 1 : 0, 1};
    }
    return share;
}

Share keyRepeats(const HeardNotes& notes)
{
    Share repeats;
    for (std::size_t i = 1; i < notes.size(); ++i) {
        if (notes[i].position > notes[i - 1].position) {
            repeats += {notes[i].key == notes[i - 1].key ? 1 : 0, 1};
        }
    }
    return repeats;
}

bool isKick(int key)
{
    return key == 35 || key == 36;
}

bool isSnare(int key)
{
    return key >= 37 && key <= 40;
}

Onsets onsetsOf(const HeardNotes& notes)
{
    return onsetsWhere(notes, [](int) { return true; });
}

Onsets kicksOf(const HeardNotes& drums)
{
    return onsetsWhere(drums, isKick);
}

Onsets snaresOf(const HeardNotes& drums)
{
    return onsetsWhere(drums, isSnare);
}

double distanceOf(std::span<const Onsets> one, std::span<const Onsets> other)
{
    Share apart;
    for (std::size_t i = 0; i < std::min(one.size(), other.size()); ++i) {
        apart += {std::popcount(one[i] ^ other[i]), std::popcount(one[i] | other[i])};
    }
    return apart.value();
}

double distanceInAnyOrder(std::span<const Onsets> one, std::span<const Onsets> other)
{
    constexpr int placesInBar = 16;
    std::array<int, 4> order{0, 1, 2, 3};
    std::vector<Onsets> moved(one.size());
    double least = 1.0;
    do {
        for (std::size_t row = 0; row < one.size(); ++row) {
            moved[row] = 0;
            for (std::size_t bar = 0; bar < order.size(); ++bar) {
                const Onsets places = one[row] >> (placesInBar * order.at(bar)) & 0xFFFFU;
                moved[row] |= places << (placesInBar * bar);
            }
        }
        least = std::min(least, distanceOf(moved, other));
    } while (std::ranges::next_permutation(order).found);
    return least;
}

} // namespace volvelle
