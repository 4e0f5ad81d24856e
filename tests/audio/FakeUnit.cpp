#include "tests/audio/FakeUnit.h"

#include "base/Text.h"
#include "services/audiograph/graph/AudioComponentRegistry.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <utility>

namespace volvelle::test {

namespace {

constexpr std::uint32_t soundBankProperty = 1100;

std::string payloadText(std::uint32_t property, const void* data)
{
    if (property == soundBankProperty) {
        return (*static_cast<const std::filesystem::path* const*>(data))->string();
    }
    std::uint32_t value = 0;
    std::memcpy(&value, data, sizeof value);
    return text(value);
}

} // namespace

FakeUnit::FakeUnit(const AudioComponentDescription& description, const FakeUnitPlan& plan)
    : AUAudioUnit(description)
{
    audioUnitName = "Fake";
    outputBusses = {{{plan.rate, 2}, "out", true}};
    if (plan.hasInput) {
        inputBusses = {{{plan.rate, 2}, "in", true}};
    }
    takesMIDI = plan.takesMIDI;
    MIDIOutputNames = plan.MIDIOutputNames;
    if (plan.hasTree) {
        parameterTree = std::make_shared<AUParameterTree>(std::vector<std::shared_ptr<AUParameter>>{
            std::make_shared<AUParameter>(7, "drive", "Drive", 0.0F, 10.0F, 1.0F),
            std::make_shared<AUParameter>(9, "mix", "Mix", 0.0F, 1.0F, 0.25F)});
    }
}

PropertyDictionary FakeUnit::fullState() const
{
    return ownState ? *ownState : AUAudioUnit::fullState();
}

void FakeUnit::setFullState(const PropertyDictionary& state)
{
    states.push_back(state);
    AUAudioUnit::setFullState(state);
}

OSStatus FakeUnit::setProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element,
                               const void* data, std::uint32_t size)
{
    return note(concat("property ", property, " of ", scope, " ", element, ": ", payloadText(property, data),
                       " (", size, " bytes)"));
}

OSStatus FakeUnit::musicDeviceMIDIEvent(std::uint32_t status, std::uint32_t data1, std::uint32_t data2,
                                        std::uint32_t sampleOffset)
{
    return note(concat("midi ", status, " ", data1, " ", data2, " at ", sampleOffset));
}

void FakeUnit::prepareToPlay(std::span<const AUMIDIProgram> programs)
{
    for (const AUMIDIProgram& program : programs) {
        note(concat("prepare ", program.program, " on ", program.channel));
    }
}

OSStatus FakeUnit::playMIDI(std::int64_t sampleTime, std::uint8_t cable,
                            std::initializer_list<std::uint8_t> bytes)
{
    return sendMIDIOutput(sampleTime, cable, static_cast<int>(bytes.size()), bytes.begin());
}

Lines FakeUnit::takeHeard()
{
    return std::exchange(heard, {});
}

void FakeUnit::renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right,
                           int frames, std::span<const TimedMessage> events) noexcept
{
    for (const TimedMessage& event : events) {
        std::string line;
        for (const std::uint8_t byte : event.bytes()) {
            line += concat(byte, " ");
        }
        heard.push_back(concat(line, "at ", renderedFrames() + event.offset));
    }
    for (int i = 0; i < frames; ++i) {
        left[i] = inputLeft != nullptr ? inputLeft[i] : level;
        right[i] = inputRight != nullptr ? inputRight[i] : level;
    }
}

OSStatus FakeUnit::note(std::string call)
{
    calls.push_back(std::move(call));
    return failure ? failure(calls.back()) : noErr;
}

FakeComponent::FakeComponent(const AudioComponentDescription& of, FakeUnitPlan first)
    : plan(std::move(first)), description(of)
{
    registerAudioComponent(description, [this](const AudioComponentDescription& asked) {
        unit = std::make_shared<FakeUnit>(asked, plan);
        return unit;
    });
}

FakeComponent::~FakeComponent()
{
    registerAudioComponent(description, {});
}

} // namespace volvelle::test
