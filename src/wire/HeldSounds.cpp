#include "wire/HeldSounds.h"

#include <algorithm>
#include <numeric>

namespace volvelle {

namespace {

constexpr std::uint8_t pedalDown = 64;

} // namespace

HeldSounds::Step HeldSounds::read(std::span<const std::uint8_t> message) noexcept
{
    if (message.size() != 3) {
        return {};
    }
    const std::size_t channel = static_cast<std::size_t>(channelOf(message[0]));
    const std::size_t key = message[1] & 0x7FU;
    switch (kindOf(message[0])) {
    case STATUS_NOTEOFF:
        return {Effect::end, channel, key};
    case STATUS_NOTEON:
        return {message[2] > 0 ? Effect::begin : Effect::end, channel, key};
    case STATUS_CONTROLLER:
        return readController(channel, message[1], message[2]);
    default:
        return {};
    }
}

HeldSounds::Step HeldSounds::readController(std::size_t channel, std::uint8_t controller,
                                            std::uint8_t value) noexcept
{
    if (controller == CONTROLLER_ALL_SOUND_OFF || controller == CONTROLLER_NOTES_OFF) {
        return {Effect::endNotes, channel, 0};
    }
    if (controller == CONTROLLER_RESET_CONTROLLERS) {
        return {Effect::liftPedals, channel, 0};
    }
    const auto* const pedal = std::ranges::find(holdPedals, controller);
    if (pedal == holdPedals.end()) {
        return {};
    }
    const auto slot = noteCount + static_cast<std::size_t>(pedal - holdPedals.begin());
    return {value > 0 ? Effect::begin : Effect::end, channel, slot};
}

bool HeldSounds::ends(std::span<const std::uint8_t> message) noexcept
{
    const Step step = read(message);
    const bool isLift = step.effect == Effect::begin && step.slot >= noteCount && message[2] < pedalDown;
    return isLift || (step.effect != Effect::begin && step.effect != Effect::none);
}

int HeldSounds::change(std::span<const std::uint8_t> message) const noexcept
{
    const Step step = read(message);
    const Channel& channel = channels[step.channel];
    const int times = channel[step.slot];
    const auto firstPedal = channel.begin() + noteCount;
    switch (step.effect) {
    case Effect::begin:
        return times < (step.slot < noteCount ? most : 1) ? 1 : 0;
    case Effect::end:
        return times > 0 ? -1 : 0;
    case Effect::endNotes:
        return -std::accumulate(channel.begin(), firstPedal, 0);
    case Effect::liftPedals:
        return -std::accumulate(firstPedal, channel.end(), 0);
    default:
        return 0;
    }
}

void HeldSounds::apply(std::span<const std::uint8_t> message) noexcept
{
    const int by = change(message);
    const Step step = read(message);
    Channel& channel = channels[step.channel];
    const auto firstPedal = channel.begin() + noteCount;
    if (step.effect == Effect::endNotes) {
        std::fill(channel.begin(), firstPedal, 0);
    } else if (step.effect == Effect::liftPedals) {
        std::fill(firstPedal, channel.end(), 0);
    } else {
        channel[step.slot] += by;
    }
    owed += by;
}

void HeldSounds::clear() noexcept
{
    channels = {};
    owed = 0;
}

ShortMessage HeldSounds::release(std::size_t channel, std::size_t slot) noexcept
{
    const int number = static_cast<int>(channel);
    if (slot < noteCount) {
        return {statusOf(STATUS_NOTEOFF, number), static_cast<std::uint8_t>(slot), 0};
    }
    return {statusOf(STATUS_CONTROLLER, number), holdPedals[slot - noteCount], 0};
}

} // namespace volvelle
