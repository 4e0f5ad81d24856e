#pragma once

#include "wire/ChannelMessages.h"
#include "wire/ChannelParameter.h"
#include "wire/ShortMessage.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace volvelle {

// What a channel of a device holds: made as in a device just switched on, changed by the messages that the
// device gets, and told to another device as the messages that bring it there. This is the one model of it:
// for starts, seeks, the parts of a rendering, and a synthesizer that takes over from another. Keeps what it
// needs in itself: no memory, no locks. [any]
//
// Controller 121 resets what the recommended practice for it says, and so neither volume, balance, pan, bank,
// program, sounds (70 to 79), effects (91 to 95) nor the values of parameters. Increments (96, 97) and local
// control are not followed.
class ChannelState {
public:
    // Parameters remembered beside bend range, fine and coarse tuning; of more the one named first goes.
    static constexpr std::size_t maximumParameters = 64;

    // Any channel message; note-offs and the ends of sounds and notes change nothing.
    void apply(const ShortMessage& message) noexcept;

    // The octave of the channel was tuned by a system exclusive, which ends the choice of a tuning program.
    void endTuningProgram() noexcept;

    // Brings a device in whatever state to this one, but for its tunings and its parameters that are not
    // remembered here. Controllers are reset first; sounds and notes go on.
    void tell(int channel, ChannelMessages& messages) const noexcept;

    // The same, message by message.
    template <typename Send>
    void forEachMessage(int channel, Send&& send) const noexcept
    {
        ChannelMessages messages;
        tell(channel, messages);
        for (const ShortMessage& message : messages.all()) {
            send(message);
        }
    }

    // -1: nobody set it, and it has no usual value either.
    int controller(int number) const noexcept { return controllers[static_cast<std::size_t>(number)]; }

private:
    static constexpr std::int8_t unset = ChannelParameter::unset;
    static constexpr std::size_t usualParameters = 3;

    static std::array<std::int8_t, 128> usualControllers() noexcept;

    void applyController(int number, std::int8_t value) noexcept;
    void applyData(int number, std::int8_t value) noexcept;
    void resetControllers() noexcept;
    ChannelParameter& parameter(std::uint16_t number) noexcept;
    std::uint16_t selected() const noexcept;
    void tellProgram(int channel, ChannelMessages& messages) const noexcept;
    void tellControllers(int channel, ChannelMessages& messages) const noexcept;
    void tellParameters(int channel, ChannelMessages& messages) const noexcept;
    void tellPressures(int channel, ChannelMessages& messages) const noexcept;

    std::array<std::int8_t, 128> controllers = usualControllers();
    std::array<std::uint8_t, 128> keyPressures{};
    std::array<ChannelParameter, usualParameters + maximumParameters> parameters{
        {{0, 2, 0, 0}, {1, 64, 0, 0}, {2, 64, 0, 0}}};
    std::size_t parameterCount = usualParameters;
    std::int16_t bend = 0x2000; // 14 bits
    std::int8_t pressure = 0;
    std::int8_t program = 0;
    std::int8_t programBankHigh = 0; // the bank that was selected when the program came
    std::int8_t programBankLow = 0;
    std::int8_t tuningBank = 0;    // the same for the tuning program
    std::int8_t mode = unset;      // 126 or 127
    bool selectsRegistered = true; // the last selection was one of controllers 100 and 101
};

} // namespace volvelle
