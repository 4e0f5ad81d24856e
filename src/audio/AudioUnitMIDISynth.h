#pragma once

#include "audio/AudioUnitBase.h"
#include "audio/SoundBankFinder.h"
#include "services/audiograph/graph/AVAudioUnitMIDIInstrument.h"
#include "services/audiograph/graph/AudioComponentRegistry.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

// The sound source of the application: the synthesizer unit with a sound bank.
//
// Used in this order: make, create(), connection of the node by the owner, initialize(), start of the engine.
// No rate converters are put around it. A bank that is missing is a line in the log: the unit keeps its
// built-in sounds. Without an instrument, everything after create() is a fatal stop. [main] Before the
// engine starts or between plays.
class AudioUnitMIDISynth : public AudioUnitBase {
public:
    static constexpr AudioComponentDescription cd{fourCharacterCode("aumu"), fourCharacterCode("msyn"),
                                                  fourCharacterCode("appl"), 0, 0};

    // `makeUnit` makes the synthesizer unit, or gives null; an empty one asks the registered components.
    static std::shared_ptr<AudioUnitMIDISynth>
    make(std::shared_ptr<AVAudioEngine> engine, SoundBankFinder finder, AudioComponentFactory makeUnit = {});

    std::shared_ptr<AVAudioUnitMIDIInstrument> midiSynth;
    std::optional<std::filesystem::path> currentSoundfont; // nothing sets it

    // Makes and attaches the instrument, which is the main node as well.
    void create(const std::string& name) override;
    void destroy() override;

    std::string_view className() const override { return "AudioUnitMIDISynth"; }

    // Loads bank `sfn`, and with `preload` the programs 0 to 127 on channel 0 and on the rhythm channel.
    virtual void initialize(int sfn, bool preload);

    // Bank 0 is "gs_instruments", as is every number without a bank of its own; 1 and 2 are crossed over.
    void loadSoundFont(int number);
    // True if the unit accepted the bank.
    bool loadSoundFont(const std::filesystem::path& url);

    // Loads sounds ahead of use; what the channels play does not change. A patch that fails does not keep the
    // others from loading.
    void preloadPatches(std::uint8_t channel, const std::vector<std::uint32_t>& patches,
                        std::uint32_t msb = 0, std::uint32_t lsb = 0);
    // The same on the rhythm channel, without a bank.
    void preloadPatches2(const std::vector<std::uint32_t>& patches);
    // A single sound; ends at the first failure, even with preloading still enabled.
    void preloadPatch(std::uint8_t msb = 0, std::uint8_t lsb = 0, std::uint8_t patch = 0,
                      std::uint8_t channel = 0);

    void setVolume(float value);
    void setRate(float value);

protected:
    AudioUnitMIDISynth(std::shared_ptr<AVAudioEngine> engine, SoundBankFinder finder,
                       AudioComponentFactory factory);

private:
    [[nodiscard]] OSStatus enablePreload(bool isOn);
    [[nodiscard]] OSStatus sendController(std::uint8_t channel, std::uint8_t number, std::uint32_t value);
    [[nodiscard]] OSStatus sendProgram(std::uint8_t channel, std::uint32_t patch);

    SoundBankFinder findSoundBank;
    AudioComponentFactory makeUnit;
};

} // namespace volvelle
