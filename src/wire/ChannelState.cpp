#include "wire/ChannelState.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr std::uint16_t tuningProgram = 3;
constexpr std::uint16_t tuningBankSelect = 4;

bool isBank(int number)
{
    return number == CONTROLLER_BANKSELECT_MSB || number == CONTROLLER_BANKSELECT_LSB;
}

bool isParameter(int number)
{
    return number == CONTROLLER_DATA_MSB || number == CONTROLLER_DATA_LSB ||
           (number >= 96 && number <= CONTROLLER_RPN_MSB);
}

bool isSelection(int number)
{
    return number >= CONTROLLER_NRPN_LSB && number <= CONTROLLER_RPN_MSB;
}

// What controller 121 leaves as it is.
bool survivesReset(int number)
{
    constexpr std::array<int, 6> placed{7, 8, 10, 39, 40, 42}; // volume, balance and pan
    return isBank(number) || std::ranges::find(placed, number) != placed.end() ||
           (number >= 70 && number <= 79) || (number >= 91 && number <= 95) ||
           number >= CONTROLLER_ALL_SOUND_OFF;
}

std::int8_t afterReset(int number)
{
    const bool isExpression = number == 11 || number == 43;
    return isExpression || isSelection(number) ? 127 : number == CONTROLLER_PORTAMENTO_KEY ? -1 : 0;
}

// Tells a device its parameters, and keeps track of what controller 38 stands at there.
class ParameterTelling {
public:
    ParameterTelling(int channel, ChannelMessages& told)
        : control(statusOf(STATUS_CONTROLLER, channel)), messages(told)
    {
    }

    void select(std::uint16_t number)
    {
        const bool isFree = (number & ChannelParameter::notRegistered) != 0;
        messages.add(control, isFree ? CONTROLLER_NRPN_MSB : CONTROLLER_RPN_MSB, number >> 7 & 0x7F);
        messages.add(control, isFree ? CONTROLLER_NRPN_LSB : CONTROLLER_RPN_LSB, number & 0x7F);
    }

    // Without a change of any parameter.
    void bringLow(int value)
    {
        if (value != low) {
            select(ChannelParameter::none);
            data(CONTROLLER_DATA_LSB, value);
        }
    }

    void tell(const ChannelParameter& parameter)
    {
        const bool isLowFirst = parameter.low == parameter.lowBefore;
        if (!isLowFirst && parameter.high != ChannelParameter::unset) {
            bringLow(parameter.lowBefore);
        }
        select(parameter.number);
        if (isLowFirst) {
            data(CONTROLLER_DATA_LSB, parameter.low);
        }
        data(CONTROLLER_DATA_MSB, parameter.high);
        if (!isLowFirst) {
            data(CONTROLLER_DATA_LSB, parameter.low);
        }
    }

private:
    void data(int number, int value)
    {
        if (value != ChannelParameter::unset) {
            messages.add(control, number, value);
            low = number == CONTROLLER_DATA_LSB ? value : low;
        }
    }

    const int control;
    ChannelMessages& messages;
    int low = 0;
};

} // namespace

std::array<std::int8_t, 128> ChannelState::usualControllers() noexcept
{
    std::array<std::int8_t, 128> result{};
    for (int number = 0; number < CONTROLLER_ALL_SOUND_OFF; ++number) {
        result[static_cast<std::size_t>(number)] = survivesReset(number) ? 0 : afterReset(number);
    }
    result[7] = 100;
    result[8] = 64;
    result[10] = 64;
    std::fill(result.begin() + 70, result.begin() + 80, std::int8_t{64});
    std::fill(result.begin() + CONTROLLER_ALL_SOUND_OFF, result.end(), unset);
    return result;
}

void ChannelState::apply(const ShortMessage& message) noexcept
{
    const auto first = static_cast<std::int8_t>(message[1] & 0x7F);
    const auto second = static_cast<std::int8_t>(message[2] & 0x7F);
    switch (kindOf(message)) {
    case STATUS_NOTEON:
        if (isNoteOn(message)) {
            controllers[CONTROLLER_PORTAMENTO_KEY] = unset;
        }
        break;
    case STATUS_PPRESSURE:
        keyPressures[message[1] & 0x7FU] = static_cast<std::uint8_t>(message[2] & 0x7FU);
        break;
    case STATUS_CONTROLLER:
        applyController(first, second);
        break;
    case STATUS_PROGRAM:
        program = first;
        programBankHigh = controllers[CONTROLLER_BANKSELECT_MSB];
        programBankLow = controllers[CONTROLLER_BANKSELECT_LSB];
        break;
    case STATUS_CPRESSURE:
        pressure = first;
        break;
    case STATUS_PITCHBEND:
        bend = static_cast<std::int16_t>(second << 7 | first);
        break;
    default:
        break;
    }
}

void ChannelState::applyController(int number, std::int8_t value) noexcept
{
    if (number == CONTROLLER_RESET_CONTROLLERS) {
        return resetControllers();
    }
    if (number == CONTROLLER_MONO || number == CONTROLLER_POLY) {
        mode = static_cast<std::int8_t>(number);
    }
    if (isSelection(number)) {
        selectsRegistered = number >= CONTROLLER_RPN_LSB;
    }
    if (number == CONTROLLER_DATA_MSB || number == CONTROLLER_DATA_LSB) {
        applyData(number, value);
    }
    if (number < CONTROLLER_ALL_SOUND_OFF || number >= CONTROLLER_MONO) {
        controllers[static_cast<std::size_t>(number)] = value;
    }
}

