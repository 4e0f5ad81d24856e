#pragma once

#include "base/realtime/Handoff.h"
#include "services/audiograph/graph/AUAudioUnit.h"
#include "services/synthesizer/Synthesizer.h"
#include "wire/DeviceState.h"

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace volvelle {

// The synthesizer as a unit of the engine ("aumu", "msyn", "appl"). It begins with its built-in sounds, which
// are those of the best installed bank unless it is made with others; without any bank it is silent and says
// so in the log.
//
// Another bank, or sounds of a large bank that have to be read first, come in a new synthesizer, made on the
// main thread and taken over at the start of a block with the channels as they stood; what sounds then ends.
// A sound that nobody announced is asked for while the music plays, and comes with the next housekeeping().
class MIDISynthUnit : public AUAudioUnit {
public:
    // The location of a bank: `data` points to a pointer to a std::filesystem::path, `size` is that of the
    // pointer. A bank that cannot be loaded is logged and answers kAudioUnitErr_InvalidFile; what sounded
    // goes on.
    static constexpr std::uint32_t soundBankProperty = 1100;
    // An unsigned 32-bit number, 1 or 0: while it is 1, program changes from outside load a sound, neither
    // sound nor change the channel, and bank selects count for them alone.
    static constexpr std::uint32_t enablePreloadProperty = 4119;

    MIDISynthUnit(const AudioComponentDescription& description, const SynthesizerOptions& options,
                  const std::optional<std::filesystem::path>& builtIn = std::nullopt);
    ~MIDISynthUnit() override;

    double tailTime() const override { return 5.0; }

    [[nodiscard]] OSStatus setProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element,
                                       const void* data, std::uint32_t size) override;
    [[nodiscard]] OSStatus musicDeviceMIDIEvent(std::uint32_t status, std::uint32_t data1,
                                                std::uint32_t data2, std::uint32_t sampleOffset) override;
    void prepareToPlay(std::span<const AUMIDIProgram> programs) override;

    void reset() noexcept override;
    void forgetSettings() noexcept override;

    // Frees what is no longer used, and fetches sounds that were missed.
    void housekeeping() override;

    // The bank whose sounds play, empty for none. [main]
    std::filesystem::path soundBank() const { return bank == nullptr ? std::filesystem::path() : bank->path; }

    // Voices at the end of the last block. [any]
    int activeVoices() const { return voices.load(std::memory_order_relaxed); }

protected:
    void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right, int frames,
                     std::span<const TimedMessage> events) noexcept override;

private:
    static constexpr std::size_t maximumMissing = 256;

    [[nodiscard]] OSStatus loadBank(const std::filesystem::path& url);
    [[nodiscard]] OSStatus preloadEvent(std::uint32_t status, std::uint32_t data1, std::uint32_t data2);
    [[nodiscard]] OSStatus endPreload();
    bool keep(const AUMIDIProgram& program);
    bool open(const std::filesystem::path& url);
    bool renew(const std::shared_ptr<const BankFile>& from);
    void renewForNewSounds();
    void takeOver(Synthesizer& synthesizer) noexcept;
    void takeMessage(const TimedMessage& event, Synthesizer* synthesizer) noexcept;

    SynthesizerOptions options;
    std::shared_ptr<const BankFile> bank; // null for none
    std::set<AUMIDIProgram> kept;         // sounds that are to stay in memory
    bool isPreloading = false;
    bool hasNewSounds = false; // since preloading began

    struct BankSelect {
        std::uint8_t msb = 0;
        std::uint8_t lsb = 0;
    };

    std::array<BankSelect, channelCount> preloadBanks{};
    Handoff<Synthesizer> synthesizers;
    BoundedQueue<SoundChoice> missing; // render thread to main thread
    DeviceState device;                // render thread: what the messages have set
    std::atomic<int> voices{0};
};

} // namespace volvelle
