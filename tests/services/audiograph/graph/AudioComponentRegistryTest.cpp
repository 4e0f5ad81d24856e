#include "services/audiograph/graph/AudioComponentRegistry.h"
#include "services/audiograph/graph/AVAudioUnitEffect.h"
#include "services/audiograph/graph/AVAudioUnitMIDIInstrument.h"
#include "tests/services/audiograph/TestUnits.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

constexpr AudioComponentDescription unknown{fourCharacterCode("aumu"), fourCharacterCode("none"),
                                            fourCharacterCode("test"), 0, 0};

TEST(AudioComponentRegistry, FourLettersSpellANumber)
{
    EXPECT_EQ(fourCharacterCode("aumu"), 0x61756D75U);
    EXPECT_EQ(fourCharacterCode("appl"), 0x6170706CU);
}

TEST(AudioComponentRegistry, DescriptionsAreEqualInAllFiveNumbers)
{
    AudioComponentDescription other = limiterComponent;
    EXPECT_EQ(other, limiterComponent);
    other.componentFlagsMask = 1;
    EXPECT_NE(other, limiterComponent);
}

TEST(AudioComponentRegistry, AnUnknownComponentGivesNull)
{
    EXPECT_EQ(AVAudioUnitEffect::make(unknown), nullptr);
    EXPECT_EQ(AVAudioUnitMIDIInstrument::make(unknown), nullptr);
}

TEST(AudioComponentRegistry, TheLimiterIsThereFromTheStart)
{
    const auto node = AVAudioUnitEffect::make(limiterComponent);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->name(), "Peak limiter");
    EXPECT_EQ(node->audioComponentDescription(), limiterComponent);
    EXPECT_EQ(node->auAudioUnit(), node->audioUnit());
}

TEST(AudioComponentRegistry, ARegisteredComponentIsMadeUntilItIsTakenAway)
{
    registerAudioComponent(unknown, [](const auto&) { return std::make_shared<RecordingUnit>(); });
    AudioComponentDescription flagged = unknown;
    flagged.componentFlags = 5;
    const auto node = AVAudioUnitMIDIInstrument::make(flagged);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->volume(), 1.0F);
    EXPECT_EQ(node->rate(), 1.0F);
    node->setRate(2.0F);
    EXPECT_EQ(node->rate(), 2.0F);
    registerAudioComponent(unknown, {});
    EXPECT_EQ(AVAudioUnitMIDIInstrument::make(unknown), nullptr);
}

TEST(AudioComponentRegistry, AFactoryThatGivesNothingGivesNoNode)
{
    registerAudioComponent(unknown, [](const auto&) { return nullptr; });
    EXPECT_EQ(AVAudioUnitEffect::make(unknown), nullptr);
    registerAudioComponent(unknown, {});
}

} // namespace

} // namespace volvelle::test
