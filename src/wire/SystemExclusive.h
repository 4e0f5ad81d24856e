#pragma once

#include <cstdint>
#include <optional>
#include <span>

// What system exclusive messages mean for the state of a device. All take whole messages, F0 to F7, and are
// free of memory and locks. [any]
namespace volvelle {

enum class ExclusiveEffect : std::uint8_t {
    none,    // nothing that lasts
    reset,   // every channel and every setting is as in a device just switched on
    setting, // something stays set: a tuning, the master volume, an address of the device
};

// Resets are General MIDI 1 and 2 on and the resets of the two large extensions of it (by address 40 00 7F
// and 00 00 7F of the first, 00 00 7E and 00 00 7F of the second); settings are universal tunings (08) and
// device controls (04), and what these extensions set by address. Device numbers are not looked at.
ExclusiveEffect effectOf(std::span<const std::uint8_t> message) noexcept;

// Equal for two settings of which the later one takes the place of the earlier; never 0 for a setting, 0 for
// all else.
std::uint64_t settingKey(std::span<const std::uint8_t> message) noexcept;

// Where a tuning is kept.
struct TuningSlot {
    int bank = 0; // 0 to 127, as the program
    int program = 0;

    bool operator==(const TuningSlot&) const = default;
};

// The tuning that the message changes; none for one that changes none that is kept.
std::optional<TuningSlot> changedTuning(std::span<const std::uint8_t> message) noexcept;

// Bit n: the message tunes the octaves of channel n, which ends the tuning program that was chosen there.
std::uint16_t octaveTunedChannels(std::span<const std::uint8_t> message) noexcept;

} // namespace volvelle
