#pragma once

#include <cstdint>
#include <vector>

namespace volvelle {

// The list of channels that pass. It has room for 16, and each stands in it once, so that no operation
// allocates. Changing it while the render thread asks is the caller's to order. [realtime]
class ChannelFilter {
public:
    ChannelFilter();
    virtual ~ChannelFilter() = default;

    std::vector<std::uint8_t> channels;

    // All sixteen channels pass.
    virtual void reset();

    // True for a channel that is to be dropped.
    virtual bool filters(std::uint8_t channel) const;

    // The operations on one channel do nothing for 16 and above.
    virtual void solo(std::uint8_t channel);
    virtual void mute(std::uint8_t channel);
    virtual void unmute(std::uint8_t channel);
    virtual void unmuteAll();
    virtual void muteAll();
};

} // namespace volvelle
