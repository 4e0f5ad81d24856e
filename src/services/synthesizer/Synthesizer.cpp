#include "services/synthesizer/Synthesizer.h"

#include "services/synthesizer/DLSSoundFont.h"
#include "services/synthesizer/FluidLog.h"
#include "services/synthesizer/SynthesizerBank.h"
#include "services/synthesizer/SynthesizerQueue.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace volvelle {

namespace {

constexpr std::uint8_t sevenBits = 0x7F;
constexpr int ownBlock = 64; // frames that the library behind renders at once

std::uint8_t dataByte(int value)
{
    return static_cast<std::uint8_t>(value & sevenBits);
}

std::uint8_t statusByte(int kind, int channel)
{
    return static_cast<std::uint8_t>(kind | (channel & 0x0F));
}

} // namespace

struct Synthesizer::State {
    FluidPointer<fluid_settings_t> settings;
    FluidPointer<fluid_synth_t> synth; // dies before its settings
    int font = 0;
    SynthesizerQueue queue;

    void perform(const SynthesizerEvent& event);
    int performUpTo(int offset);
    void endSounds();
    fluid_preset_t* preset(int bankNumber, int programNumber) const;
};

void Synthesizer::State::perform(const SynthesizerEvent& event)
{
    fluid_synth_t* y = synth.get();
    if (event.isExclusive()) {
        const auto bytes = queue.exclusive(event);
        fluid_synth_sysex(y, reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()),
                          nullptr, nullptr, nullptr, 0);
        return;
    }
    const auto [status, data1, data2] = event.bytes;
    const int channel = status & 0x0F;
    switch (status & 0xF0) {
    case 0x80:
        fluid_synth_noteoff(y, channel, data1);
        break;
    case 0x90:
        fluid_synth_noteon(y, channel, data1, data2);
        break;
    case 0xA0:
        fluid_synth_key_pressure(y, channel, data1, data2);
        break;
    case 0xB0:
        fluid_synth_cc(y, channel, data1, data2);
        break;
    case 0xC0:
        fluid_synth_program_change(y, channel, data1);
        break;
    case 0xD0:
        fluid_synth_channel_pressure(y, channel, data1);
        break;
    case 0xE0:
        fluid_synth_pitch_bend(y, channel, data1 | (data2 << 7));
        break;
    default:
        break;
    }
}

// Performs what is due at `offset`, and gives the next place to stop at: that of the next message, or a
// little further on where too much is due at once for what the library can take between two of its own
// blocks.
int Synthesizer::State::performUpTo(int offset)
{
    int performed = 0;
    while (!queue.isEmpty() && queue.front().offset <= offset) {
        if (performed == messagesAtOnce) {
            return offset + ownBlock;
        }
        perform(queue.front());
        queue.removeFront();
        performed += 1;
    }
    return queue.isEmpty() ? std::numeric_limits<int>::max() : queue.front().offset;
}

// A voice that was told to end has ended once a block was rendered.
void Synthesizer::State::endSounds()
{
    std::array<float, std::size_t{2} * ownBlock> unheard{};
    fluid_synth_all_sounds_off(synth.get(), -1);
    fluid_synth_write_float(synth.get(), ownBlock, unheard.data(), 0, 1, unheard.data(), ownBlock, 1);
}

fluid_preset_t* Synthesizer::State::preset(int bankNumber, int programNumber) const
{
    fluid_sfont_t* loaded = fluid_synth_get_sfont_by_id(synth.get(), font);
    return loaded == nullptr ? nullptr : fluid_sfont_get_preset(loaded, bankNumber, programNumber);
}

Synthesizer::Synthesizer(std::filesystem::path path, bool isLarge, std::unique_ptr<State> made)
    : bank(std::move(path)), readsOnDemand(isLarge), state(std::move(made))
{
}

Synthesizer::~Synthesizer() = default;

