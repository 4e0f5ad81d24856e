#pragma once

#include "base/Result.h"
#include "services/synthesizer/DLSFile.h"
#include "tools/sf2dls/SoundFontZones.h"

#include <map>
#include <optional>
#include <tuple>

namespace volvelle {

// Turns a SoundFont into a bank of downloadable sounds that sounds the same: each zone becomes a region with
// an articulation of its own, each stretch of the sample pool that a zone plays a wave. Bank 128 becomes the
// drums.
class SoundFontConverter {
public:
    static constexpr std::size_t maximumRegions = 100000;
    static constexpr std::size_t maximumPoolCopies = 4; // of the size of the sample pool, in waves

    explicit SoundFontConverter(const SoundFontFile& file) : source(file) {}

    // Fails where nothing is left to play or the file asks for more than its size justifies.
    Result<DLSFile> convert();

    int droppedModulators = 0; // what a bank of downloadable sounds cannot say
    int droppedVoices = 0;     // without samples in the file

private:
    using Stretch = std::tuple<std::size_t, std::int64_t, std::int64_t>; // sample, first frame, past the last

    void addPreset(const SoundFontPreset& preset);
    std::optional<DLSRegion> region(const SoundFontVoice& voice);
    std::optional<Stretch> stretch(const SoundFontVoice& voice) const;
    int waveOf(const Stretch& stretch);
    DLSTuning tuning(const SoundFontVoice& voice, const Stretch& stretch) const;
    std::optional<DLSLoop> loop(const SoundFontVoice& voice, const Stretch& stretch) const;

    const SoundFontFile& source;
    DLSFile result;
    std::map<Stretch, int> waves;
    std::size_t regionCount = 0;
    std::size_t waveBytes = 0;
};

} // namespace volvelle
