#include "services/audiograph/graph/AVAudioEngine.h"

#include "base/MainThread.h"

#include <algorithm>

namespace volvelle {

namespace {

bool isBus(int bus, int count)
{
    return bus >= 0 && bus < count;
}

} // namespace

OSStatus AVAudioEngine::check(const std::shared_ptr<AVAudioNode>& node) const
{
    if (node == nullptr || (node->engine != nullptr && node->engine != this)) {
        return kAudio_ParamError;
    }
    return node->engine == this ? noErr : kAUGraphErr_NodeNotFound;
}

OSStatus AVAudioEngine::attachNode(const std::shared_ptr<AVAudioNode>& node)
{
    assertMainThread();
    const OSStatus status = check(node);
    if (status != kAUGraphErr_NodeNotFound) {
        return status;
    }
    node->engine = this;
    nodes.push_back(node);
    collectGarbage();
    return noErr;
}

OSStatus AVAudioEngine::detachNode(const std::shared_ptr<AVAudioNode>& node)
{
    assertMainThread();
    const OSStatus status = check(node);
    if (status != noErr) {
        return status;
    }
    if (node == mixer || node == output) {
        return kAudio_ParamError;
    }
    // The caller's handle may be the engine's own, which goes below.
    const std::shared_ptr<AVAudioNode> held = node; // NOLINT(performance-unnecessary-copy-initialization)
    wires.removeInputs(*held);
    wires.removeOutputs(*held);
    std::erase(nodes, held);
    held->engine = nullptr;
    publish();
    return noErr;
}

OSStatus AVAudioEngine::connect(const std::shared_ptr<AVAudioNode>& from,
                                const std::shared_ptr<AVAudioNode>& to, int fromBus, int toBus,
                                std::optional<AVAudioFormat> format)
{
    assertMainThread();
    OSStatus status = check(from);
    status = status == noErr ? check(to) : status;
    if (status != noErr) {
        return status;
    }
    if (fromBus != 0 || from->numberOfOutputs() == 0 || !isBus(toBus, to->numberOfInputs())) {
        return kAudioUnitErr_InvalidElement;
    }
    if (wires.leads(*to, *from)) {
        return kAUGraphErr_InvalidConnection;
    }
    const AVAudioFormat own =
        to->convertsRates() ? from->outputFormatForBus(0) : to->inputFormatForBus(toBus);
    const AVAudioFormat wanted = format.value_or(own);
    const bool fits =
        to->convertsRates()
            ? ConnectionConverter::isPossible(wanted.sampleRate, to->outputFormatForBus(0).sampleRate)
            : wanted == own;
    if (!fits || !from->setOutputFormat(wanted)) {
        return kAudioUnitErr_FormatNotSupported;
    }
    wires.add({from, fromBus, to, toBus, wanted, nullptr});
    publish();
    return noErr;
}

OSStatus AVAudioEngine::disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node)
{
    assertMainThread();
    const OSStatus status = check(node);
    if (status == noErr) {
        wires.removeInputs(*node);
        publish();
    }
    return status;
}

OSStatus AVAudioEngine::disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node, int bus)
{
    assertMainThread();
    const OSStatus status = check(node);
    if (status == noErr) {
        wires.removeInput(*node, bus);
        publish();
    }
    return status;
}

OSStatus AVAudioEngine::disconnectNodeOutput(const std::shared_ptr<AVAudioNode>& node)
{
    assertMainThread();
    const OSStatus status = check(node);
    if (status == noErr) {
        wires.removeOutputs(*node);
        publish();
    }
    return status;
}

} // namespace volvelle
