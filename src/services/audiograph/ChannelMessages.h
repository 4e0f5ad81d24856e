#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace volvelle {

// Short messages in a row, of a fixed number at most.
struct ChannelMessages {
    static constexpr int capacity = 160;

    void add(int status, int data1, int data2) noexcept
    {
        list[static_cast<std::size_t>(count)] = {static_cast<std::uint8_t>(status),
                                                 static_cast<std::uint8_t>(data1),
                                                 static_cast<std::uint8_t>(data2)};
        ++count;
    }

    std::array<std::array<std::uint8_t, 3>, capacity> list;
    int count = 0;
};

} // namespace volvelle
