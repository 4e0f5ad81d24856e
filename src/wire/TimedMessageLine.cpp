#include "wire/TimedMessageLine.h"

#include <algorithm>
#include <utility>

namespace volvelle {

TimedMessageLine::TimedMessageLine(int mostOfOneKey) : sounds(mostOfOneKey)
{
    messages.reserve(endsCapacity);
    longBytes.reserve(longCapacity);
    gathered.reserve(longCapacity);
}

bool TimedMessageLine::insert(const TimedMessage& message) noexcept
{
    if (!hasRoomFor(message)) {
        return false;
    }
    TimedMessage own = message;
    if (message.isLong()) {
        own.longBytes = copied(message.bytes());
        if (own.longBytes == nullptr) {
            return false;
        }
    }
    sounds.apply(message.bytes());
    if (messages.size() == endsCapacity) {
        messages.erase(messages.begin(), messages.begin() + static_cast<std::ptrdiff_t>(first));
        first = 0;
    }
    const auto from = messages.begin() + static_cast<std::ptrdiff_t>(first);
    messages.insert(std::ranges::upper_bound(from, messages.end(), own.offset, {}, &TimedMessage::offset),
                    own);
    return true;
}

bool TimedMessageLine::hasRoomFor(const TimedMessage& message) const noexcept
{
    const int owed = sounds.releases() + sounds.change(message.bytes());
    const auto needed = messages.size() - first + 1 + static_cast<std::size_t>(owed);
    return needed <= static_cast<std::size_t>(HeldSounds::ends(message.bytes()) ? endsCapacity : capacity);
}

// Null where there is no room.
const std::uint8_t* TimedMessageLine::copied(std::span<const std::uint8_t> bytes) noexcept
{
    if (bytes.size() > longCapacity - longBytes.size()) {
        gatherLongBytes();
    }
    if (bytes.size() > longCapacity - longBytes.size()) {
        return nullptr;
    }
    longBytes.insert(longBytes.end(), bytes.begin(), bytes.end());
    return longBytes.data() + (longBytes.size() - bytes.size());
}

void TimedMessageLine::gatherLongBytes() noexcept
{
    gathered.clear();
    for (TimedMessage& message : std::span(messages).subspan(first)) {
        if (message.isLong()) {
            const std::span<const std::uint8_t> bytes = message.bytes();
            message.longBytes = gathered.data() + gathered.size();
            gathered.insert(gathered.end(), bytes.begin(), bytes.end());
        }
    }
    std::swap(longBytes, gathered);
}

void TimedMessageLine::removeFront(std::size_t count) noexcept
{
    first += count;
    if (isEmpty()) {
        forgetMessages();
    }
}

std::span<const TimedMessage> TimedMessageLine::upTo(int frames) const noexcept
{
    const std::span waiting = std::span(messages).subspan(first);
    const auto past = std::ranges::lower_bound(waiting, frames, {}, &TimedMessage::offset);
    return waiting.first(static_cast<std::size_t>(past - waiting.begin()));
}

void TimedMessageLine::advance(int frames) noexcept
{
    for (TimedMessage& message : std::span(messages).subspan(first)) {
        message.offset -= frames;
    }
}

void TimedMessageLine::clear() noexcept
{
    forgetMessages();
    sounds.clear();
}

void TimedMessageLine::forgetMessages() noexcept
{
    messages.clear();
    longBytes.clear();
    first = 0;
}

} // namespace volvelle
