#pragma once

#include "base/Result.h"
#include "services/synthesizer/BankFile.h"
#include "services/synthesizer/SoundChoice.h"
#include "services/synthesizer/SynthesizerOptions.h"
#include "wire/ShortMessage.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace volvelle {

struct SynthesizerState;

// Plays MIDI messages with the sounds of one bank: SoundFonts and banks of downloadable sounds (level 1 and
// 2). Sixteen channels, the tenth (channel 9) with drums.
//
// A synthesizer keeps its bank: another bank is another synthesizer, made off the render thread, and whoever
// swaps the two deletes the old one off the render thread too. All that moves or sounds is called on one
// thread, the render thread; messages and rendering there take no lock and no memory, but for the first block
// on a thread and for tunings, and but for one block that the library behind takes and gives back each time
// that it renders effects.
//
// Each channel is one of its own and polyphonic: the modes (controllers 124 to 127) end its notes and change
// nothing else. Controller 121 leaves parameters as they are. Any reset by system exclusive brings all
// channels to where they were at first.
//
// A message acts at its offset, counted from the start of the coming block, rounded up to the next 64th frame
// since the synthesizer was made; blocks of any size give the same sound, unless it rests (see
// SynthesizerOptions). A message after the block waits.
class Synthesizer {
public:
    static constexpr int drumChannel = volvelle::drumChannel;
    static constexpr int notesAtOnce = 48;

    // A synthesizer with the bank. Warnings about a bank go to the log. Takes 10 to 600 ms. [main, worker]
    static Result<std::unique_ptr<Synthesizer>> make(const std::shared_ptr<const BankFile>& bank,
                                                     const SynthesizerOptions& options);
    static Result<std::unique_ptr<Synthesizer>> make(const std::filesystem::path& path,
                                                     const SynthesizerOptions& options);

    ~Synthesizer();
    Synthesizer(const Synthesizer&) = delete;
    Synthesizer& operator=(const Synthesizer&) = delete;

    // Writes `frames` frames to both channels, whatever stands there; not limited in level. [render]
    void render(float* left, float* right, int frames) noexcept;

    // Messages; `offset` in frames, below 0 counts as 0. Data beyond seven bits are cut to them, channels to
    // four bits. Where the line of messages that wait is full the rest is dropped, but for what ends
    // something (see TimedMessageLine). Of more than notesAtOnce note-ons for one place, or of very many
    // others while much sounds, the rest acts 64 frames later. [render]
    void noteOn(int channel, int key, int velocity, int offset = 0) noexcept;
    void noteOff(int channel, int key, int offset = 0) noexcept;
    void keyPressure(int channel, int key, int pressure, int offset = 0) noexcept;
    void controller(int channel, int number, int value, int offset = 0) noexcept;
    void program(int channel, int number, int offset = 0) noexcept;
    void channelPressure(int channel, int pressure, int offset = 0) noexcept;
    void pitchBend(int channel, int value, int offset = 0) noexcept; // 0 to 16,383, middle 8,192
    // `bytes` begins with F0 and ends with F7; other bytes are dropped.
    void systemExclusive(std::span<const std::uint8_t> bytes, int offset = 0) noexcept;
    // A channel message as it is on the wire; anything else is dropped.
    void message(std::uint8_t status, std::uint8_t data1, std::uint8_t data2, int offset = 0) noexcept;

    // Ends all sounds and forgets controllers, bends, programs and what waits, at once. [render]
    void reset() noexcept;

    // Forgets tunings and what parameters have set, at once. Memory is taken where tunings were set. [render]
    void forgetSettings() noexcept;

    // Brings the samples of a sound into memory for as long as the synthesizer lives, and changes nothing
    // that is heard. Banks from 32 MiB read them from disk, hence: [main, worker] Not while another thread
    // renders. True where the bank has the sound, or one that stands in for it. Program 0, of drums too, is
    // there from the start.
    bool preload(const SoundChoice& choice) noexcept;

    // What a program change asked for that is not in memory, the last of each channel: the channel keeps the
    // sound that it has until another synthesizer comes with that one. False for none. [render]
    bool takeMissing(SoundChoice& choice) noexcept;

    // How many voices sound. [render]
    int activeVoices() const noexcept;

    const std::shared_ptr<const BankFile> bank;

    // The bank is large: only sounds that are preloaded play.
    bool readsOnDemand() const { return bank->isLarge(); }

private:
    Synthesizer(std::shared_ptr<const BankFile> bank, std::unique_ptr<SynthesizerState> state);
    void post(const ShortMessage& message, int offset) noexcept;

    std::unique_ptr<SynthesizerState> state;
};

} // namespace volvelle
