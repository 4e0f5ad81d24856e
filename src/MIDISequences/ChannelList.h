#pragma once

#include <cstdint>
#include <vector>

// Lists of the channels that pass, each in it once. A channel of 16 and above changes nothing. [realtime]
// Where the list has room for 16.
namespace volvelle {

bool hasChannel(const std::vector<std::uint8_t>& channels, std::uint8_t channel);

// All sixteen, in their order.
void openAllChannels(std::vector<std::uint8_t>& channels);

void soloChannel(std::vector<std::uint8_t>& channels, std::uint8_t channel);
void muteChannel(std::vector<std::uint8_t>& channels, std::uint8_t channel);

// At the end, unless it is in the list.
void unmuteChannel(std::vector<std::uint8_t>& channels, std::uint8_t channel);

} // namespace volvelle
