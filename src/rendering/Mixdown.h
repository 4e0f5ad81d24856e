#pragma once

#include "base/Result.h"
#include "rendering/RenderAhead.h"
#include "rendering/RenderPart.h"
#include "services/audiodevice/AudioFileWriter.h"
#include "services/audiograph/graph/PeakLimiter.h"

#include <array>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace volvelle {

// Renders the parts of a piece, some of them at a time, adds them up, limits the sum and writes it, up to the
// end of the last sound. [main]
class Mixdown {
public:
    // `parts` are those of the piece.
    Mixdown(RenderPiece piece, std::vector<RenderPart> parts, std::optional<std::filesystem::path> bank,
            int cores);

    // Tells `progress` each percent of the music.
    Result<> write(AudioFileWriter& writer, const std::function<void(int)>& progress);

private:
    static constexpr std::size_t blockFrames = RenderPart::blockFrames;

    Result<> beginParts();
    void mixBlock();
    void limitBlock();

    const RenderPiece piece;
    const std::vector<RenderPart> parts;
    const std::optional<std::filesystem::path> bank;
    const std::size_t cores;

    std::int64_t block = 0; // the next one
    std::size_t begun = 0;  // parts that were begun
    std::deque<std::unique_ptr<RenderAhead>>
        renderings; // of the parts that were begun; null once at their end
    PeakLimiter limiter;
    std::array<float, blockFrames> mixLeft{};
    std::array<float, blockFrames> mixRight{};
    std::array<float, blockFrames> left{}; // after the limiter
    std::array<float, blockFrames> right{};
};

} // namespace volvelle
