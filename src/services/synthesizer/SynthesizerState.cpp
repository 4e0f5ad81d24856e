#include "services/synthesizer/SynthesizerState.h"

#include "services/synthesizer/Synthesizer.h"
#include "wire/ChannelState.h"
#include "wire/SystemExclusive.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace volvelle {

namespace {

constexpr int ownBlock = 64;             // frames that the library behind renders at once
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

// The library behind takes so much of what its voices are told between two of its own blocks, of which a
// note-on and anything else take these shares.
constexpr int lineLength = 16384;
constexpr int noteOnShare = lineLength / Synthesizer::notesAtOnce;
constexpr int keyShare = 16;      // a message for one key
constexpr int voiceShare = 2;     // a message for a channel, by voice that sounds
constexpr int freshMessages = 40; // for a channel that is reset
constexpr int resetShare = lineLength / 4;

bool isReset(const TimedMessage& message)
{
    return message.isLong() && effectOf(message.bytes()) == ExclusiveEffect::reset;
}

} // namespace

void SynthesizerState::perform(const TimedMessage& message)
{
    if (message.isLong()) {
        performExclusive(message.bytes());
    } else {
        performMessage(message.shortBytes);
    }
}

void SynthesizerState::performExclusive(std::span<const std::uint8_t> message)
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

void SynthesizerState::performMessage(const ShortMessage& message)
{
    fluid_synth_t* y = synth.get();
    const auto [status, data1, data2] = message;
    const int channel = channelOf(message);
    switch (kindOf(message)) {
    case STATUS_NOTEOFF:
        fluid_synth_noteoff(y, channel, data1);
        break;
    case STATUS_NOTEON:
        fluid_synth_noteon(y, channel, data1, data2);
        break;
    case STATUS_PPRESSURE:
        fluid_synth_key_pressure(y, channel, data1, data2);
        break;
    case STATUS_CONTROLLER:
        performController(channel, data1, data2);
        break;
    case STATUS_PROGRAM:
        performProgram(channel, data1);
        break;
    case STATUS_CPRESSURE:
        fluid_synth_channel_pressure(y, channel, data1);
        break;
    case STATUS_PITCHBEND:
        fluid_synth_pitch_bend(y, channel, data1 | (data2 << 7));
        break;
    default:
        break;
    }
}

void SynthesizerState::performController(int channel, int number, int value)
{
    Selection& selection = selections[static_cast<std::size_t>(channel)];
    switch (number) {
    case CONTROLLER_DATA_MSB:
        return selection.isFree ? performParameter(channel, value) : control(channel, number, value);
    case CONTROLLER_NRPN_LSB:
        selection = {true, selection.high, value};
        return;
    case CONTROLLER_NRPN_MSB:
        selection = {true, value, selection.low};
        return;
    case CONTROLLER_RPN_LSB:
    case CONTROLLER_RPN_MSB:
        selection.isFree = false;
        return control(channel, number, value);
    case CONTROLLER_RESET_CONTROLLERS:
        selection = {};
        return resetControllers(channel);
    default:
        return number < CONTROLLER_OMNI_OFF ? control(channel, number, value)
                                            : void(fluid_synth_all_notes_off(synth.get(), channel));
    }
}

void SynthesizerState::control(int channel, int number, int value)
{
    fluid_synth_cc(synth.get(), channel, number, value);
}

// The library counts the numbers of parameters together from what came before, and takes any of them.
void SynthesizerState::performParameter(int channel, int value)
{
    const Selection& selection = selections[static_cast<std::size_t>(channel)];
    if (selection.high != soundFontParameters || !isSafe(selection.low)) {
        return;
    }
    control(channel, CONTROLLER_NRPN_MSB, soundFontParameters);
    control(channel, CONTROLLER_NRPN_LSB, selection.low);
    control(channel, CONTROLLER_DATA_MSB, value);
    control(channel, CONTROLLER_RPN_MSB, 127);
    control(channel, CONTROLLER_RPN_LSB, 127);
}

