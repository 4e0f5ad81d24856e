#include "services/synthesizer/Synthesizer.h"

#include "base/Text.h"
#include "services/synthesizer/DLSSoundFont.h"
#include "services/synthesizer/FluidLog.h"
#include "services/synthesizer/SynthesizerBank.h"
#include "services/synthesizer/SynthesizerState.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace volvelle {

namespace {

std::uint8_t dataByte(int value)
{
    return static_cast<std::uint8_t>(value & 0x7F);
}

} // namespace

Synthesizer::Synthesizer(std::shared_ptr<const BankFile> bank, std::unique_ptr<SynthesizerState> state)
    : bank(std::move(bank)), state(std::move(state))
{
}

Synthesizer::~Synthesizer() = default;

Result<std::unique_ptr<Synthesizer>> Synthesizer::make(const std::filesystem::path& path,
                                                       const SynthesizerOptions& options)
{
    const auto file = BankFile::open(path);
    if (!file) {
        return failure(file.error());
    }
    return make(*file, options);
}

Result<std::unique_ptr<Synthesizer>> Synthesizer::make(const std::shared_ptr<const BankFile>& bank,
                                                       const SynthesizerOptions& options)
{
    routeFluidLog();
    SynthesizerBank content;
    if (Result<> opened = content.open(*bank); !opened) {
        return failure(opened.error());
    }
    auto state = std::make_unique<SynthesizerState>();
    state->readsOnDemand = bank->isLarge();
    state->rests = options.rests;
    state->silentAfter = static_cast<int>(options.sampleRate);
    state->settings = makeSettings(options, bank->isLarge());
    state->synth.reset(state->settings ? new_fluid_synth(state->settings.get()) : nullptr);
    if (!state->synth) {
        return failure("The synthesizer could not be made.");
    }
    if (content.sounds && !DLSSoundFont::offer(state->synth.get(), std::move(*content.sounds))) {
        return failure("The synthesizer could not be made.");
    }
    state->font = fluid_synth_sfload(state->synth.get(), bank->readable.c_str(), 1);
    if (state->font == FLUID_FAILED) {
        return failure(concat("The sound bank \"", bank->path.string(), "\" cannot be loaded."));
    }
    std::unique_ptr<Synthesizer> made(new Synthesizer(bank, std::move(state)));
    if (bank->isLarge()) {
        made->preload({});
        made->preload({drumChannel, 0, 0, 0});
    }
    made->state->freshen();
    return made;
}

void Synthesizer::render(float* left, float* right, int frames) noexcept
{
    const RenderingMark mark;
    int done = 0;
    while (done < frames) {
        const int next = std::min(state->performUpTo(done), frames);
        state->write(left + done, right + done, next - done);
        done = next;
    }
    state->line.advance(std::max(frames, 0));
}

void Synthesizer::noteOn(int channel, int key, int velocity, int offset) noexcept
{
    post({statusOf(STATUS_NOTEON, channel), dataByte(key), dataByte(velocity)}, offset);
}

void Synthesizer::noteOff(int channel, int key, int offset) noexcept
{
    post({statusOf(STATUS_NOTEOFF, channel), dataByte(key), 0}, offset);
}

void Synthesizer::keyPressure(int channel, int key, int pressure, int offset) noexcept
{
    post({statusOf(STATUS_PPRESSURE, channel), dataByte(key), dataByte(pressure)}, offset);
}

void Synthesizer::controller(int channel, int number, int value, int offset) noexcept
{
    post({statusOf(STATUS_CONTROLLER, channel), dataByte(number), dataByte(value)}, offset);
}

void Synthesizer::program(int channel, int number, int offset) noexcept
{
    post({statusOf(STATUS_PROGRAM, channel), dataByte(number), 0}, offset);
}

void Synthesizer::channelPressure(int channel, int pressure, int offset) noexcept
{
    post({statusOf(STATUS_CPRESSURE, channel), dataByte(pressure), 0}, offset);
}

void Synthesizer::pitchBend(int channel, int value, int offset) noexcept
{
    post({statusOf(STATUS_PITCHBEND, channel), dataByte(value), dataByte(value >> 7)}, offset);
}

void Synthesizer::message(std::uint8_t status, std::uint8_t data1, std::uint8_t data2, int offset) noexcept
{
    if (isChannelStatus(status)) {
        post({status, dataByte(data1), dataByte(data2)}, offset);
    }
}

void Synthesizer::systemExclusive(std::span<const std::uint8_t> bytes, int offset) noexcept
{
    if (bytes.size() >= 3 && bytes.front() == STATUS_SYSEX && bytes.back() == STATUS_EOX) {
        state->line.insert({std::max(offset, 0), 0, {}, static_cast<int>(bytes.size()), bytes.data()});
    }
}

void Synthesizer::post(const ShortMessage& message, int offset) noexcept
{
    state->line.insert({std::max(offset, 0), 0, message, static_cast<int>(message.size()), nullptr});
}

void Synthesizer::reset() noexcept
{
    const RenderingMark mark;
    state->line.clear();
    state->endSounds();
    fluid_synth_system_reset(state->synth.get());
    state->freshen();
}

void Synthesizer::forgetSettings() noexcept
{
    const RenderingMark mark;
    state->forgetSettings();
}

bool Synthesizer::preload(const SoundChoice& choice) noexcept
{
    const std::optional<BankSound> sound = state->soundFor(choice);
    return sound && state->pin(*sound);
}

bool Synthesizer::takeMissing(SoundChoice& choice) noexcept
{
    if (state->missingChannels == 0) {
        return false;
    }
    const int channel = std::countr_zero(state->missingChannels);
    choice = state->missing[static_cast<std::size_t>(channel)];
    state->missingChannels = static_cast<std::uint16_t>(state->missingChannels & ~(1U << channel));
    return true;
}

int Synthesizer::activeVoices() const noexcept
{
    return fluid_synth_get_active_voice_count(state->synth.get());
}

} // namespace volvelle
