#include "services/audiograph/graph/RenderPlan.h"

#include <algorithm>

namespace volvelle {

RenderPlan::RenderPlan(AudioConnections& connections, const std::shared_ptr<AVAudioNode>& output,
                       std::vector<std::shared_ptr<SequencerCore>> newSequencers)
    : sequencers(std::move(newSequencers))
{
    addStep(connections, output);
}

RenderStep& RenderPlan::addStep(AudioConnections& connections, const std::shared_ptr<AVAudioNode>& node)
{
    auto step = std::make_unique<RenderStep>();
    step->node = node;
    for (AudioConnection* connection : connections.inputs(*node)) {
        RenderStep& source = addStep(connections, connection->from);
        const double from = connection->from->outputFormatForBus(0).sampleRate;
        const double to = node->convertsRates() ? node->outputFormatForBus(0).sampleRate : from;
        std::shared_ptr<ConnectionConverter>& converter = connection->converter;
        if (from == to) {
            converter = nullptr;
        } else if (converter == nullptr || converter->fromRate != from || converter->toRate != to) {
            converter = std::make_shared<ConnectionConverter>(from, to);
        }
        step->inputs.emplace_back(connection->toBus, source, converter);
    }
    steps.push_back(std::move(step));
    return *steps.back();
}

void RenderPlan::beginBlock() noexcept
{
    for (const auto& sequencer : sequencers) {
        sequencer->beginBlock();
    }
}

void RenderPlan::render(float* left, float* right, int frames) noexcept
{
    for (const auto& sequencer : sequencers) {
        sequencer->play(frames);
    }
    RenderStep& last = *steps.back();
    last.node->renderNode(last.inputs, left, right, frames);
    for (const auto& step : steps) {
        step->node->advanceEngine(frames);
    }
}

void RenderPlan::endBlock() noexcept
{
    for (const auto& sequencer : sequencers) {
        sequencer->endBlock();
    }
}

void RenderPlan::resetNodes() noexcept
{
    for (const auto& step : steps) {
        step->node->resetNode();
    }
}

void RenderPlan::follow(RenderPlan* before) noexcept
{
    for (const auto& step : steps) {
        if (before == nullptr || !before->holds(*step->node)) {
            step->node->setInPlan(true);
        }
    }
    if (before == nullptr) {
        return;
    }
    for (const auto& sequencer : before->sequencers) {
        if (!holds(*sequencer)) {
            sequencer->leave();
        }
    }
    for (const auto& step : before->steps) {
        if (!holds(*step->node)) {
            step->node->setInPlan(false);
        }
    }
}

bool RenderPlan::holds(const AVAudioNode& node) const noexcept
{
    return std::any_of(steps.begin(), steps.end(),
                       [&](const auto& step) { return step->node.get() == &node; });
}

bool RenderPlan::holds(const SequencerCore& sequencer) const noexcept
{
    return std::any_of(sequencers.begin(), sequencers.end(),
                       [&](const auto& other) { return other.get() == &sequencer; });
}

} // namespace volvelle
