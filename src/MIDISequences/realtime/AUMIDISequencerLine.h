#pragma once

#include "base/Console.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace volvelle {

// One line for the console, put together in place. On a thread that renders it goes by realtimeprint, on
// others by debugprint. [any] Putting it together takes no memory; what is too long is cut off.
class AUMIDISequencerLine {
public:
    // Prints the texts of all values, joined: texts, integers and floating point as in base/Text.h.
    template <class... Values>
    static void print(const Values&... values)
    {
        if (console().isHeard()) {
            AUMIDISequencerLine line;
            (line.append(values), ...);
            line.send();
        }
    }

    std::string_view view() const { return {characters.data(), count}; }

    void append(std::string_view text) noexcept;
    void append(double value) noexcept;

    void append(std::integral auto value) noexcept { appendInteger(static_cast<std::int64_t>(value)); }

private:
    void appendInteger(std::int64_t value) noexcept;
    void send() const;

    std::array<char, 240> characters{};
    std::size_t count = 0;
};

} // namespace volvelle
