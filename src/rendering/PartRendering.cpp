#include "rendering/PartRendering.h"

#include "rendering/PartNotes.h"
#include "services/audiograph/sequencer/AVMusicTrack.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <tuple>

namespace volvelle {

namespace {

constexpr float inaudible = 1.0e-6F; // -120 dB

// Frames after which the slow swings of the synthesizer's chorus and reverb repeat: ten seconds.
constexpr std::int64_t effectPeriod = 480'000;

} // namespace

PartRendering::PartRendering(const RenderPart& part) : part(part), block(part.beginBlock) {}

Result<std::unique_ptr<PartRendering>> PartRendering::make(const RenderPiece& piece, const RenderPart& part,
                                                           const std::optional<std::filesystem::path>& bank)
{
    std::unique_ptr<PartRendering> rendering(new PartRendering(part));
    if (Result<> connected = rendering->graph.connectSynthesizer(bank); !connected) {
        return failure(connected.error());
    }
    if (Result<> loaded = rendering->load(piece); !loaded) {
        return failure(loaded.error());
    }
    if (rendering->graph.engine->enableManualRenderingMode(blockFrames) != noErr) {
        return failure("The audio engine could not render by itself.");
    }
    if (Result<> started = rendering->start(); !started) {
        return failure(started.error());
    }
    return rendering;
}

Result<> PartRendering::load(const RenderPiece& piece)
{
    if (part.isSequenced) {
        return graph.sequencedUnit->load(piece.sequence);
    }
    sequencer.loadFromEvents(std::make_shared<const SequencerEvents>(notesOf(part, *piece.events)));
    for (const auto& track : sequencer.tracks()) {
        track->setDestinationAudioUnit(graph.instrument);
    }
    sequencer.prepareToPlay();
    sequencer.setCurrentPositionInBeats(part.beginBeats);
    return {};
}

Result<> PartRendering::start()
{
    if (Result<> started = graph.engine->start(); !started) {
        return started;
    }
    swingEffects();
    if (part.isSequenced) {
        graph.sequencedUnit->start();
        return {};
    }
    return sequencer.start();
}

// Brings chorus and reverb to where they would be had they run from the start of the piece.
void PartRendering::swingEffects()
{
    std::array<float, blockFrames> left{};
    std::array<float, blockFrames> right{};
    for (std::int64_t frames = part.beginBlock * blockFrames % effectPeriod; frames > 0;
         frames -= blockFrames) {
        const auto now = static_cast<int>(std::min<std::int64_t>(frames, blockFrames));
        std::ignore = graph.engine->renderOffline(now, left.data(), right.data());
    }
}

bool PartRendering::renderBlock(float* left, float* right)
{
    const bool hasDiedAway = quietBlocks >= RenderPart::quietBlocksAtEnd && graph.activeVoices() == 0;
    if (hasDiedAway || block >= part.lastBlock ||
        graph.engine->renderOffline(blockFrames, left, right) != noErr) {
        return false;
    }
    const bool isBehind = block >= part.endBlock;
    quietBlocks = isBehind && isQuieter(inaudible, left, right, blockFrames) ? quietBlocks + 1 : 0;
    ++block;
    return true;
}

bool isQuieter(float level, const float* left, const float* right, int frames)
{
    const auto isQuiet = [level](float sample) { return std::fabs(sample) < level; };
    const auto count = static_cast<std::size_t>(frames);
    return std::ranges::all_of(std::span(left, count), isQuiet) &&
           std::ranges::all_of(std::span(right, count), isQuiet);
}

} // namespace volvelle
