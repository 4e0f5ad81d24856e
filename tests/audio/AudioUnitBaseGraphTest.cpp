#include "tests/audio/UnitFixture.h"

#include <algorithm>
#include <vector>

namespace volvelle::test {
namespace {

class AudioUnitBaseGraphTest : public UnitTest {
protected:
    void createAs(FakeUnitPlan plan)
    {
        component.plan = std::move(plan);
        wrapper->create("Lead");
        wrapper->setMainNode(wrapper->getAVAudioUnit());
        listener->created.reset();
        console.take();
    }

    std::string connectionsText() const
    {
        std::string result;
        for (const AudioConnection& wire : engine->connections().list) {
            result += concat(nameOf(wire.from), " ", wire.fromBus, " to ", nameOf(wire.to), " ", wire.toBus,
                             " at ", wire.format.sampleRate, "; ");
        }
        return result;
    }

    std::string nameOf(const std::shared_ptr<AVAudioNode>& node) const
    {
        if (node == engine->mainMixerNode()) {
            return "main";
        }
        if (node == engine->outputNode()) {
            return "end";
        }
        if (node == wrapper->getAVAudioUnit()) {
            return "unit";
        }
        return node == wrapper->inputNode ? "in" : node == wrapper->outputNode ? "out" : "stranger";
    }

    bool isAttached(const std::shared_ptr<AVAudioNode>& node) const
    {
        return std::ranges::find(engine->attachedNodes(), node) != engine->attachedNodes().end();
    }

