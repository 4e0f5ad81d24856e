#include "services/audiograph/ChannelState.h"

namespace volvelle {

namespace {

bool isParameter(int number)
{
    return number == 6 || number == 38 || (number >= 96 && number <= 101);
}

bool isBank(int number)
{
    return number == 0 || number == 32;
}

// What "reset all controllers" leaves as it is, and what a unit that was just made has there; -1 for what it
// resets.
int usualValue(int number)
{
    if (number == 7) {
        return 100;
    }
    if (number == 8 || number == 10 || (number >= 70 && number <= 79)) {
        return 64;
    }
    return number >= 91 && number <= 95 ? 0 : -1;
}

} // namespace

void ChannelState::apply(const std::array<std::uint8_t, 3>& bytes) noexcept
{
    switch (bytes[0] & 0xF0) {
    case 0xB0:
        controller(bytes[1], bytes[2]);
        wasRegisteredSelected = selectsRegistered;
        break;
    case 0xC0:
        program = bytes[1];
        break;
    case 0xD0:
        pressure = bytes[1];
        break;
    default:
        bend = static_cast<std::int16_t>(bytes[2] << 7 | bytes[1]);
    }
}

void ChannelState::touch(const std::array<std::uint8_t, 3>& bytes) noexcept
{
    const auto mention = [](std::int16_t& value) { value = value == unset ? touched : value; };
    switch (bytes[0] & 0xF0) {
    case 0xB0:
        if (isParameter(bytes[1])) {
            select(bytes[1], bytes[2]);
        }
        controller(bytes[1], touched);
        break;
    case 0xC0:
        mention(program);
        break;
    case 0xD0:
        mention(pressure);
        break;
    default:
        mention(bend);
    }
}

void ChannelState::touchAll(const ChannelState& all) noexcept
{
    const auto mention = [](std::int16_t& value, std::int16_t other) {
        value = value == unset && other != unset ? touched : value;
    };
    for (std::size_t i = 0; i < controllers.size(); ++i) {
        mention(controllers[i], all.controllers[i]);
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        mention(parameters[i].high, all.parameters[i].high);
        mention(parameters[i].low, all.parameters[i].low);
    }
    mention(program, all.program);
    mention(bend, all.bend);
    mention(pressure, all.pressure);
}

void ChannelState::controller(int number, std::int16_t value) noexcept
{
    const auto store = [value](std::int16_t& to) { to = value == touched && to != unset ? to : value; };
    if (value != touched) {
        select(number, value);
    }
    const bool isData = number == 6 || number == 38;
    const bool isKnown =
        selectsRegistered && selectedHigh == 0 && selectedLow < static_cast<int>(parameters.size());
    if (isData && isKnown) {
        Parameter& parameter = parameters[static_cast<std::size_t>(selectedLow)];
        store(number == 6 ? parameter.high : parameter.low);
    }
    store(controllers[static_cast<std::size_t>(number)]);
}

void ChannelState::select(int number, int value) noexcept
{
    if (number == 101) {
        selectedHigh = value;
    }
    if (number == 100) {
        selectedLow = value;
    }
    if (number >= 98 && number <= 101) {
        selectsRegistered = number >= 100;
    }
}

void ChannelState::tell(int channel, ChannelMessages& messages) const noexcept
{
    messages.add(0xB0 | channel, 121, 0);
    tellProgram(channel, messages);
    tellControllers(channel, messages);
    tellParameters(channel, messages);
    tellSelection(channel, messages);
    if (bend != unset) {
        const int value = bend == touched ? 0x2000 : bend;
        messages.add(0xE0 | channel, value & 0x7F, value >> 7);
    }
    if (pressure != unset) {
        messages.add(0xD0 | channel, pressure == touched ? 0 : pressure, 0);
    }
}

void ChannelState::tellProgram(int channel, ChannelMessages& messages) const noexcept
{
    for (const int number : {0, 32}) {
        const int value = controllers[static_cast<std::size_t>(number)];
        if (value != unset) {
            messages.add(0xB0 | channel, number, value == touched ? 0 : value);
        }
    }
    const bool hasBank = controllers[0] != unset || controllers[32] != unset;
    if (program != unset || hasBank) {
        messages.add(0xC0 | channel, program < 0 ? 0 : program, 0);
    }
}

void ChannelState::tellControllers(int channel, ChannelMessages& messages) const noexcept
{
    for (int number = 1; number < 120; ++number) {
        const int stored = controllers[static_cast<std::size_t>(number)];
        const int value = stored == touched ? usualValue(number) : stored;
        if (value >= 0 && !isBank(number) && !isParameter(number)) {
            messages.add(0xB0 | channel, number, value);
        }
    }
}

void ChannelState::tellParameters(int channel, ChannelMessages& messages) const noexcept
{
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const Parameter& parameter = parameters[i];
        if (parameter.high == unset && parameter.low == unset) {
            continue;
        }
        messages.add(0xB0 | channel, 101, 0);
        messages.add(0xB0 | channel, 100, static_cast<int>(i));
        if (parameter.high != unset) {
            messages.add(0xB0 | channel, 6, parameter.high == touched ? usualParameters[i] : parameter.high);
        }
        if (parameter.low != unset) {
            messages.add(0xB0 | channel, 38, parameter.low == touched ? 0 : parameter.low);
        }
    }
}

void ChannelState::tellSelection(int channel, ChannelMessages& messages) const noexcept
{
    const std::size_t high = wasRegisteredSelected ? 101 : 99;
    for (const std::size_t number : {high, high - 1}) {
        if (controllers[number] >= 0) {
            messages.add(0xB0 | channel, static_cast<int>(number), controllers[number]);
        }
    }
}

} // namespace volvelle
