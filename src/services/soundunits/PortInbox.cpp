#include "services/soundunits/PortInbox.h"

namespace volvelle {

PortInbox::PortInbox(std::size_t capacity) : queue(capacity), exclusive(longestExclusive) {}

void PortInbox::receive(Moment arrived, std::span<const std::uint8_t> bytes) noexcept
{
    constexpr std::uint8_t firstRealTime = 0xF8; // such bytes may stand within another message
    for (const std::uint8_t byte : bytes) {
        if (byte >= firstRealTime) {
            continue;
        }
        if (isStatus(byte)) {
            receiveStatus(arrived, byte);
        } else {
            receiveData(arrived, byte);
        }
    }
}

void PortInbox::receiveStatus(Moment arrived, std::uint8_t status) noexcept
{
    if (exclusiveLength > 0 && status == STATUS_EOX) {
        return endExclusive(arrived);
    }
    if (exclusiveLength > 0) {
        drop();
        exclusiveLength = 0;
    }
    shortMessage = {};
    shortLength = 1;
    if (status == STATUS_SYSEX) {
        append(status);
    } else if (isChannelStatus(status)) {
        shortMessage[0] = status;
    }
}

void PortInbox::receiveData(Moment arrived, std::uint8_t byte) noexcept
{
    if (exclusiveLength > 0) {
        return append(byte);
    }
    if (shortMessage[0] == 0) {
        return;
    }
    shortMessage[static_cast<std::size_t>(shortLength++)] = byte;
    if (shortLength == shortMessageLength(shortMessage[0])) {
        pass(arrived, std::span(shortMessage).first(static_cast<std::size_t>(shortLength)));
        shortLength = 1; // more of the same kind may follow without a status
    }
}

void PortInbox::append(std::uint8_t byte) noexcept
{
    if (exclusiveLength < exclusive.size()) {
        exclusive[exclusiveLength] = byte;
    }
    ++exclusiveLength;
}

void PortInbox::endExclusive(Moment arrived) noexcept
{
    append(STATUS_EOX);
    if (exclusiveLength <= exclusive.size()) {
        pass(arrived, std::span(exclusive).first(exclusiveLength));
    } else {
        drop();
    }
    exclusiveLength = 0;
}

void PortInbox::pass(Moment arrived, std::span<const std::uint8_t> message) noexcept
{
    if (!queue.push(arrived, message)) {
        drop();
    }
}

} // namespace volvelle