    static constexpr const char* mainWire = "main 0 to end 0 at 48000.0; ";
};

TEST_F(AudioUnitBaseGraphTest, AUnitOfTheEnginesRateGetsNoConverters)
{
    createAs({});
    EXPECT_FALSE(wrapper->isWrapped());
    EXPECT_EQ(wrapper->getOutputNode(0), wrapper->getMainNode(0));
    EXPECT_EQ(wrapper->getInputNode(0), wrapper->getMainNode(0));
    EXPECT_EQ(connectionsText(), mainWire);
}

TEST_F(AudioUnitBaseGraphTest, AGeneratorOfAnotherRateGetsOneConverterBehindIt)
{
    component.plan = {.rate = 44100.0};
    wrapper->create("Lead");
    Lines expected = parametersRead("Lead");
    expected.emplace_back(
        "AudioUnitBase:create(): The audio unit 'Lead' needs to be wrapped with sample rate converters.");
    EXPECT_EQ(console.take(), expected);
    wrapper->setMainNode(wrapper->getAVAudioUnit());
    EXPECT_TRUE(wrapper->isWrapped());
    EXPECT_EQ(wrapper->inputNode, nullptr);
    EXPECT_EQ(wrapper->getInputNode(0), wrapper->getMainNode(0));
    EXPECT_EQ(wrapper->getOutputNode(0), wrapper->outputNode);
    EXPECT_EQ(connectionsText(), concat(mainWire, "unit 0 to out 0 at 44100.0; "));
    listener->created.reset();
}

TEST_F(AudioUnitBaseGraphTest, AnEffectOfAnotherRateGetsConvertersOnBothSidesAndPrintsNothingAboutIt)
{
    component.plan = {.rate = 96000.0, .hasInput = true};
    wrapper->create("Echo");
    EXPECT_EQ(console.take(), parametersRead("Echo"));
    EXPECT_TRUE(wrapper->isWrapped());
    EXPECT_EQ(wrapper->getInputNode(0), wrapper->inputNode);
    EXPECT_EQ(wrapper->getOutputNode(0), wrapper->outputNode);
    EXPECT_EQ(connectionsText(), concat(mainWire, "in 0 to unit 0 at 96000.0; unit 0 to out 0 at 96000.0; "));
    listener->created.reset();
}

TEST_F(AudioUnitBaseGraphTest, AMixerAsTheMainNodeNeedsNoConverters)
{
    wrapper->setMainNode(std::make_shared<AVAudioMixerNode>());
    component.plan = {.rate = 44100.0};
    wrapper->create("Lead");
    EXPECT_FALSE(wrapper->isWrapped());
    EXPECT_EQ(console.take(), parametersRead("Lead"));
    listener->created.reset();
}

TEST_F(AudioUnitBaseGraphTest, AWrappedGeneratorIsHeardThroughItsOutputNode)
{
    createAs({.rate = 44100.0});
    ASSERT_EQ(engine->connect(wrapper->getOutputNode(0), engine->mainMixerNode(), 0, 0), noErr);
    ASSERT_EQ(engine->enableManualRenderingMode(512), noErr);
    ASSERT_EQ(engine->start().error(), "");
    std::vector<float> left(512);
    std::vector<float> right(512);
    for (int i = 0; i < 10; ++i) {
        ASSERT_EQ(engine->renderOffline(512, left.data(), right.data()), noErr);
    }
    EXPECT_NEAR(left[256], FakeUnit::level, 0.001);
    EXPECT_NEAR(right[256], FakeUnit::level, 0.001);
}

TEST_F(AudioUnitBaseGraphTest, DestroyingTakesUnitAndConvertersOutOfTheGraph)
{
    createAs({.rate = 96000.0, .hasInput = true});
    const std::vector<std::shared_ptr<AVAudioNode>> nodes{wrapper->getAVAudioUnit(), wrapper->inputNode,
                                                          wrapper->outputNode};
    ASSERT_EQ(engine->connect(wrapper->getOutputNode(0), engine->mainMixerNode(), 0, 0), noErr);
    wrapper->destroy();
    EXPECT_EQ(console.take(), Lines{"AudioUnitBase::destroy(): INFO: desytroy for Lead called."});
    for (const auto& node : nodes) {
        EXPECT_FALSE(isAttached(node));
    }
    EXPECT_EQ(connectionsText(), mainWire);
    EXPECT_FALSE(wrapper->isWrapped());
    EXPECT_EQ(wrapper->inputNode, nullptr);
    EXPECT_EQ(wrapper->audioUnit, nullptr);
    EXPECT_EQ(listener->calls, Lines{"created"});
}

TEST_F(AudioUnitBaseGraphTest, DestroyingWithoutAMainNodeForgetsTheUnitAndLeavesTheNodes)
{
    component.plan = {.rate = 44100.0};
    wrapper->create("Lead");
    console.take();
    listener->created.reset();
    wrapper->destroy();
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_EQ(wrapper->audioUnit, nullptr);
    EXPECT_TRUE(wrapper->isWrapped());
    EXPECT_TRUE(isAttached(wrapper->getAVAudioUnit()));
    EXPECT_TRUE(isAttached(wrapper->outputNode));
}

TEST_F(AudioUnitBaseGraphTest, TheEngineReleasesWhatIsLeftWhenItDies)
{
    component.plan = {.rate = 44100.0};
    wrapper->create("Lead");
    listener->created.reset();
    wrapper->destroy();
    std::weak_ptr<AVAudioUnit> node = wrapper->getAVAudioUnit();
    wrapper.reset();
    EXPECT_FALSE(node.expired());
    engine.reset();
    EXPECT_TRUE(node.expired());
}

TEST_F(AudioUnitBaseGraphTest, DestroyingWithoutAnEngineIsAnErrorAndForgetsTheUnit)
{
    createAs({.rate = 44100.0});
    wrapper->engine = nullptr;
    wrapper->destroy();
    EXPECT_EQ(console.take(), Lines{"AudioUnitBase::destroy(): ERROR: Engine is nil."});
    EXPECT_EQ(wrapper->audioUnit, nullptr);
    EXPECT_TRUE(wrapper->isWrapped());
}

TEST_F(AudioUnitBaseGraphTest, DestroyingTwiceFindsNothingMoreToTakeOut)
{
    createAs({});
    wrapper->destroy();
    console.take();
    wrapper->destroy();
    EXPECT_EQ(console.take(), Lines{"AudioUnitBase::destroy(): INFO: desytroy for nil called."});
    EXPECT_EQ(connectionsText(), mainWire);
}

} // namespace
} // namespace volvelle::test
