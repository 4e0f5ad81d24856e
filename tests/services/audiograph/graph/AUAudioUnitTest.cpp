#include "services/audiograph/graph/PeakLimiter.h"
#include "tests/services/audiograph/TestUnits.h"

#include <array>
#include <gmock/gmock.h>

namespace volvelle::test {

namespace {

using testing::ElementsAre;

class TalkingUnit final : public AUAudioUnit {
public:
    TalkingUnit() : AUAudioUnit(synthesizerComponent)
    {
        outputBusses.resize(1);
        MIDIOutputNames = {"Out"};
    }

protected:
    void renderBlock(const float*, const float*, float*, float*, int,
                     std::span<const TimedMessage>) noexcept override
    {
        const std::array<std::uint8_t, 3> bytes{0x90, 60, 100};
        sendMIDIOutput(renderedFrames() + 1, 2, 3, bytes.data());
    }
};

template <typename Unit>
void renderBlock(Unit& unit, int frames)
{
    std::array<float, AUAudioUnit::maximumFrames> left{};
    std::array<float, AUAudioUnit::maximumFrames> right{};
    unit.render(left.data(), right.data(), left.data(), right.data(), frames);
}

TEST(AUAudioUnit, MessagesArriveByOffsetAndEqualOffsetsInTheirOrder)
{
    RecordingUnit unit;
    const AUScheduleMIDIEventBlock schedule = unit.scheduleMIDIEventBlock();
    const std::array<std::uint8_t, 3> first{0x90, 60, 100};
    const std::array<std::uint8_t, 3> second{0x80, 60, 0};
    const std::array<std::uint8_t, 2> third{0xC0, 5};
    EXPECT_EQ(schedule(20, 0, 3, first.data()), noErr);
    EXPECT_EQ(schedule(5, 0, 3, second.data()), noErr);
    EXPECT_EQ(schedule(20, 0, 2, third.data()), noErr);
    EXPECT_EQ(schedule(70, 0, 3, second.data()), noErr);
    renderBlock(unit, 64);
    EXPECT_THAT(unit.take(), ElementsAre("5: 80 3C 00", "20: 90 3C 64", "20: C0 05"));
    renderBlock(unit, 64);
    EXPECT_THAT(unit.take(), ElementsAre("70: 80 3C 00"));
}

TEST(AUAudioUnit, OffsetsAreConvertedToTheRateOfTheUnit)
{
    RecordingUnit unit(24000.0);
    const std::array<std::uint8_t, 3> bytes{0x90, 60, 100};
    EXPECT_EQ(unit.scheduleMIDIEvent(21, 0, 3, bytes.data()), noErr);
    renderBlock(unit, 32);
    EXPECT_THAT(unit.take(), ElementsAre("11: 90 3C 64"));
}

TEST(AUAudioUnit, AUnitThatTakesNoMIDIHasNoBlockForIt)
{
    PeakLimiter limiter;
    EXPECT_FALSE(limiter.scheduleMIDIEventBlock());
    EXPECT_EQ(limiter.musicDeviceMIDIEvent(0x90, 60, 100, 0), kAudio_ParamError);
}

TEST(AUAudioUnit, MessagesFromOutsideArriveWithTheNextBlock)
{
    const auto unit = std::make_shared<RecordingUnit>();
    EXPECT_EQ(MusicDeviceMIDIEvent(unit, 0xB1, 7, 90, 0), noErr);
    EXPECT_EQ(MusicDeviceMIDIEvent(unit, 0xC1, 7, 0, 3), noErr);
    EXPECT_EQ(MusicDeviceMIDIEvent(unit, 0xEF, 127, 127, 4), noErr);
    EXPECT_EQ(MusicDeviceMIDIEvent(unit, 0x40, 7, 0, 3), kAudio_ParamError);
    EXPECT_EQ(MusicDeviceMIDIEvent(unit, 0xF0, 7, 0, 3), kAudio_ParamError);
    EXPECT_EQ(MusicDeviceMIDIEvent(unit, 0x80, 128, 0, 3), kAudio_ParamError);
    EXPECT_EQ(MusicDeviceMIDIEvent(unit, 0x80, 0, 128, 3), kAudio_ParamError);
    EXPECT_EQ(MusicDeviceMIDIEvent(nullptr, 0xC1, 7, 0, 3), kAudio_ParamError);
    renderBlock(*unit, 64);
    EXPECT_THAT(unit->take(), ElementsAre("0: B1 07 5A", "3: C1 07", "4: EF 7F 7F"));
}

TEST(AUAudioUnit, AFullQueueFromOutsideIsAStatus)
{
    RecordingUnit unit;
    for (int i = 0; i < 2047; ++i) {
        ASSERT_EQ(unit.musicDeviceMIDIEvent(0xB0, 1, 1, 0), noErr);
    }
    EXPECT_EQ(unit.musicDeviceMIDIEvent(0xB0, 1, 1, 0), kAudioToolboxErr_CannotDoInCurrentContext);
    for (int i = 0; i < 512; ++i) {
        EXPECT_EQ(unit.musicDeviceMIDIEvent(0x90, 60, 1, 0), kAudioToolboxErr_CannotDoInCurrentContext);
        ASSERT_EQ(unit.musicDeviceMIDIEvent(0x80, 60, 0, 0), noErr);
    }
    EXPECT_EQ(unit.musicDeviceMIDIEvent(0x80, 60, 0, 0), kAudioToolboxErr_CannotDoInCurrentContext);
    renderBlock(unit, 1);
    EXPECT_EQ(unit.musicDeviceMIDIEvent(0xB0, 1, 1, 0), noErr);
}

TEST(AUAudioUnit, AFullLineRefusesNoteOnsBeforeNoteOffs)
{
    RecordingUnit unit;
    const std::array<std::uint8_t, 3> on{0x90, 60, 100};
    const std::array<std::uint8_t, 3> off{0x80, 60, 0};
    int ons = 0;
    while (unit.scheduleMIDIEvent(0, 0, 3, on.data()) == noErr) {
        ++ons;
    }
    int offs = 0;
    while (unit.scheduleMIDIEvent(0, 0, 3, off.data()) == noErr) {
        ++offs;
    }
    constexpr int owed = 255; // ends, of one key
    EXPECT_EQ(ons, TimedMessageLine::capacity - owed);
    EXPECT_EQ(ons + offs, TimedMessageLine::endsCapacity);
}

TEST(AUAudioUnit, UnknownPropertiesAreAStatus)
{
    const auto unit = std::make_shared<RecordingUnit>();
    const std::uint32_t value = 1;
    EXPECT_EQ(AudioUnitSetProperty(unit, 4119, kAudioUnitScope_Global, 0, &value, sizeof(value)),
              kAudioToolboxErr_InvalidProperty);
    EXPECT_EQ(AudioUnitSetProperty(nullptr, 4119, kAudioUnitScope_Global, 0, &value, sizeof(value)),
              kAudio_ParamError);
}

TEST(AUAudioUnit, TheFullStateHoldsWhatTheUnitIsAndItsParameters)
{
    PeakLimiter limiter;
    limiter.parameterTree->parameterWithAddress(PeakLimiter::preGainAddress)->setValue(6.0F);
    const PropertyDictionary expected{
        {"manufacturer", {std::int64_t{0x6170706C}}},
        {"parameters",
         {PropertyDictionary{
             {"0", {6.0}}, {"1", {static_cast<double>(-0.3F)}}, {"2", {static_cast<double>(0.1F)}}}}},
        {"subtype", {std::int64_t{0x6C6D7472}}},
        {"type", {std::int64_t{0x61756678}}}};
    EXPECT_EQ(limiter.fullState(), expected);
}

TEST(AUAudioUnit, SettingTheFullStateTakesWhatFits)
{
    PeakLimiter limiter;
    limiter.setFullState(
        {{"parameters",
          {PropertyDictionary{
              {"0", {std::int64_t{3}}}, {"1", {-6.0}}, {"2", {std::string("x")}}, {"77", {1.0}}}}}});
    EXPECT_EQ(limiter.parameterTree->parameterWithAddress(0)->value(), 3.0F);
    EXPECT_EQ(limiter.parameterTree->parameterWithAddress(1)->value(), -6.0F);
    EXPECT_EQ(limiter.parameterTree->parameterWithAddress(2)->value(), 0.1F);
    limiter.setFullState({{"parameters", {true}}});
    limiter.setFullState({});
    EXPECT_EQ(limiter.parameterTree->parameterWithAddress(0)->value(), 3.0F);
}

TEST(AUAudioUnit, WhatAUnitPlaysGoesToItsOutputBlock)
{
    TalkingUnit unit;
    std::vector<std::int64_t> times;
    renderBlock(unit, 64);
    unit.setMIDIOutputEventBlock(
        [&](std::int64_t time, std::uint8_t cable, int length, const std::uint8_t* bytes) {
            EXPECT_EQ(cable, 2);
            EXPECT_EQ(length, 3);
            EXPECT_EQ(bytes[0], 0x90);
            times.push_back(time);
            return noErr;
        });
    renderBlock(unit, 64);
    renderBlock(unit, 1);
    unit.setMIDIOutputEventBlock({});
    renderBlock(unit, 64);
    EXPECT_THAT(times, ElementsAre(65, 129));
}

} // namespace

} // namespace volvelle::test
