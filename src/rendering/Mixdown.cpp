#include "rendering/Mixdown.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

constexpr float silence = 1.0e-4F; // -80 dB

} // namespace

Mixdown::Mixdown(RenderPiece piece, std::vector<RenderPart> parts, std::optional<std::filesystem::path> bank,
                 int cores)
    : piece(std::move(piece)),
      parts(std::move(parts)),
      bank(std::move(bank)),
      cores(static_cast<std::size_t>(cores))
{
}

Result<> Mixdown::write(AudioFileWriter& writer, const std::function<void(int)>& progress)
{
    const std::int64_t end = parts.empty() ? 0 : parts.back().endBlock;
    int quietBlocks = 0;
    int told = -1;
    const std::int64_t latest = end + RenderPart::longestTail;
    while (block < end || (quietBlocks < RenderPart::quietBlocksAtEnd && block < latest)) {
        if (Result<> ready = beginParts(); !ready) {
            return ready;
        }
        mixBlock();
        limitBlock();
        if (Result<> written = writer.write(left.data(), right.data(), blockFrames); !written) {
            return written;
        }
        ++block;
        const bool isQuiet = block > end && isQuieter(silence, left.data(), right.data(), blockFrames);
        quietBlocks = isQuiet ? quietBlocks + 1 : 0;
        const int percent = block >= end ? 100 : static_cast<int>(block * 100 / end);
        if (percent != std::exchange(told, percent)) {
            progress(percent);
        }
    }
    return {};
}

// As many as there are cores, counted from the one that is heard.
Result<> Mixdown::beginParts()
{
    const auto isHeard = [this](const RenderPart& part) { return part.beginBlock <= block; };
    const auto heard = static_cast<std::size_t>(std::ranges::count_if(parts, isHeard));
    while (begun < std::min(parts.size(), heard + cores - 1)) {
        auto rendering = PartRendering::make(piece, parts[begun], bank);
        if (!rendering) {
            return failure(rendering.error());
        }
        renderings.push_back(std::make_unique<RenderAhead>(*std::move(rendering), cores > 1));
        ++begun;
    }
    return {};
}

void Mixdown::mixBlock()
{
    mixLeft.fill(0.0F);
    mixRight.fill(0.0F);
    for (std::size_t i = 0; i < renderings.size(); ++i) {
        const bool isHeard = parts[i].beginBlock <= block;
        if (isHeard && renderings[i] && !renderings[i]->addBlock(mixLeft.data(), mixRight.data())) {
            renderings[i] = nullptr;
        }
    }
}

void Mixdown::limitBlock()
{
    limiter.render(mixLeft.data(), mixRight.data(), left.data(), right.data(), blockFrames);
}

} // namespace volvelle
