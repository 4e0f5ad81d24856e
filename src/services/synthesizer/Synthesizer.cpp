#include "services/synthesizer/Synthesizer.h"

#include "base/Text.h"
#include "services/synthesizer/DLSSoundFont.h"
#include "services/synthesizer/FluidLog.h"
#include "services/synthesizer/PinnedSounds.h"
#include "services/synthesizer/SynthesizerBank.h"
#include "services/synthesizer/SynthesizerQueue.h"
#include "wire/ChannelState.h"
#include "wire/SystemExclusive.h"

#include <algorithm>
#include <bit>
#include <bitset>
#include <limits>
#include <optional>
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

constexpr int firstMode = 124;
constexpr int tuningPrograms = 128;      // of a bank; there are as many banks
constexpr int soundFontParameters = 120; // high byte of the numbers of parameters that SoundFonts know

// What may be set from outside without reaching beyond a sample or into the order of sounds.
bool isSafe(int generator)
{
    constexpr std::array<std::pair<int, int>, 7> ranges{
        {{5, 11}, {13, 13}, {15, 17}, {21, 40}, {48, 48}, {51, 52}, {56, 56}}};
    return std::ranges::any_of(ranges, [generator](const auto& range) {
        return generator >= range.first && generator <= range.second;
    });
}

} // namespace

// The library behind takes so much of what its voices are told between two of its own blocks, of which a
// note-on and anything else take these shares.
constexpr int lineLength = 16384;
constexpr int noteOnShare = lineLength / Synthesizer::notesAtOnce;
constexpr int keyShare = 16;      // a message for one key
constexpr int voiceShare = 2;     // a message for a channel, by voice that sounds
constexpr int freshMessages = 40; // for a channel that is reset

struct Synthesizer::State {
    FluidPointer<fluid_settings_t> settings;
    FluidPointer<fluid_synth_t> synth; // dies before its settings
    int font = 0;
    bool readsOnDemand = false;
    std::bitset<std::size_t{tuningPrograms} * tuningPrograms>
        tuned; // tunings that were changed, bank by bank

    // Of a parameter that is not registered; without one `isFree` is false.
    struct Selection {
        bool isFree = false;
        int high = 127;
        int low = 127;
    };

    std::array<Selection, channelCount> selections;
    PinnedSounds pinned;
    std::array<SoundChoice, channelCount> missing;
    std::uint16_t missingChannels = 0;
    SynthesizerQueue queue;

    void perform(const SynthesizerEvent& event);
    void performExclusive(std::span<const std::uint8_t> body);
    void performController(int channel, int number, int value);
    void performParameter(int channel, int value);
    void control(int channel, int number, int value);
    void performProgram(int channel, int program);
    void performMessage(const ShortMessage& message);
    int share(const SynthesizerEvent& event) const;
    int performUpTo(int offset);
    void endSounds();
    void resetControllers(int channel);
    void forgetSettings();
    void forgetTunings();
    void freshen();
    std::optional<BankSound> soundFor(const SoundChoice& choice) const;
    bool pin(const BankSound& sound);
};

void Synthesizer::State::perform(const SynthesizerEvent& event)
{
    if (event.isExclusive()) {
        performExclusive(queue.exclusive(event));
    } else {
        performMessage(event.bytes);
    }
}

void Synthesizer::State::performExclusive(std::span<const std::uint8_t> message)
{
    const ExclusiveEffect effect = effectOf(message);
    if (effect == ExclusiveEffect::reset) {
        fluid_synth_all_sounds_off(synth.get(), -1);
        return freshen();
    }
    if (const std::optional<TuningSlot> slot = changedTuning(message)) {
        tuned.set(static_cast<std::size_t>(slot->bank) * tuningPrograms +
                  static_cast<std::size_t>(slot->program));
    }
    const auto body = message.subspan(1, message.size() - 2);
    fluid_synth_sysex(synth.get(), reinterpret_cast<const char*>(body.data()), static_cast<int>(body.size()),
                      nullptr, nullptr, nullptr, 0);
}

