#include "services/soundunits/PortQueue.h"

#include <algorithm>

namespace volvelle {

PortQueue::PortQueue(std::size_t capacity) : bytes(capacity) {}

bool PortQueue::push(Moment due, std::span<const std::uint8_t> message) noexcept
{
    constexpr std::size_t releaseSize = sizeof(Header) + 3;
    const int releases = sounds.releases() + sounds.change(message);
    const std::size_t used = end.load(std::memory_order_relaxed) - begin.load(std::memory_order_acquire);
    const std::size_t free = bytes.size() - used;
    if (message.empty() || message.size() > bytes.size() ||
        free < sizeof(Header) + message.size() + static_cast<std::size_t>(releases) * releaseSize) {
        return false;
    }
    sounds.apply(message);
    append(due, message);
    return true;
}

void PortQueue::pushEnd(Moment due) noexcept
{
    if (sounds.releases() > 0) {
        sounds.clear();
        append(due, {});
    }
}

void PortQueue::append(Moment due, std::span<const std::uint8_t> message) noexcept
{
    const Header header{due, message.size()};
    const std::size_t place = end.load(std::memory_order_relaxed);
    put(place, &header, sizeof header);
    put(place + sizeof header, message.data(), message.size());
    end.store(place + sizeof header + message.size(), std::memory_order_release);
}

bool PortQueue::pop(Moment& due, std::vector<std::uint8_t>& message)
{
    const std::size_t place = begin.load(std::memory_order_relaxed);
    if (place == end.load(std::memory_order_acquire)) {
        return false;
    }
    Header header;
    get(place, &header, sizeof header);
    message.resize(header.length);
    get(place + sizeof header, message.data(), message.size());
    begin.store(place + sizeof header + message.size(), std::memory_order_release);
    due = header.due;
    return true;
}

void PortQueue::put(std::size_t place, const void* from, std::size_t count) noexcept
{
    const std::size_t start = place % bytes.size();
    const std::size_t first = std::min(count, bytes.size() - start);
    const auto* const source = static_cast<const std::uint8_t*>(from);
    std::copy_n(source, first, bytes.begin() + static_cast<std::ptrdiff_t>(start));
    std::copy_n(source + first, count - first, bytes.begin());
}

void PortQueue::get(std::size_t place, void* into, std::size_t count) const noexcept
{
    const std::size_t start = place % bytes.size();
    const std::size_t first = std::min(count, bytes.size() - start);
    auto* const target = static_cast<std::uint8_t*>(into);
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(start), first, target);
    std::copy_n(bytes.begin(), count - first, target + first);
}

} // namespace volvelle
