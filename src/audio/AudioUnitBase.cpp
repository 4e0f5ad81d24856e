#include "audio/AudioUnitBase.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/MainQueue.h"
#include "base/RunLoop.h"
#include "base/Text.h"
#include "midi/MIDIConstants.h"
#include "services/audiograph/graph/AVAudioUnitEffect.h"

#include <tuple>
#include <utility>

namespace volvelle {

namespace {

constexpr double warningInterval = 0.1; // seconds
constexpr std::string_view noMIDIDelegate = "WARNING: No delegate defined for Audio Unit MIDI messages.";

} // namespace

std::shared_ptr<AudioUnitBase> AudioUnitBase::make(std::shared_ptr<AVAudioEngine> engine)
{
    return std::shared_ptr<AudioUnitBase>(new AudioUnitBase(std::move(engine)));
}

AudioUnitBase::AudioUnitBase(std::shared_ptr<AVAudioEngine> engine) : engine(std::move(engine)) {}

AudioUnitBase::~AudioUnitBase() = default;

void AudioUnitBase::setAVAudioUnit(const std::shared_ptr<AVAudioUnit>& avunit)
{
    avAudioUnit = avunit;
}

std::shared_ptr<AVAudioUnit> AudioUnitBase::getAVAudioUnit() const
{
    return avAudioUnit;
}

void AudioUnitBase::setMainNode(const std::shared_ptr<AVAudioNode>& node)
{
    audioNode = node;
}

std::shared_ptr<AVAudioNode> AudioUnitBase::getMainNode(int /*bus*/) const
{
    return audioNode;
}

std::shared_ptr<AVAudioNode> AudioUnitBase::getInputNode(int /*bus*/) const
{
    return inputNode ? inputNode : audioNode;
}

std::shared_ptr<AVAudioNode> AudioUnitBase::getOutputNode(int /*bus*/) const
{
    return outputNode ? outputNode : audioNode;
}

bool AudioUnitBase::isWrapped() const
{
    return outputNode != nullptr;
}

void AudioUnitBase::create(const std::string& name)
{
    const auto effect = AVAudioUnitEffect::make(componentDescription);
    if (!effect) {
        tellCreated(nullptr);
        return;
    }
    avAudioUnit = effect;
    audioUnit = effect->auAudioUnit();
    audioUnit->contextName = name;
    if (isMIDIGenerator()) {
        connectMIDIOutput();
    }
    attach(effect);
    if (std::dynamic_pointer_cast<AVAudioMixerNode>(audioNode)) {
        return;
    }
    const double rate = checkedAt(audioUnit->outputBusses, 0).format.sampleRate;
    if (rate != engine->outputNode()->outputFormatForBus(0).sampleRate) {
        addRateConverters();
    }
}

void AudioUnitBase::attach(const std::shared_ptr<AVAudioUnit>& avunit)
{
    std::ignore = required(engine).attachNode(avunit);
    nodeDiagnostics(avunit);
    makeParameters();
    tellCreated(shared_from_this());
}

void AudioUnitBase::tellCreated(const std::shared_ptr<AudioUnitBase>& unit)
{
    if (const auto listener = delegate.lock()) {
        listener->onAudioUnitCreated(unit);
    }
}

void AudioUnitBase::connectMIDIOutput()
{
    directPrint(
        "AudioUnitBase:create(): The audio unit reports MIDI output names. Assigning a handling block.");
    audioUnit->setMIDIOutputEventBlock([wrapper = weak_from_this()](std::int64_t sampleTime,
                                                                    std::uint8_t cable, int length,
                                                                    const std::uint8_t* bytes) {
        const auto held = wrapper.lock();
        return held ? held->midi_local(sampleTime, cable, length, bytes) : noErr;
    });
    endWarnings();
    lostMIDITimer = mainRunLoop().schedule(warningInterval, weak_from_this(), [this] {
        if (lostMIDI.exchange(false)) {
            directPrint(noMIDIDelegate);
        }
    });
}

void AudioUnitBase::addRateConverters()
{
    const AVAudioFormat format = checkedAt(audioUnit->outputBusses, 0).format;
    if (audioUnit->inputBusses.empty()) {
        directPrint("AudioUnitBase:create(): The audio unit '", contextText(),
                    "' needs to be wrapped with sample rate converters.");
        inputNode = nullptr;
        outputNode = attachMixer();
    } else {
        inputNode = attachMixer();
        outputNode = attachMixer();
        std::ignore = engine->connect(inputNode, avAudioUnit, 0, 0, format);
    }
    std::ignore = engine->connect(avAudioUnit, outputNode, 0, 0, format);
}

std::shared_ptr<AVAudioMixerNode> AudioUnitBase::attachMixer()
{
    auto mixer = std::make_shared<AVAudioMixerNode>();
    std::ignore = engine->attachNode(mixer);
    return mixer;
}

void AudioUnitBase::destroy()
{
    if (!engine) {
        directPrint("AudioUnitBase::destroy(): ERROR: Engine is nil.");
    } else if (audioNode) {
        directPrint("AudioUnitBase::destroy(): INFO: desytroy for ", contextText(), " called.");
        if (audioUnit && !audioUnit->inputBusses.empty()) {
            std::ignore = engine->disconnectNodeInput(audioNode);
        }
        if (audioUnit && !audioUnit->outputBusses.empty()) {
            std::ignore = engine->disconnectNodeOutput(audioNode);
        }
        std::ignore = engine->detachNode(audioNode);
        if (inputNode) {
            std::ignore = engine->disconnectNodeInput(inputNode);
            removeConverter(inputNode);
        }
        if (outputNode) {
            std::ignore = engine->disconnectNodeOutput(outputNode);
            removeConverter(outputNode);
        }
    }
    audioUnit = nullptr;
    endWarnings();
}

void AudioUnitBase::endWarnings()
{
    if (lostMIDITimer) {
        lostMIDITimer->invalidate();
        lostMIDITimer = nullptr;
    }
}

void AudioUnitBase::removeConverter(std::shared_ptr<AVAudioMixerNode>& node)
{
    std::ignore = engine->detachNode(node);
    node = nullptr;
}

OSStatus AudioUnitBase::midi_local(std::int64_t sampleTime, std::uint8_t cable, int length,
                                   const std::uint8_t* data)
{
    if (length < 1 || data[0] < STATUS_NOTEOFF) {
        return noErr;
    }
    if (const auto listener = delegate.lock()) {
        listener->onAudioUnitMIDI(*this, sampleTime, cable, length, data);
    } else if (mainQueue().isMainThread()) {
        directPrint(noMIDIDelegate);
    } else {
        lostMIDI.store(true);
    }
    return noErr;
}

bool AudioUnitBase::isMixer() const
{
    return componentDescription.componentType == fourCharacterCode("aumx");
}

bool AudioUnitBase::isMIDIGenerator() const
{
    return audioUnit && !audioUnit->MIDIOutputNames.empty();
}

bool AudioUnitBase::isMIDIReceiver() const
{
    return audioUnit && audioUnit->scheduleMIDIEventBlock();
}

std::string AudioUnitBase::contextText() const
{
    return audioUnit ? text(audioUnit->contextName) : "nil";
}

} // namespace volvelle