std::unique_ptr<Synthesizer> Synthesizer::make(const std::filesystem::path& path,
                                               const SynthesizerOptions& options, std::string& error)
{
    routeFluidLog();
    SynthesizerBank content;
    if (!content.open(path, error)) {
        return nullptr;
    }
    auto state = std::make_unique<State>();
    state->settings = makeSettings(options, content.isLarge);
    state->synth.reset(state->settings ? new_fluid_synth(state->settings.get()) : nullptr);
    if (!state->synth) {
        error = "The synthesizer could not be made.";
        return nullptr;
    }
    if (content.sounds && !DLSSoundFont::offer(state->synth.get(), std::move(*content.sounds))) {
        error = "The synthesizer could not be made.";
        return nullptr;
    }
    state->font = fluid_synth_sfload(state->synth.get(), path.c_str(), 1);
    if (state->font == FLUID_FAILED) {
        error = "The sound bank \"" + path.string() + "\" cannot be loaded.";
        return nullptr;
    }
    return std::unique_ptr<Synthesizer>(new Synthesizer(path, content.isLarge, std::move(state)));
}

void Synthesizer::render(float* left, float* right, int frames) noexcept
{
    const RenderingMark mark;
    int done = 0;
    while (done < frames) {
        const int next = std::min(state->performUpTo(done), frames);
        std::fill(left + done, left + next, 0.0F);
        std::fill(right + done, right + next, 0.0F);
        fluid_synth_write_float(state->synth.get(), next - done, left, done, 1, right, done, 1);
        done = next;
    }
    state->queue.advance(std::max(frames, 0));
}

void Synthesizer::noteOn(int channel, int key, int velocity, int offset) noexcept
{
    post({statusByte(0x90, channel), dataByte(key), dataByte(velocity)}, offset);
}

void Synthesizer::noteOff(int channel, int key, int offset) noexcept
{
    post({statusByte(0x80, channel), dataByte(key), 0}, offset);
}

void Synthesizer::keyPressure(int channel, int key, int pressure, int offset) noexcept
{
    post({statusByte(0xA0, channel), dataByte(key), dataByte(pressure)}, offset);
}

void Synthesizer::controller(int channel, int number, int value, int offset) noexcept
{
    post({statusByte(0xB0, channel), dataByte(number), dataByte(value)}, offset);
}

void Synthesizer::program(int channel, int number, int offset) noexcept
{
    post({statusByte(0xC0, channel), dataByte(number), 0}, offset);
}

void Synthesizer::channelPressure(int channel, int pressure, int offset) noexcept
{
    post({statusByte(0xD0, channel), dataByte(pressure), 0}, offset);
}

void Synthesizer::pitchBend(int channel, int value, int offset) noexcept
{
    post({statusByte(0xE0, channel), dataByte(value), dataByte(value >> 7)}, offset);
}

void Synthesizer::message(std::uint8_t status, std::uint8_t data1, std::uint8_t data2, int offset) noexcept
{
    if (status >= 0x80 && status < 0xF0) {
        post({status, dataByte(data1), dataByte(data2)}, offset);
    }
}

void Synthesizer::systemExclusive(std::span<const std::uint8_t> bytes, int offset) noexcept
{
    if (bytes.size() < 3 || bytes.front() != 0xF0 || bytes.back() != 0xF7) {
        return;
    }
    const auto body = bytes.subspan(1, bytes.size() - 2);
    state->queue.addExclusive(std::max(offset, 0), body);
}

void Synthesizer::post(std::array<std::uint8_t, 3> bytes, int offset) noexcept
{
    state->queue.add(std::max(offset, 0), bytes);
}

void Synthesizer::reset() noexcept
{
    const RenderingMark mark;
    state->queue.clear();
    state->endSounds();
    fluid_synth_system_reset(state->synth.get());
}

void Synthesizer::silence() noexcept
{
    const RenderingMark mark;
    state->queue.clear();
    state->endSounds();
}

bool Synthesizer::preload(int channel, int bankMSB, int /*bankLSB*/, int program) noexcept
{
    const bool isDrums = channel == drumChannel;
    const int first = isDrums ? DLSSoundFont::drumBank : bankMSB;
    const int fallbackBank = isDrums ? DLSSoundFont::drumBank : 0;
    const std::pair<int, int> choices[] = {{first, program}, {fallbackBank, program}, {fallbackBank, 0}};
    for (const auto& [chosenBank, chosenProgram] : choices) {
        if (state->preset(chosenBank, chosenProgram) != nullptr) {
            return fluid_synth_pin_preset(state->synth.get(), state->font, chosenBank, chosenProgram) ==
                   FLUID_OK;
        }
    }
    return false;
}

int Synthesizer::activeVoices() const noexcept
{
    return fluid_synth_get_active_voice_count(state->synth.get());
}

} // namespace volvelle
