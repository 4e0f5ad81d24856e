#pragma once

#include "wire/ShortMessage.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace volvelle {

// What a device was left with by the messages that went there: the notes that sound and the pedals that are
// down (64, 66 and 69). Of a fixed size. [any]
//
// It is the one rule of all queues of messages: what is taken reserves the room of its end, so that the end
// of what began is never refused.
class HeldSounds {
public:
    static constexpr int usualStrikes = 255;

    // Counts up to so many strikes of a key that were not ended.
    explicit HeldSounds(int mostOfOneKey = usualStrikes) : most(mostOfOneKey) {}

    // Whether a message is one that ends something: the end of a note or of all, a pedal below 64.
    static bool ends(std::span<const std::uint8_t> message) noexcept;

    // By how many a message changes releases().
    int change(std::span<const std::uint8_t> message) const noexcept;

    // Takes in a message that went to the device.
    void apply(std::span<const std::uint8_t> message) noexcept;

    // Messages that it takes to end all.
    int releases() const noexcept { return owed; }

    // How often a key was begun and not ended.
    int times(int channel, int key) const noexcept
    {
        return channels[static_cast<std::size_t>(channel)][static_cast<std::size_t>(key)];
    }

    // Calls `send` with each message that ends something, notes before pedals, and is empty then.
    template <typename Send>
    void end(Send send)
    {
        for (std::size_t channel = 0; channel < channels.size(); ++channel) {
            for (std::size_t slot = 0; slot < slotCount; ++slot) {
                for (int times = channels[channel][slot]; times > 0; --times) {
                    send(release(channel, slot));
                }
            }
        }
        clear();
    }

    void clear() noexcept;

private:
    enum class Effect { none, begin, end, endNotes, liftPedals };

    static constexpr std::size_t noteCount = 128;
    static constexpr std::size_t slotCount = noteCount + holdPedals.size();

    using Channel = std::array<int, slotCount>; // how often each note and pedal was begun

    struct Step {
        Effect effect = Effect::none;
        std::size_t channel = 0;
        std::size_t slot = 0;
    };

    static Step read(std::span<const std::uint8_t> message) noexcept;
    static Step readController(std::size_t channel, std::uint8_t controller, std::uint8_t value) noexcept;
    static ShortMessage release(std::size_t channel, std::size_t slot) noexcept;

    int most;
    std::array<Channel, channelCount> channels{};
    int owed = 0; // the sum of all
};

} // namespace volvelle
