// Reads the input as a bank of downloadable sounds, and plays some notes with what could be read.
#include "services/synthesizer/DLSReader.h"
#include "services/synthesizer/DLSSoundFont.h"
#include "services/synthesizer/FluidLog.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace {

using namespace volvelle;

struct Player {
    Player()
    {
        routeFluidLog();
        fluid_settings_setint(settings.get(), "synth.threadsafe-api", 0);
        fluid_settings_setint(settings.get(), "synth.reverb.active", 0);
        fluid_settings_setint(settings.get(), "synth.chorus.active", 0);
        synth.reset(new_fluid_synth(settings.get()));
    }

    void play(DLSFile file)
    {
        if (!DLSSoundFont::offer(synth.get(), std::move(file))) {
            return;
        }
        const int font = fluid_synth_sfload(synth.get(), "fuzzed", 1);
        std::array<float, 2048> sound{};
        for (const int key : {0, 38, 60, 127}) {
            fluid_synth_noteon(synth.get(), 0, key, 100);
            fluid_synth_noteon(synth.get(), 9, key, 1);
        }
        fluid_synth_cc(synth.get(), 0, 1, 127);
        fluid_synth_write_float(synth.get(), 1024, sound.data(), 0, 1, sound.data(), 1024, 1);
        fluid_synth_all_sounds_off(synth.get(), -1);
        fluid_synth_write_float(synth.get(), 64, sound.data(), 0, 1, sound.data(), 64, 1);
        fluid_synth_sfunload(synth.get(), font, 1);
    }

    FluidPointer<fluid_settings_t> settings{new_fluid_settings()};
    FluidPointer<fluid_synth_t> synth;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    auto file = DLSReader({data, size}).read();
    if (file) {
        // Each play leaves a loader after; a new player forgets them.
        static std::unique_ptr<Player> player;
        static int plays = 0;
        if (plays++ % 64 == 0) {
            player = std::make_unique<Player>();
        }
        player->play(std::move(*file));
    }
    return 0;
}
