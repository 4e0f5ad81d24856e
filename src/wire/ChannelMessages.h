#pragma once

#include "wire/ShortMessage.h"

#include <cstddef>
#include <span>

namespace volvelle {

// Short messages in a row, of a fixed number at most.
class ChannelMessages {
public:
    static constexpr int capacity = 1024;

    void add(int status, int data1, int data2) noexcept
    {
        list[count] = {static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1),
                       static_cast<std::uint8_t>(data2)};
        ++count;
    }

    std::span<const ShortMessage> all() const noexcept { return std::span(list).first(count); }

private:
    std::array<ShortMessage, capacity> list; // the first `count` of them
    std::size_t count = 0;
};

} // namespace volvelle
