#include "tests/phrases/RandomLibrary.h"

#include <cmath>
#include <map>

namespace volvelle::test {

namespace {

constexpr double ticks = 480.0; // to the beat
constexpr int mostAtOnePosition = 10;

} // namespace

void RandomLibrary::fill(PhraseLibrary& library)
{
    for (const char* folder : {chordPatterns, chordPhrases, leads, basses, drums}) {
        const int count = draw(1, 3);
        for (int i = 0; i < count; ++i) {
            library.add(folder, folder == chordPatterns ? chordFile() : trackFile());
        }
    }
}

int RandomLibrary::draw(int lower, int upper)
{
    return lower + static_cast<int>(engine() % static_cast<std::uint64_t>(upper - lower + 1));
}

int RandomLibrary::key()
{
    const int kind = draw(0, 9);
    return kind == 0 ? 0 : kind == 1 ? 127 : draw(0, 127);
}

PhraseFile RandomLibrary::chordFile()
{
    constexpr int shapes[5][3] = {{0, 4, 7}, {0, 3, 7}, {0, 7, 0}, {0, 0, 0}, {0, 1, 5}};
    PhraseFile file;
    const int chords = draw(0, 5);
    for (int i = 0; i < chords; ++i) {
        const double position = draw(0, 17 * 480) / ticks;
        const double duration = draw(0, 1000) / ticks;
        const int root = draw(0, 120);
        for (const int interval : shapes[draw(0, 4)]) {
            file.notes.push_back({position, root + interval, duration, draw(0, 15)});
        }
    }
    return file;
}

PhraseFile RandomLibrary::trackFile()
{
    PhraseFile file;
    std::map<double, int> counts; // by sixteenth
    const int clusters = draw(0, 6);
    for (int i = 0; i < clusters; ++i) {
        const int sixteenth = draw(0, 70);
        const int notes = draw(0, 2) == 0 ? draw(2, mostAtOnePosition) : 1;
        for (int j = 0; j < notes; ++j) {
            const double position = std::max(0, sixteenth * 120 + draw(-70, 70)) / ticks;
            if (counts[std::round(position * 4.0)]++ < mostAtOnePosition) {
                file.notes.push_back(
                    {position, key(), draw(0, 1500) / ticks, draw(0, 15), draw(1, 127), draw(0, 127)});
            }
        }
    }
    if (draw(0, 3) == 0) {
        file.controllers.push_back({draw(0, 8000) / ticks, 64, 127, draw(0, 15)});
    }
    return file;
}

} // namespace volvelle::test
