#pragma once

#include "audio/SoundGraph.h"
#include "base/Result.h"
#include "rendering/RenderPart.h"
#include "rendering/RenderPiece.h"
#include "services/audiograph/sequencer/AVAudioSequencer.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

namespace volvelle {

// Renders a part of a piece, with an engine and a synthesizer of its own and without a limiter. Made on the
// main thread and then used by one thread at a time.
class PartRendering {
public:
    static constexpr int blockFrames = RenderPart::blockFrames;

    static Result<std::unique_ptr<PartRendering>> make(const RenderPiece& piece, const RenderPart& part,
                                                       const std::optional<std::filesystem::path>& bank);

    // Writes the next block to both channels. False once the part has died away, and nothing is written:
    // where it is silent and no voice is left that could come back.
    bool renderBlock(float* left, float* right);

private:
    explicit PartRendering(const RenderPart& part);
    Result<> load(const RenderPiece& piece);
    Result<> start();
    void swingEffects();

    const RenderPart part;
    SoundGraph graph{false, part.isSequenced};
    AVAudioSequencer sequencer{graph.engine};
    std::int64_t block = 0; // the next one, counted from the start of the piece
    int quietBlocks = 0;    // of silence without a break after the part
};

// True for a block in which nothing is above `level`, a factor of full scale.
bool isQuieter(float level, const float* left, const float* right, int frames);

} // namespace volvelle
