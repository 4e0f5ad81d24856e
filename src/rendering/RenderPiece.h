#pragma once

#include "audio/FileTempo.h"
#include "rendering/RenderPart.h"
#include "services/audiograph/sequencer/SequencerEvents.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace volvelle {

// A piece as its parts are rendered from: read once, and the same for all of them. [any]
struct RenderPiece {
    std::shared_ptr<const SequencerEvents> events = std::make_shared<SequencerEvents>();
    MusicSequence sequence; // for the realtime sequencer; null where the platform's plays
    FileTempo tempo;        // of the same

    // Reads the bytes of a MIDI file for one of the two sequencers. Answers a failure of the service.
    [[nodiscard]] OSStatus read(const std::vector<std::uint8_t>& data, bool isSequenced);

    bool hasTracks() const { return events->tracks.size() > 1; }

    // Parts for so many cores at once; one for the realtime sequencer.
    std::vector<RenderPart> parts(int cores) const;
};

} // namespace volvelle
