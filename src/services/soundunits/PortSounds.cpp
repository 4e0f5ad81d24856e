#include "services/soundunits/PortSounds.h"

#include <algorithm>
#include <numeric>

namespace volvelle {

namespace {

constexpr std::uint8_t noteOff = 0x80;
constexpr std::uint8_t noteOn = 0x90;
constexpr std::uint8_t controllerStatus = 0xB0;
constexpr std::uint8_t allSoundOff = 120;
constexpr std::uint8_t resetControllers = 121;
constexpr std::uint8_t allNotesOff = 123;
constexpr std::uint8_t mostOfOneKey = 255;

} // namespace

PortSounds::Step PortSounds::read(std::span<const std::uint8_t> message) noexcept
{
    if (message.size() != 3) {
        return {};
    }
    const std::size_t channel = message[0] & 0x0FU;
    const std::size_t key = message[1] & 0x7FU;
    switch (message[0] & 0xF0U) {
    case noteOff:
        return {Effect::end, channel, key};
    case noteOn:
        return {message[2] > 0 ? Effect::begin : Effect::end, channel, key};
    case controllerStatus:
        return readController(channel, message[1], message[2]);
    default:
        return {};
    }
}

PortSounds::Step PortSounds::readController(std::size_t channel, std::uint8_t controller,
                                            std::uint8_t value) noexcept
{
    if (controller == allSoundOff || controller == allNotesOff) {
        return {Effect::endNotes, channel, 0};
    }
    if (controller == resetControllers) {
        return {Effect::liftPedals, channel, 0};
    }
    const auto* const pedal = std::ranges::find(holdPedals, controller);
    if (pedal == holdPedals.end()) {
        return {};
    }
    const auto slot = noteCount + static_cast<std::size_t>(pedal - holdPedals.begin());
    return {value > 0 ? Effect::begin : Effect::end, channel, slot};
}

int PortSounds::change(std::span<const std::uint8_t> message) const noexcept
{
    const Step step = read(message);
    const Channel& channel = channels[step.channel];
    const std::uint8_t times = channel[step.slot];
    const auto firstPedal = channel.begin() + noteCount;
    switch (step.effect) {
    case Effect::begin:
        return times < (step.slot < noteCount ? mostOfOneKey : 1) ? 1 : 0;
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

void PortSounds::apply(std::span<const std::uint8_t> message) noexcept
{
    const int by = change(message);
    const Step step = read(message);
    Channel& channel = channels[step.channel];
    const auto firstPedal = channel.begin() + noteCount;
    if (step.effect == Effect::endNotes) {
        std::fill(channel.begin(), firstPedal, std::uint8_t{0});
    } else if (step.effect == Effect::liftPedals) {
        std::fill(firstPedal, channel.end(), std::uint8_t{0});
    } else {
        channel[step.slot] = static_cast<std::uint8_t>(channel[step.slot] + by);
    }
    owed += by;
}

void PortSounds::clear() noexcept
{
    channels = {};
    owed = 0;
}

std::array<std::uint8_t, 3> PortSounds::release(std::size_t channel, std::size_t slot) noexcept
{
    const auto low = static_cast<std::uint8_t>(channel);
    if (slot < noteCount) {
        return {static_cast<std::uint8_t>(noteOff | low), static_cast<std::uint8_t>(slot), 0};
    }
    return {static_cast<std::uint8_t>(controllerStatus | low), holdPedals[slot - noteCount], 0};
}

} // namespace volvelle
