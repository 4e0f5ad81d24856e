#include "services/audiograph/graph/AUAudioUnit.h"

#include "base/realtime/AudioSource.h"
#include "services/audiograph/graph/AudioUnitCalls.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <tuple>

namespace volvelle {

namespace {

constexpr double engineRate = AudioSource::sampleRate;
constexpr std::size_t maximumOutside = 2047;    // messages
constexpr std::size_t maximumEnds = 512;        // more of those that end something
constexpr std::int64_t maximumOffset = 1 << 30; // frames

std::int64_t number(std::uint32_t value)
{
    return static_cast<std::int64_t>(value);
}

} // namespace

AUAudioUnit::AUAudioUnit(const AudioComponentDescription& description)
    : componentDescription(description), outside(maximumOutside + maximumEnds)
{
}

AUAudioUnit::~AUAudioUnit() = default;

PropertyDictionary AUAudioUnit::fullState() const
{
    PropertyDictionary values;
    if (parameterTree != nullptr) {
        for (const auto& parameter : parameterTree->allParameters) {
            values[std::to_string(parameter->address)] = {static_cast<double>(parameter->value())};
        }
    }
    return {{"type", {number(componentDescription.componentType)}},
            {"subtype", {number(componentDescription.componentSubType)}},
            {"manufacturer", {number(componentDescription.componentManufacturer)}},
            {"parameters", {values}}};
}

void AUAudioUnit::setFullState(const PropertyDictionary& state)
{
    const auto entry = state.find("parameters");
    const auto* values = entry == state.end() ? nullptr : entry->second.as<PropertyDictionary>();
    if (values == nullptr || parameterTree == nullptr) {
        return;
    }
    for (const auto& parameter : parameterTree->allParameters) {
        const auto value = values->find(std::to_string(parameter->address));
        if (value == values->end()) {
            continue;
        }
        if (const auto* real = value->second.as<double>()) {
            parameter->setValue(static_cast<float>(*real));
        } else if (const auto* whole = value->second.as<std::int64_t>()) {
            parameter->setValue(static_cast<float>(*whole));
        }
    }
}

OSStatus AUAudioUnit::setProperty(std::uint32_t, std::uint32_t, std::uint32_t, const void*, std::uint32_t)
{
    return kAudioToolboxErr_InvalidProperty;
}

OSStatus AUAudioUnit::musicDeviceMIDIEvent(std::uint32_t status, std::uint32_t data1, std::uint32_t data2,
                                           std::uint32_t sampleOffset)
{
    if (!takesMIDI || !isChannelStatus(status) || data1 > 127 || data2 > 127) {
        return kAudio_ParamError;
    }
    OutsideMessage message;
    message.offset = std::min<std::uint32_t>(sampleOffset, static_cast<std::uint32_t>(maximumOffset));
    message.era = era.load(std::memory_order_relaxed);
    message.bytes = {static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1),
                     static_cast<std::uint8_t>(data2)};
    const bool hasRoom = outside.size() < maximumOutside || HeldSounds::ends(message.bytes);
    return hasRoom && outside.push(message) ? noErr : kAudioToolboxErr_CannotDoInCurrentContext;
}

void AUAudioUnit::prepareToPlay(std::span<const AUMIDIProgram>) {}

AUScheduleMIDIEventBlock AUAudioUnit::scheduleMIDIEventBlock()
{
    if (!takesMIDI) {
        return {};
    }
    return [this](std::int64_t sampleOffset, std::uint8_t cable, int length, const std::uint8_t* bytes) {
        return scheduleMIDIEvent(sampleOffset, cable, length, bytes);
    };
}

OSStatus AUAudioUnit::scheduleMIDIEvent(std::int64_t sampleOffset, std::uint8_t cable, int length,
                                        const std::uint8_t* bytes) noexcept
{
    return sampleOffset < 0 ? kAudio_ParamError
                            : scheduleMIDIEventAt(static_cast<double>(sampleOffset), cable, length, bytes);
}

OSStatus AUAudioUnit::scheduleMIDIEventAt(double sampleOffset, std::uint8_t cable, int length,
                                          const std::uint8_t* bytes) noexcept
{
    if (!takesMIDI || length < 1 || sampleOffset <= -1.0) {
        return kAudio_ParamError;
    }
    TimedMessage event;
    event.offset = static_cast<int>(std::clamp<std::int64_t>(ownOffset(sampleOffset), 0, maximumOffset));
    event.cable = cable;
    event.length = length;
    if (length <= 3) {
        std::copy_n(bytes, length, event.shortBytes.begin());
    } else {
        event.longBytes = bytes;
    }
    if (!isInPlan || !line.insert(event)) {
        return kAudioToolboxErr_CannotDoInCurrentContext;
    }
    if (bytes[0] < STATUS_SYSEX) {
        heard = static_cast<std::uint16_t>(heard | 1U << channelOf(bytes[0]));
    }
    return noErr;
}

// Frames of the unit from its next block on.
std::int64_t AUAudioUnit::ownOffset(double sampleOffset) const noexcept
{
    const double inBounds = std::min(sampleOffset, static_cast<double>(maximumOffset));
    const double rate = outputBusses.empty() ? engineRate : outputBusses.front().format.sampleRate;
    if (rate == engineRate || !isInEngine) {
        return std::llround(inBounds * rate / engineRate);
    }
    const double place = (static_cast<double>(engineClock) + inBounds) * rate / engineRate;
    return clockAtEntry + pullAhead + std::llround(place) - clock;
}

void AUAudioUnit::setMIDIOutputEventBlock(AUMIDIOutputEventBlock block)
{
    const AUMIDIOutputEventBlock* next = nullptr;
    if (block) {
        outputs.push_back(std::make_unique<AUMIDIOutputEventBlock>(std::move(block)));
        next = outputs.back().get();
    }
    output.store(next, std::memory_order_release);
}

OSStatus AUAudioUnit::sendMIDIOutput(std::int64_t sampleTime, std::uint8_t cable, int length,
                                     const std::uint8_t* bytes) noexcept
{
    const AUMIDIOutputEventBlock* block = output.load(std::memory_order_acquire);
    return block != nullptr ? (*block)(sampleTime, cable, length, bytes) : noErr;
}

void AUAudioUnit::render(const float* inputLeft, const float* inputRight, float* left, float* right,
                         int frames) noexcept
{
    takeOutsideMessages();
    const std::span<const TimedMessage> events = line.upTo(frames);
    renderBlock(inputLeft, inputRight, left, right, frames, events);
    line.removeFront(events.size());
    line.advance(frames);
    clock += frames;
}

void AUAudioUnit::takeOutsideMessages() noexcept
{
    OutsideMessage message;
    while (outside.pop(message)) {
        if (message.era == heardEra) {
            std::ignore = scheduleMIDIEvent(message.offset, 0, shortMessageLength(message.bytes[0]),
                                            message.bytes.data());
        }
    }
}

void AUAudioUnit::beginAnew() noexcept
{
    heardEra = era.load(std::memory_order_acquire);
    line.clear();
    reset();
}

void AUAudioUnit::setInPlan(bool isIn) noexcept
{
    heardEra = era.load(std::memory_order_acquire);
    line.clear();
    if (!isIn) {
        reset();
    }
    isInPlan = isIn;
    isInEngine = isIn;
    engineClock = 0;
    clockAtEntry = clock;
}

} // namespace volvelle
