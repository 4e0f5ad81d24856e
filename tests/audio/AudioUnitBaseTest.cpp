#include "services/audiograph/graph/AudioComponentRegistry.h"
#include "tests/audio/UnitFixture.h"

namespace volvelle::test {
namespace {

class AudioUnitBaseTest : public UnitTest {};

TEST_F(AudioUnitBaseTest, ANewWrapperHoldsItsEngineAndNothingElse)
{
    const auto fresh = AudioUnitBase::make(engine);
    EXPECT_EQ(fresh->engine, engine);
    EXPECT_EQ(fresh->componentDescription, AudioComponentDescription{});
    EXPECT_EQ(fresh->index, 0);
    EXPECT_EQ(fresh->delegate.lock(), nullptr);
    EXPECT_EQ(fresh->getAVAudioUnit(), nullptr);
    EXPECT_EQ(fresh->audioUnit, nullptr);
    EXPECT_EQ(fresh->inputNode, nullptr);
    EXPECT_EQ(fresh->outputNode, nullptr);
    EXPECT_EQ(fresh->getMainNode(0), nullptr);
    EXPECT_EQ(fresh->parameterTree, nullptr);
    EXPECT_TRUE(fresh->parameters.empty());
    EXPECT_FALSE(fresh->isWrapped());
}

TEST_F(AudioUnitBaseTest, CreatingNamesTheUnitAttachesItsNodeAndTellsTheDelegate)
{
    wrapper->create("Lead");
    ASSERT_NE(component.unit, nullptr);
    EXPECT_EQ(wrapper->audioUnit, component.unit);
    EXPECT_EQ(component.unit->contextName, "Lead");
    EXPECT_EQ(wrapper->getAVAudioUnit()->auAudioUnit(), component.unit);
    EXPECT_EQ(wrapper->getAVAudioUnit()->engine, engine.get());
    EXPECT_EQ(listener->calls, Lines{"created"});
    EXPECT_EQ(listener->created, wrapper);
    EXPECT_EQ(console.take(), parametersRead("Lead"));
    listener->created.reset();
}

TEST_F(AudioUnitBaseTest, AComponentThatIsNotThereIsToldAsANullUnit)
{
    wrapper->componentDescription.componentSubType = fourCharacterCode("none");
    wrapper->create("Lead");
    EXPECT_EQ(listener->calls, Lines{"not created"});
    EXPECT_EQ(wrapper->audioUnit, nullptr);
    EXPECT_EQ(wrapper->getAVAudioUnit(), nullptr);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(AudioUnitBaseTest, WithoutADelegateCreatingTellsNobody)
{
    listener.reset();
    wrapper->create("Lead");
    EXPECT_EQ(wrapper->audioUnit, component.unit);
    wrapper->componentDescription = {};
    wrapper->create("Other");
    EXPECT_EQ(wrapper->audioUnit, component.unit);
}

TEST_F(AudioUnitBaseTest, CreatingWithoutAnEngineStopsTheProgram)
{
    wrapper->engine = nullptr;
    EXPECT_DEATH(wrapper->create("Lead"), std::string(nilMessage));
}

TEST_F(AudioUnitBaseTest, AComponentThatIsNotThereNeedsNoEngine)
{
    wrapper->engine = nullptr;
    wrapper->componentDescription = {};
    wrapper->create("Lead");
    EXPECT_EQ(listener->calls, Lines{"not created"});
}

TEST_F(AudioUnitBaseTest, AUnitWithoutOutputBussesStopsTheProgram)
{
    class Deaf : public FakeUnit {
    public:
        explicit Deaf(const AudioComponentDescription& description) : FakeUnit(description, {})
        {
            outputBusses.clear();
        }
    };

    EXPECT_DEATH(
        {
            registerAudioComponent(fakeComponent,
                                   [](const auto& asked) { return std::make_shared<Deaf>(asked); });
            wrapper->create("Lead");
        },
        std::string(indexMessage));
}

TEST_F(AudioUnitBaseTest, CreatingLeavesTheMainNodeAlone)
{
    wrapper->create("Lead");
    EXPECT_EQ(wrapper->getMainNode(0), nullptr);
    EXPECT_EQ(wrapper->getOutputNode(0), nullptr);
    wrapper->setMainNode(wrapper->getAVAudioUnit());
    EXPECT_EQ(wrapper->getMainNode(0), wrapper->getAVAudioUnit());
    EXPECT_EQ(wrapper->getMainNode(5), wrapper->getAVAudioUnit());
    listener->created.reset();
}

TEST_F(AudioUnitBaseTest, TheNodeOfTheUnitIsPlainlySetAndRead)
{
    const auto node =
        std::make_shared<AVAudioUnit>(std::make_shared<FakeUnit>(fakeComponent, FakeUnitPlan{}));
    wrapper->setAVAudioUnit(node);
    EXPECT_EQ(wrapper->getAVAudioUnit(), node);
    EXPECT_EQ(wrapper->audioUnit, nullptr);
}

TEST_F(AudioUnitBaseTest, OnlyTheTypeMakesAMixer)
{
    EXPECT_FALSE(wrapper->isMixer());
    wrapper->componentDescription.componentType = fourCharacterCode("aumx");
    EXPECT_TRUE(wrapper->isMixer());
}

TEST_F(AudioUnitBaseTest, AUnitThatTakesMIDIIsAReceiver)
{
    EXPECT_FALSE(wrapper->isMIDIReceiver());
    wrapper->create("Deaf");
    EXPECT_FALSE(wrapper->isMIDIReceiver());
    component.plan.takesMIDI = true;
    wrapper->create("Keys");
    EXPECT_TRUE(wrapper->isMIDIReceiver());
    listener->created.reset();
}

TEST_F(AudioUnitBaseTest, AUnitThatNamesMIDIOutputsIsAGenerator)
{
    EXPECT_FALSE(wrapper->isMIDIGenerator());
    wrapper->create("Mute");
    EXPECT_FALSE(wrapper->isMIDIGenerator());
    component.plan.MIDIOutputNames = {"notes"};
    wrapper->create("Arp");
    EXPECT_TRUE(wrapper->isMIDIGenerator());
    listener->created.reset();
}

TEST_F(AudioUnitBaseTest, AWrapperPrintsAsItsClass)
{
    EXPECT_EQ(wrapper->className(), "AudioUnitBase");
}

} // namespace
} // namespace volvelle::test
