#pragma once

#include "base/Text.h"
#include "wire/ChannelState.h"

#include <string>
#include <vector>

namespace volvelle::test {

inline std::string hexLine(const ShortMessage& message)
{
    std::string line;
    for (int i = 0; i < shortMessageLength(message[0]); ++i) {
        line += (i == 0 ? "" : " ") + hexadecimal(message[static_cast<std::size_t>(i)]);
    }
    return line;
}

// "B2 07 64" for each message that a state tells for a channel.
inline std::vector<std::string> told(const ChannelState& state, int channel)
{
    ChannelMessages messages;
    state.tell(channel, messages);
    std::vector<std::string> lines;
    for (const ShortMessage& message : messages.all()) {
        lines.push_back(hexLine(message));
    }
    return lines;
}

} // namespace volvelle::test
