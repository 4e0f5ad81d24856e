#pragma once

#include "services/synthesizer/DLSSoundFont.h"
#include "services/synthesizer/PinnedSounds.h"
#include "services/synthesizer/SoundChoice.h"
#include "wire/TimedMessageLine.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

// Private to the library.
namespace volvelle {

// The library behind, what it does not know of itself, and how it is told messages. Made on any thread, then
// used by one, the render thread.
struct SynthesizerState {
    static constexpr int tuningPrograms = 128; // of a bank; there are as many banks

    // Of a parameter that is not registered; without one `isFree` is false.
    struct Selection {
        bool isFree = false;
        int high = 127;
        int low = 127;
    };

    FluidPointer<fluid_settings_t> settings;
    FluidPointer<fluid_synth_t> synth; // dies before its settings
    int font = 0;
    bool readsOnDemand = false;
    bool rests = false;
    int silentAfter = 0; // frames without voices and below -120 dB: a second
    // Tunings that were changed, bank by bank.
    std::bitset<std::size_t{tuningPrograms} * tuningPrograms> tuned;
    std::array<Selection, channelCount> selections;
    PinnedSounds pinned;
    std::array<SoundChoice, channelCount> missing; // what a program change asked for and memory has not
    std::uint16_t missingChannels = 0;             // bit n: `missing` of channel n counts
    TimedMessageLine line{1};                      // the end of a note ends all strikes of its key
    int quietFrames = 0;                           // in a row, up to `silentAfter`
    int skippedFrames = 0; // of silence, of the library's block that is to be gone on with

    // Writes so many frames; the library is not asked for those of a rest.
    void write(float* left, float* right, int frames);

    // Performs what is due at `offset`, and gives the next place to stop at: that of the next message, or a
    // little further on where too much is due at once for what the library can take between two of its own
    // blocks.
    int performUpTo(int offset);

    // Ends all voices.
    void endSounds();

    void forgetSettings();

    // Brings all channels to where they are at first.
    void freshen();

    std::optional<BankSound> soundFor(const SoundChoice& choice) const;
    bool pin(const BankSound& sound);

private:
    void goOn();
    void countQuiet(const float* left, const float* right, int frames);
    void perform(const TimedMessage& message);
    void performExclusive(std::span<const std::uint8_t> message);
    void performMessage(const ShortMessage& message);
    void performController(int channel, int number, int value);
    void performParameter(int channel, int value);
    void performProgram(int channel, int program);
    void control(int channel, int number, int value);
    int share(const TimedMessage& message, bool resets) const;
    void resetControllers(int channel);
    void forgetTunings();
};

} // namespace volvelle
