#pragma once

#include "services/synthesizer/SoundFontNumbers.h"
#include "tools/sf2dls/SoundFontFile.h"

#include <array>
#include <vector>

namespace volvelle {

struct KeyRange {
    int low = 0;
    int high = 127;

    KeyRange within(const KeyRange& other) const;

    bool isEmpty() const { return low > high; }
};

// What one sample of one preset sounds like: the zones of preset and instrument put together.
struct SoundFontVoice {
    SoundFontVoice();

    double operator[](int generator) const { return values[static_cast<std::size_t>(generator)]; }

    KeyRange keys;
    KeyRange velocities;
    std::array<double, Generator::count> values{}; // by generator
    std::vector<SoundFontModulator> modulators;    // the default ones among them
    std::size_t sample = 0;
};

// All voices of a preset, in the file's order; at most `room`.
std::vector<SoundFontVoice> voicesOf(const SoundFontFile& file, const SoundFontPreset& preset,
                                     std::size_t room);

} // namespace volvelle
