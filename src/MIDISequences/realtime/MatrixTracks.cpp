#include "MIDISequences/realtime/MatrixTracks.h"

namespace volvelle {

MatrixTracks::MatrixTracks()
{
    tracks.reserve(trackCount);
    for (std::uint8_t channel = 0; channel < trackCount; ++channel) {
        const auto& cell = tracks.emplace_back(std::make_shared<AUMIDISequencer>());
        cell->isMultiChannel = false;
        cell->isLooping = true;
        cell->setChannel(channel);
    }
}

} // namespace volvelle