std::uint16_t ChannelState::selected() const noexcept
{
    const int high = selectsRegistered ? CONTROLLER_RPN_MSB : CONTROLLER_NRPN_MSB;
    const int number = controller(high) << 7 | controller(high - 1);
    const bool isNone = number == ChannelParameter::none;
    return static_cast<std::uint16_t>(isNone || selectsRegistered ? number
                                                                  : number | ChannelParameter::notRegistered);
}

void ChannelState::applyData(int number, std::int8_t value) noexcept
{
    const std::uint16_t chosen = selected();
    if (chosen == ChannelParameter::none) {
        return;
    }
    if (number == CONTROLLER_DATA_MSB && chosen == tuningProgram) {
        tuningBank = std::max<std::int8_t>(parameter(tuningBankSelect).high, 0);
    }
    ChannelParameter& changed = parameter(chosen);
    if (number == CONTROLLER_DATA_LSB) {
        changed.low = value;
        return;
    }
    changed.high = value;
    changed.lowBefore = controllers[CONTROLLER_DATA_LSB];
}

ChannelParameter& ChannelState::parameter(std::uint16_t number) noexcept
{
    const auto end = parameters.begin() + static_cast<std::ptrdiff_t>(parameterCount);
    const auto found = std::find_if(
        parameters.begin(), end, [number](const ChannelParameter& known) { return known.number == number; });
    if (found != end) {
        return *found;
    }
    if (parameterCount == parameters.size()) {
        const auto first = parameters.begin() + usualParameters;
        std::move(first + 1, parameters.end(), first);
        --parameterCount;
    }
    parameters[parameterCount] = {};
    parameters[parameterCount].number = number;
    return parameters[parameterCount++];
}

void ChannelState::endTuningProgram() noexcept
{
    parameter(tuningProgram).high = unset;
    parameter(tuningProgram).low = unset;
}

void ChannelState::resetControllers() noexcept
{
    for (int number = 0; number < CONTROLLER_ALL_SOUND_OFF; ++number) {
        if (!survivesReset(number)) {
            controllers[static_cast<std::size_t>(number)] = afterReset(number);
        }
    }
    keyPressures = {};
    bend = 0x2000;
    pressure = 0;
}

void ChannelState::tell(int channel, ChannelMessages& messages) const noexcept
{
    messages.add(statusOf(STATUS_CONTROLLER, channel), CONTROLLER_RESET_CONTROLLERS, 0);
    tellProgram(channel, messages);
    tellControllers(channel, messages);
    tellParameters(channel, messages);
    tellPressures(channel, messages);
}

void ChannelState::tellProgram(int channel, ChannelMessages& messages) const noexcept
{
    const int control = statusOf(STATUS_CONTROLLER, channel);
    messages.add(control, CONTROLLER_BANKSELECT_MSB, programBankHigh);
    messages.add(control, CONTROLLER_BANKSELECT_LSB, programBankLow);
    messages.add(statusOf(STATUS_PROGRAM, channel), program, 0);
    if (controllers[CONTROLLER_BANKSELECT_MSB] != programBankHigh) {
        messages.add(control, CONTROLLER_BANKSELECT_MSB, controllers[CONTROLLER_BANKSELECT_MSB]);
    }
    if (controllers[CONTROLLER_BANKSELECT_LSB] != programBankLow) {
        messages.add(control, CONTROLLER_BANKSELECT_LSB, controllers[CONTROLLER_BANKSELECT_LSB]);
    }
}

void ChannelState::tellControllers(int channel, ChannelMessages& messages) const noexcept
{
    for (int number = 1; number < CONTROLLER_ALL_SOUND_OFF; ++number) {
        const bool isSure = !survivesReset(number) && controller(number) == afterReset(number);
        if (!isSure && !isBank(number) && !isParameter(number)) {
            messages.add(statusOf(STATUS_CONTROLLER, channel), number, controller(number));
        }
    }
    if (mode != unset) {
        messages.add(statusOf(STATUS_CONTROLLER, channel), mode, controller(mode));
    }
}

void ChannelState::tellParameters(int channel, ChannelMessages& messages) const noexcept
{
    ParameterTelling telling(channel, messages);
    const auto known = std::span(parameters).first(parameterCount);
    const auto bank = std::ranges::find(known, tuningBankSelect, &ChannelParameter::number);
    const std::int8_t tuningBankNow = bank == known.end() ? unset : bank->high;
    for (const ChannelParameter& told : known) {
        if (told.high == unset && told.low == unset) {
            continue;
        }
        if (told.number == tuningProgram) {
            telling.tell({tuningBankSelect, tuningBank, 0, unset});
        }
        telling.tell(told);
        if (told.number == tuningProgram && tuningBankNow != unset) {
            telling.tell({tuningBankSelect, tuningBankNow, 0, unset});
        }
    }
    telling.bringLow(controllers[CONTROLLER_DATA_LSB]);
    telling.select(selected());
}

void ChannelState::tellPressures(int channel, ChannelMessages& messages) const noexcept
{
    if (bend != 0x2000) {
        messages.add(statusOf(STATUS_PITCHBEND, channel), bend & 0x7F, bend >> 7);
    }
    if (pressure != 0) {
        messages.add(statusOf(STATUS_CPRESSURE, channel), pressure, 0);
    }
    for (int key = 0; key < 128; ++key) {
        if (keyPressures[static_cast<std::size_t>(key)] != 0) {
            messages.add(statusOf(STATUS_PPRESSURE, channel), key,
                         keyPressures[static_cast<std::size_t>(key)]);
        }
    }
}

} // namespace volvelle
