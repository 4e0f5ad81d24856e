#pragma once

#include "services/audiograph/ChannelMessages.h"

#include <array>
#include <cstdint>

namespace volvelle {

// What a channel holds at a position: put together from the events before it, and told to a unit as the
// messages that bring it up to date. [any one thread]
class ChannelState {
public:
    void clear() noexcept { *this = ChannelState(); }

    // A controller, program, bend or channel pressure message before the position.
    void apply(const std::array<std::uint8_t, 3>& bytes) noexcept;

    // The same behind the position, after all apply(): what it changes must have its usual value until then.
    void touch(const std::array<std::uint8_t, 3>& bytes) noexcept;

    // The same for all messages of a piece at once: `all` was touched by each of them, and has no apply().
    void touchAll(const ChannelState& all) noexcept;

    // Controllers reset, bank and program, controllers by number, registered parameters, bend, pressure: of
    // these all that the events mention.
    void tell(int channel, ChannelMessages& messages) const noexcept;

private:
    static constexpr std::int16_t unset = -1;   // never mentioned
    static constexpr std::int16_t touched = -2; // mentioned behind the position only

    // Bend range, fine tuning, coarse tuning.
    static constexpr std::array<int, 3> usualParameters{2, 64, 64};

    struct Parameter {
        std::int16_t high = unset;
        std::int16_t low = unset;
    };

    static std::array<std::int16_t, 128> nothing()
    {
        std::array<std::int16_t, 128> result{};
        result.fill(unset);
        return result;
    }

    void controller(int number, std::int16_t value) noexcept;
    void select(int number, int value) noexcept;
    void tellProgram(int channel, ChannelMessages& messages) const noexcept;
    void tellControllers(int channel, ChannelMessages& messages) const noexcept;
    void tellParameters(int channel, ChannelMessages& messages) const noexcept;
    void tellSelection(int channel, ChannelMessages& messages) const noexcept;

    std::array<std::int16_t, 128> controllers = nothing();
    std::array<Parameter, usualParameters.size()> parameters;
    std::int16_t program = unset;
    std::int16_t bend = unset; // 14 bits
    std::int16_t pressure = unset;
    int selectedHigh = 127; // 127, 127: no parameter
    int selectedLow = 127;
    bool selectsRegistered = true;     // the last selection was one of controllers 100 and 101
    bool wasRegisteredSelected = true; // the same at the position
};

} // namespace volvelle