void Synthesizer::State::performMessage(const ShortMessage& message)
{
    fluid_synth_t* y = synth.get();
    const auto [status, data1, data2] = message;
    const int channel = channelOf(message);
    switch (kindOf(message)) {
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
        performController(channel, data1, data2);
        break;
    case 0xC0:
        performProgram(channel, data1);
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

void Synthesizer::State::performController(int channel, int number, int value)
{
    Selection& selection = selections[static_cast<std::size_t>(channel)];
    switch (number) {
    case 6:
        return selection.isFree ? performParameter(channel, value) : control(channel, number, value);
    case 98:
        selection = {true, selection.high, value};
        return;
    case 99:
        selection = {true, value, selection.low};
        return;
    case 100:
    case 101:
        selection.isFree = false;
        return control(channel, number, value);
    case 121:
        selection = {};
        return resetControllers(channel);
    default:
        return number < firstMode ? control(channel, number, value)
                                  : void(fluid_synth_all_notes_off(synth.get(), channel));
    }
}

void Synthesizer::State::control(int channel, int number, int value)
{
    fluid_synth_cc(synth.get(), channel, number, value);
}

// The library counts the numbers of parameters together from what came before, and takes any of them.
void Synthesizer::State::performParameter(int channel, int value)
{
    const Selection& selection = selections[static_cast<std::size_t>(channel)];
    if (selection.high != soundFontParameters || !isSafe(selection.low)) {
        return;
    }
    control(channel, 99, soundFontParameters);
    control(channel, 98, selection.low);
    control(channel, 6, value);
    control(channel, 101, 127);
    control(channel, 100, 127);
}

// The library resets what parameters have set, too.
void Synthesizer::State::resetControllers(int channel)
{
    fluid_synth_t* y = synth.get();
    std::array<float, GEN_LAST> set{};
    for (int i = 0; i < GEN_LAST; ++i) {
        set[static_cast<std::size_t>(i)] = fluid_synth_get_gen(y, channel, i);
    }
    fluid_synth_cc(y, channel, 121, 0);
    for (int i = 0; i < GEN_LAST; ++i) {
        if (set[static_cast<std::size_t>(i)] != 0.0F) {
            fluid_synth_set_gen(y, channel, i, set[static_cast<std::size_t>(i)]);
        }
    }
}

void Synthesizer::State::performProgram(int channel, int program)
{
    if (readsOnDemand) {
        int selected = 0;
        int unused = 0;
        fluid_synth_get_program(synth.get(), channel, &unused, &selected, &unused);
        const SoundChoice choice{static_cast<std::uint8_t>(channel), static_cast<std::uint8_t>(selected), 0,
                                 static_cast<std::uint8_t>(program)};
        const std::optional<BankSound> sound = soundFor(choice);
        if (sound && !pinned.holds(*sound)) {
            missing[static_cast<std::size_t>(channel)] = choice;
            missingChannels = static_cast<std::uint16_t>(missingChannels | 1U << channel);
            return;
        }
    }
    fluid_synth_program_change(synth.get(), channel, program);
}

int Synthesizer::State::share(const SynthesizerEvent& event) const
{
    const int ofChannel = voiceShare * fluid_synth_get_active_voice_count(synth.get());
    if (event.isExclusive()) {
        const bool resets = effectOf(queue.exclusive(event)) == ExclusiveEffect::reset;
        return resets ? freshMessages * ofChannel : ofChannel;
    }
    const int kind = kindOf(event.bytes);
    return kind == 0x90 ? noteOnShare : kind < 0xB0 ? keyShare : ofChannel;
}

// Performs what is due at `offset`, and gives the next place to stop at: that of the next message, or a
// little further on where too much is due at once for what the library can take between two of its own
// blocks.
int Synthesizer::State::performUpTo(int offset)
{
    int taken = 0;
    while (!queue.isEmpty() && queue.front().offset <= offset) {
        const int needed = share(queue.front());
        if (taken != 0 && taken + needed > lineLength) {
            return offset + ownBlock;
        }
        taken += needed;
        perform(queue.front());
        queue.removeFront();
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

void Synthesizer::State::forgetSettings()
{
    for (int channel = 0; channel < channelCount; ++channel) {
        for (int i = 0; i < GEN_LAST; ++i) {
            if (fluid_synth_get_gen(synth.get(), channel, i) != 0.0F) {
                fluid_synth_set_gen(synth.get(), channel, i, 0.0F);
            }
        }
        fluid_synth_deactivate_tuning(synth.get(), channel, 0);
    }
    if (tuned.any()) {
        forgetTunings();
    }
}

// The library's own list of its tunings would take a key of the process from each synthesizer, for good.
void Synthesizer::State::forgetTunings()
{
    for (std::size_t i = 0; i < tuned.size(); ++i) {
        if (tuned.test(i)) {
            const int place = static_cast<int>(i);
            fluid_synth_activate_key_tuning(synth.get(), place / tuningPrograms, place % tuningPrograms, "",
                                            nullptr, 0);
        }
    }
    tuned.reset();
}

// Brings all channels to where they are at first.
void Synthesizer::State::freshen()
{
    forgetSettings();
    for (int channel = 0; channel < channelCount; ++channel) {
        ChannelMessages messages;
        ChannelState().tell(channel, messages);
        for (const ShortMessage& message : messages.all()) {
            performMessage(message);
        }
    }
}

std::optional<BankSound> Synthesizer::State::soundFor(const SoundChoice& choice) const
{
    fluid_sfont_t* loaded = fluid_synth_get_sfont_by_id(synth.get(), font);
    const bool isDrums = choice.channel == drumChannel;
    const int first = isDrums ? DLSSoundFont::drumBank : choice.bankMSB;
    const int fallbackBank = isDrums ? DLSSoundFont::drumBank : 0;
    const BankSound candidates[] = {
        {first, choice.program}, {fallbackBank, choice.program}, {fallbackBank, 0}};
    for (const BankSound& sound : candidates) {
        if (loaded != nullptr && fluid_sfont_get_preset(loaded, sound.bank, sound.program) != nullptr) {
            return sound;
        }
    }
    return std::nullopt;
}

bool Synthesizer::State::pin(const BankSound& sound)
{
    if (fluid_synth_pin_preset(synth.get(), font, sound.bank, sound.program) != FLUID_OK) {
        return false;
    }
    pinned.add(sound);
    return true;
}

Synthesizer::Synthesizer(std::shared_ptr<const BankFile> file, std::unique_ptr<State> made)
    : bank(std::move(file)), state(std::move(made))
{
}

Synthesizer::~Synthesizer() = default;

std::unique_ptr<Synthesizer> Synthesizer::make(const std::filesystem::path& path,
                                               const SynthesizerOptions& options, std::string& error)
{
    const std::shared_ptr<const BankFile> file = BankFile::open(path, error);
    return file == nullptr ? nullptr : make(file, options, error);
}

std::unique_ptr<Synthesizer> Synthesizer::make(const std::shared_ptr<const BankFile>& bank,
                                               const SynthesizerOptions& options, std::string& error)
{
    routeFluidLog();
    SynthesizerBank content;
    if (!content.open(*bank, error)) {
        return nullptr;
    }
    auto state = std::make_unique<State>();
    state->readsOnDemand = bank->isLarge();
    state->settings = makeSettings(options, bank->isLarge());
    state->synth.reset(state->settings ? new_fluid_synth(state->settings.get()) : nullptr);
    if (!state->synth) {
        error = "The synthesizer could not be made.";
        return nullptr;
    }
    if (content.sounds && !DLSSoundFont::offer(state->synth.get(), std::move(*content.sounds))) {
        error = "The synthesizer could not be made.";
        return nullptr;
    }
    state->font = fluid_synth_sfload(state->synth.get(), bank->readable.c_str(), 1);
    if (state->font == FLUID_FAILED) {
        error = concat("The sound bank \"", bank->path.string(), "\" cannot be loaded.");
        return nullptr;
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
    if (bytes.size() >= 3 && bytes.front() == 0xF0 && bytes.back() == 0xF7) {
        state->queue.addExclusive(std::max(offset, 0), bytes);
    }
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
