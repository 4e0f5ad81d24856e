#include "wire/ExclusiveMemory.h"

#include "wire/SystemExclusive.h"

#include <algorithm>

namespace volvelle {

ExclusiveMemory::ExclusiveMemory()
{
    entries.reserve(maximumMessages);
    bytes.reserve(maximumBytes);
}

void ExclusiveMemory::apply(std::span<const std::uint8_t> message) noexcept
{
    const ExclusiveEffect effect = effectOf(message);
    if (effect == ExclusiveEffect::none || message.size() > maximumBytes) {
        return;
    }
    const std::uint64_t key = settingKey(message);
    if (effect == ExclusiveEffect::reset) {
        clear();
    }
    const auto same = std::ranges::find(entries, key, &Entry::key);
    if (same != entries.end()) {
        remove(static_cast<std::size_t>(same - entries.begin()));
    }
    while (entries.size() == maximumMessages || bytes.size() + message.size() > maximumBytes) {
        remove(!entries.empty() && entries.front().key == 0 && entries.size() > 1 ? 1 : 0);
    }
    entries.push_back({key, bytes.size(), message.size()});
    bytes.insert(bytes.end(), message.begin(), message.end());
}

void ExclusiveMemory::clear() noexcept
{
    entries.clear();
    bytes.clear();
}

std::span<const std::uint8_t> ExclusiveMemory::operator[](std::size_t index) const noexcept
{
    return std::span(bytes).subspan(entries[index].begin, entries[index].size);
}

void ExclusiveMemory::remove(std::size_t index) noexcept
{
    const Entry gone = entries[index];
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(gone.begin);
    bytes.erase(begin, begin + static_cast<std::ptrdiff_t>(gone.size));
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(index));
    for (std::size_t i = index; i < entries.size(); ++i) {
        entries[i].begin -= gone.size;
    }
}

} // namespace volvelle