// The library resets what parameters have set, too.
void SynthesizerState::resetControllers(int channel)
{
    fluid_synth_t* y = synth.get();
    std::array<float, GEN_LAST> set{};
    for (int i = 0; i < GEN_LAST; ++i) {
        set[static_cast<std::size_t>(i)] = fluid_synth_get_gen(y, channel, i);
    }
    fluid_synth_cc(y, channel, CONTROLLER_RESET_CONTROLLERS, 0);
    for (int i = 0; i < GEN_LAST; ++i) {
        if (set[static_cast<std::size_t>(i)] != 0.0F) {
            fluid_synth_set_gen(y, channel, i, set[static_cast<std::size_t>(i)]);
        }
    }
}

void SynthesizerState::performProgram(int channel, int program)
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

int SynthesizerState::share(const TimedMessage& message, bool resets) const
{
    const int ofChannel = voiceShare * fluid_synth_get_active_voice_count(synth.get());
    if (message.isLong()) {
        return resets ? std::max(resetShare, freshMessages * ofChannel) : ofChannel;
    }
    const int kind = kindOf(message.shortBytes);
    return kind == STATUS_NOTEON ? noteOnShare : kind < STATUS_CONTROLLER ? keyShare : ofChannel;
}

// A reset that follows another changes nothing.
int SynthesizerState::performUpTo(int offset)
{
    int taken = 0;
    bool isFresh = false;
    while (!line.isEmpty() && line.front().offset <= offset) {
        const bool resets = isReset(line.front());
        if (isFresh && resets) {
            line.removeFront();
            continue;
        }
        const int needed = share(line.front(), resets);
        if (taken != 0 && taken + needed > lineLength) {
            return offset + ownBlock;
        }
        taken += needed;
        goOn();
        isFresh = resets;
        perform(line.front());
        line.removeFront();
    }
    return line.isEmpty() ? std::numeric_limits<int>::max() : line.front().offset;
}

void SynthesizerState::write(float* left, float* right, int frames)
{
    std::fill_n(left, frames, 0.0F);
    std::fill_n(right, frames, 0.0F);
    if (rests && quietFrames == silentAfter) {
        skippedFrames = (skippedFrames + frames) % ownBlock;
        return;
    }
    fluid_synth_write_float(synth.get(), frames, left, 0, 1, right, 0, 1);
    if (rests) {
        countQuiet(left, right, frames);
    }
}

// Messages act at the library's own blocks, which begin where they would without the silence.
void SynthesizerState::goOn()
{
    quietFrames = 0;
    std::array<float, std::size_t{2} * ownBlock> unheard{};
    if (const int frames = std::exchange(skippedFrames, 0); frames != 0) {
        fluid_synth_write_float(synth.get(), frames, unheard.data(), 0, 1, unheard.data(), ownBlock, 1);
    }
}

void SynthesizerState::countQuiet(const float* left, const float* right, int frames)
{
    constexpr float silence = 1e-6F;
    const auto isQuiet = [](float sample) { return std::abs(sample) < silence; };
    const bool areQuiet = fluid_synth_get_active_voice_count(synth.get()) == 0 &&
                          std::all_of(left, left + frames, isQuiet) &&
                          std::all_of(right, right + frames, isQuiet);
    quietFrames = areQuiet ? std::min(quietFrames + frames, silentAfter) : 0;
}

// A voice that was told to end has ended once a block was rendered.
void SynthesizerState::endSounds()
{
    std::array<float, std::size_t{2} * ownBlock> unheard{};
    fluid_synth_all_sounds_off(synth.get(), -1);
    fluid_synth_write_float(synth.get(), ownBlock, unheard.data(), 0, 1, unheard.data(), ownBlock, 1);
}

void SynthesizerState::forgetSettings()
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
void SynthesizerState::forgetTunings()
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

void SynthesizerState::freshen()
{
    forgetSettings();
    for (int channel = 0; channel < channelCount; ++channel) {
        ChannelState().forEachMessage(channel,
                                      [this](const ShortMessage& message) { performMessage(message); });
    }
}

std::optional<BankSound> SynthesizerState::soundFor(const SoundChoice& choice) const
{
    fluid_sfont_t* loaded = fluid_synth_get_sfont_by_id(synth.get(), font);
    const bool isDrums = choice.channel == Synthesizer::drumChannel;
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

bool SynthesizerState::pin(const BankSound& sound)
{
    if (fluid_synth_pin_preset(synth.get(), font, sound.bank, sound.program) != FLUID_OK) {
        return false;
    }
    pinned.add(sound);
    return true;
}

} // namespace volvelle
