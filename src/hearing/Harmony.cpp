#include "hearing/Harmony.h"

#include <utility>

namespace volvelle {

Harmony::Harmony(std::vector<HeardChord> list) : chords(std::move(list))
{
    std::erase_if(chords, [](const HeardChord& chord) { return chord.position >= sixteenths; });
    places.fill(-1);
    for (std::size_t i = 0; i < chords.size(); ++i) {
        for (int place = chords[i].position; place < endOf(i); ++place) {
            places.at(static_cast<std::size_t>(place)) = static_cast<int>(i);
        }
    }
}

const HeardChord* Harmony::chordAt(int sixteenth) const
{
    if (sixteenth < 0 || sixteenth >= sixteenths) {
        return nullptr;
    }
    const int place = places[static_cast<std::size_t>(sixteenth)];
    return place < 0 ? nullptr : &chords[static_cast<std::size_t>(place)];
}

int Harmony::endOf(std::size_t chord) const
{
    return chord + 1 < chords.size() ? chords[chord + 1].position : sixteenths;
}

} // namespace volvelle
