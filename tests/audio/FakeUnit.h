#pragma once

#include "services/audiograph/graph/AUAudioUnit.h"
#include "services/audiograph/graph/AudioComponentDescription.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace volvelle::test {

using Lines = std::vector<std::string>;

inline constexpr AudioComponentDescription fakeComponent{fourCharacterCode("aufx"), fourCharacterCode("fake"),
                                                         fourCharacterCode("test"), 1, 2};

// What a fake unit is to be.
struct FakeUnitPlan {
    double rate = 48000.0;
    bool hasInput = false;
    bool takesMIDI = false;
    bool hasTree = true;
    std::vector<std::string> MIDIOutputNames = {};
};

// Sounds 0.5 on both sides, or its input, and notes everything that it is told.
class FakeUnit : public AUAudioUnit {
public:
    static constexpr float level = 0.5F;

    FakeUnit(const AudioComponentDescription& description, const FakeUnitPlan& plan);

    Lines calls; // properties, messages from outside and preparations
    Lines heard; // messages on the render thread, "144 60 100 at 24000"
    std::function<OSStatus(const std::string&)> failure; // the answer to a call; empty for noErr
    std::vector<PropertyDictionary> states;              // that were set
    std::optional<PropertyDictionary> ownState;          // instead of the usual one

    PropertyDictionary fullState() const override;
    void setFullState(const PropertyDictionary& state) override;
    OSStatus setProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element, const void* data,
                         std::uint32_t size) override;
    OSStatus musicDeviceMIDIEvent(std::uint32_t status, std::uint32_t data1, std::uint32_t data2,
                                  std::uint32_t sampleOffset) override;
    void prepareToPlay(std::span<const AUMIDIProgram> programs) override;

    // Plays MIDI, as a unit does while it renders.
    OSStatus playMIDI(std::int64_t sampleTime, std::uint8_t cable, std::initializer_list<std::uint8_t> bytes);

    // What was heard since the last take.
    Lines takeHeard();

protected:
    void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right, int frames,
                     std::span<const TimedMessage> events) noexcept override;

private:
    OSStatus note(std::string call);
};

// Registers a component of fake units for its lifetime.
class FakeComponent {
public:
    explicit FakeComponent(const AudioComponentDescription& description = fakeComponent,
                           FakeUnitPlan plan = {});
    ~FakeComponent();
    FakeComponent(const FakeComponent&) = delete;
    FakeComponent& operator=(const FakeComponent&) = delete;

    FakeUnitPlan plan;              // of the units that are made from now on
    std::shared_ptr<FakeUnit> unit; // the last that was made

private:
    AudioComponentDescription description;
};

} // namespace volvelle::test
