#include "wire/SystemExclusive.h"

#include "wire/MIDIConstants.h"

#include <algorithm>
#include <initializer_list>

namespace volvelle {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint8_t universal = 0x7E;
constexpr std::uint8_t universalRealtime = 0x7F;
constexpr std::uint8_t deviceControl = 0x04;
constexpr std::uint8_t tuning = 0x08;
constexpr std::uint8_t generalMIDI = 0x09;
constexpr std::size_t addressedByThree = 8; // F0, maker, device, model, command, three bytes of address
constexpr std::size_t addressedShort = 7;   // the same without a command

bool isWhole(Bytes message)
{
    return message.size() >= 6 && message.front() == STATUS_SYSEX && message.back() == STATUS_EOX;
}

bool isUniversal(Bytes message, std::uint8_t group)
{
    return (message[1] == universal || message[1] == universalRealtime) && message[3] == group;
}

bool isFirstExtension(Bytes message)
{
    return message.size() >= 11 && message[1] == 0x41 && message[3] == 0x42 && message[4] == 0x12;
}

bool isSecondExtension(Bytes message)
{
    return message.size() >= 9 && message[1] == 0x43 && (message[2] & 0xF0) == 0x10 && message[3] == 0x4C;
}

bool hasAddress(Bytes message, std::size_t end, std::initializer_list<int> address)
{
    return std::ranges::equal(message.subspan(end - address.size(), address.size()), address);
}

bool isReset(Bytes message)
{
    if (isUniversal(message, generalMIDI)) {
        return message[1] == universal && (message[4] == 0x01 || message[4] == 0x03);
    }
    if (isFirstExtension(message)) {
        return hasAddress(message, addressedByThree, {0x40, 0x00, 0x7F}) ||
               hasAddress(message, addressedByThree, {0x00, 0x00, 0x7F});
    }
    return isSecondExtension(message) && (hasAddress(message, addressedShort, {0x00, 0x00, 0x7E}) ||
                                          hasAddress(message, addressedShort, {0x00, 0x00, 0x7F}));
}

// Single notes are retuned by lists of a key and its three bytes; such a list begins here, 0 for no list.
std::size_t retunedKeys(Bytes message)
{
    if (!isUniversal(message, tuning)) {
        return 0;
    }
    return message[4] == 0x02 ? 7 : message[4] == 0x07 ? 8 : 0;
}

// How many bytes from the first say what is set, after which stands to what.
std::size_t addressLength(Bytes message)
{
    if (isFirstExtension(message)) {
        return addressedByThree;
    }
    if (isSecondExtension(message)) {
        return addressedShort;
    }
    if (isUniversal(message, deviceControl)) {
        return message[4] == 0x05 ? message.size() - 2 : 5;
    }
    switch (message[4]) {
    case 0x08:
    case 0x09:
        return std::min<std::size_t>(8, message.size()); // the channels
    case 0x01:
    case 0x02:
        return 6; // the program
    default:
        return std::min<std::size_t>(7, message.size()); // bank and program
    }
}

std::uint64_t mixed(std::uint64_t key, std::size_t value)
{
    return (key ^ value) * 1099511628211U;
}

} // namespace

ExclusiveEffect effectOf(Bytes message) noexcept
{
    if (!isWhole(message)) {
        return ExclusiveEffect::none;
    }
    if (isReset(message)) {
        return ExclusiveEffect::reset;
    }
    const bool isSetting = isUniversal(message, tuning) || isUniversal(message, deviceControl) ||
                           isFirstExtension(message) || isSecondExtension(message);
    return isSetting ? ExclusiveEffect::setting : ExclusiveEffect::none;
}

std::uint64_t settingKey(Bytes message) noexcept
{
    if (effectOf(message) != ExclusiveEffect::setting) {
        return 0;
    }
    std::uint64_t key = mixed(14695981039346656037U, message.size());
    for (const std::uint8_t byte : message.first(addressLength(message))) {
        key = mixed(key, byte);
    }
    const std::size_t keys = retunedKeys(message);
    for (std::size_t i = keys; keys != 0 && i + 1 < message.size(); i += 4) {
        key = mixed(key, message[i]);
    }
    return std::max<std::uint64_t>(key, 1);
}

std::optional<TuningSlot> changedTuning(Bytes message) noexcept
{
    if (!isWhole(message) || !isUniversal(message, tuning) || message.size() < 8) {
        return std::nullopt;
    }
    switch (message[4]) {
    case 0x01: // all keys, or some
    case 0x02:
        return TuningSlot{0, message[5] & 0x7F};
    case 0x04: // the same in a bank, and octaves
    case 0x05:
    case 0x06:
    case 0x07:
        return TuningSlot{message[5] & 0x7F, message[6] & 0x7F};
    default:
        return std::nullopt;
    }
}

std::uint16_t octaveTunedChannels(Bytes message) noexcept
{
    constexpr std::size_t oneByte = 21; // bytes of a message with one for each of twelve notes
    constexpr std::size_t twoBytes = 33;
    if (!isWhole(message) || !isUniversal(message, tuning)) {
        return 0;
    }
    const bool isOctave = (message[4] == 0x08 && message.size() == oneByte) ||
                          (message[4] == 0x09 && message.size() == twoBytes);
    return isOctave ? static_cast<std::uint16_t>((message[5] & 3) << 14 | message[6] << 7 | message[7])
                    : std::uint16_t{0};
}

} // namespace volvelle
