#include "services/audiograph/graph/AVAudioUnitEffect.h"
#include "tests/services/audiograph/Studio.h"

#include <gmock/gmock.h>

namespace volvelle::test {

namespace {

using testing::ElementsAre;

class ScriptedSink final : public AudioSink {
public:
    Result<> open(AudioSource& newSource) override
    {
        ++opened;
        source = &newSource;
        return opens ? Result<>() : failure("No device.");
    }

    void close() override { ++closed; }

    std::string description() const override { return "scripted"; }

    bool isAudible() const override { return true; }

    bool opens = true;
    int opened = 0;
    int closed = 0;
    AudioSource* source = nullptr;
};

// What the engine gives next, on the left.
std::vector<float> rendered(AVAudioEngine& engine, int frames)
{
    std::vector<float> left(static_cast<std::size_t>(frames));
    std::vector<float> right(static_cast<std::size_t>(frames));
    EXPECT_EQ(engine.renderOffline(frames, left.data(), right.data()), noErr);
    return left;
}

struct RunningEngine {
    RunningEngine()
    {
        EXPECT_EQ(engine.enableManualRenderingMode(4096), noErr);
        EXPECT_EQ(engine.start().error(), "");
    }

    AVAudioEngine engine;
};

TEST(AVAudioEngine, WhatWaitsWhenTheEngineStopsIsNotHeardBehindTheNextStart)
{
    Studio studio;
    const auto& unit = studio.instrument->auAudioUnit();
    EXPECT_EQ(unit->musicDeviceMIDIEvent(0x90, 60, 100, 2000), noErr);
    studio.run(512);
    EXPECT_EQ(unit->musicDeviceMIDIEvent(0x90, 61, 100, 0), noErr);
    studio.engine->stop();
    EXPECT_EQ(unit->musicDeviceMIDIEvent(0x90, 62, 100, 0), noErr);
    ASSERT_EQ(studio.engine->start().error(), "");
    EXPECT_EQ(studio.run(4096), Lines{"512: 90 3E 64"});
}

TEST(AVAudioEngine, TheMixerIsConnectedToTheOutputFromTheStart)
{
    AVAudioEngine engine;
    const AudioConnection* connection = engine.connections().output(*engine.mainMixerNode());
    ASSERT_NE(connection, nullptr);
    EXPECT_EQ(connection->to, engine.outputNode());
    EXPECT_EQ(engine.outputNode()->outputFormatForBus(0), (AVAudioFormat{48000.0, 2}));
    EXPECT_EQ(engine.attachedNodes().size(), 2U);
}

TEST(AVAudioEngine, NodesAreAttachedAndDetached)
{
    AVAudioEngine engine;
    AVAudioEngine other;
    const auto node = nodeOf<CountingUnit>();
    EXPECT_EQ(engine.detachNode(node), kAUGraphErr_NodeNotFound);
    EXPECT_EQ(engine.attachNode(node), noErr);
    EXPECT_EQ(engine.attachNode(node), noErr);
    EXPECT_EQ(node->engine, &engine);
    EXPECT_EQ(other.attachNode(node), kAudio_ParamError);
    EXPECT_EQ(engine.detachNode(node), noErr);
    EXPECT_EQ(node->engine, nullptr);
    EXPECT_EQ(engine.detachNode(node), kAUGraphErr_NodeNotFound);
    EXPECT_EQ(engine.attachNode(nullptr), kAudio_ParamError);
    EXPECT_EQ(engine.detachNode(nullptr), kAudio_ParamError);
    EXPECT_EQ(engine.detachNode(engine.mainMixerNode()), kAudio_ParamError);
    EXPECT_EQ(engine.detachNode(engine.outputNode()), kAudio_ParamError);
}

TEST(AVAudioEngine, ConnectionsThatCannotBeAreAStatusAndChangeNothing)
{
    AVAudioEngine engine;
    const auto source = nodeOf<CountingUnit>();
    const auto slow = nodeOf<SineUnit>(440.0, 1.0, 44100.0);
    const auto effect = nodeOf<DoublingUnit>();
    const auto& mixer = engine.mainMixerNode();
    EXPECT_EQ(engine.connect(source, mixer, 0, 0), kAUGraphErr_NodeNotFound);
    for (const auto& node : {source, slow, effect}) {
        ASSERT_EQ(engine.attachNode(node), noErr);
    }
    EXPECT_EQ(engine.connect(source, nullptr, 0, 0), kAudio_ParamError);
    EXPECT_EQ(engine.connect(source, mixer, 1, 0), kAudioUnitErr_InvalidElement);
    EXPECT_EQ(engine.connect(source, mixer, 0, -1), kAudioUnitErr_InvalidElement);
    EXPECT_EQ(engine.connect(source, mixer, 0, AVAudioMixerNode::maximumInputs),
              kAudioUnitErr_InvalidElement);
    EXPECT_EQ(engine.connect(effect, source, 0, 0), kAudioUnitErr_InvalidElement);
    EXPECT_EQ(engine.connect(engine.outputNode(), mixer, 0, 0), kAudioUnitErr_InvalidElement);
    EXPECT_EQ(engine.connect(effect, effect, 0, 0), kAUGraphErr_InvalidConnection);
    EXPECT_EQ(engine.connect(slow, effect, 0, 0), kAudioUnitErr_FormatNotSupported);
    EXPECT_EQ(engine.connect(slow, engine.outputNode(), 0, 0), kAudioUnitErr_FormatNotSupported);
    EXPECT_EQ(engine.connect(slow, mixer, 0, 0, AVAudioFormat{96000.0, 2}), kAudioUnitErr_FormatNotSupported);
    EXPECT_EQ(engine.connect(slow, mixer, 0, 0, AVAudioFormat{44100.0, 1}), kAudioUnitErr_FormatNotSupported);
    EXPECT_EQ(engine.connections().list.size(), 1U);
}

TEST(AVAudioEngine, ACircleIsRefused)
{
    AVAudioEngine engine;
    const auto first = nodeOf<DoublingUnit>();
    const auto second = std::make_shared<AVAudioMixerNode>();
    ASSERT_EQ(engine.attachNode(first), noErr);
    ASSERT_EQ(engine.attachNode(second), noErr);
    EXPECT_EQ(engine.connect(first, second, 0, 0), noErr);
    EXPECT_EQ(engine.connect(second, first, 0, 0), kAUGraphErr_InvalidConnection);
}

TEST(AVAudioEngine, SourcesEffectsAndMixersRenderThroughToTheOutput)
{
    RunningEngine running;
    AVAudioEngine& engine = running.engine;
    const auto source = nodeOf<CountingUnit>();
    const auto effect = nodeOf<DoublingUnit>();
    ASSERT_EQ(engine.attachNode(source), noErr);
    ASSERT_EQ(engine.attachNode(effect), noErr);
    EXPECT_THAT(rendered(engine, 2), ElementsAre(0.0F, 0.0F));
    ASSERT_EQ(engine.connect(effect, engine.mainMixerNode(), 0, 0), noErr);
    EXPECT_THAT(rendered(engine, 2), ElementsAre(0.0F, 0.0F));
    ASSERT_EQ(engine.connect(source, effect, 0, 0), noErr);
    EXPECT_THAT(rendered(engine, 4), ElementsAre(0.0F, 2.0F, 4.0F, 6.0F));
    ASSERT_EQ(engine.connect(source, engine.mainMixerNode(), 0, 0), noErr); // past the effect
    EXPECT_THAT(rendered(engine, 2), ElementsAre(4.0F, 5.0F));
    ASSERT_EQ(engine.disconnectNodeOutput(source), noErr);
    EXPECT_THAT(rendered(engine, 2), ElementsAre(0.0F, 0.0F));
    ASSERT_EQ(engine.connect(source, engine.outputNode(), 0, 0), noErr);
    EXPECT_THAT(rendered(engine, 2), ElementsAre(6.0F, 7.0F));
    ASSERT_EQ(engine.disconnectNodeInput(engine.outputNode(), 0), noErr);
    EXPECT_THAT(rendered(engine, 2), ElementsAre(0.0F, 0.0F));
}

TEST(AVAudioEngine, AUnitThatLeavesTheGraphTakesNoMessagesUntilItIsBack)
{
    AVAudioEngine engine;
    ASSERT_EQ(engine.enableManualRenderingMode(512), noErr);
    ASSERT_EQ(engine.start().error(), "");
    const auto unit = std::make_shared<RecordingUnit>();
    const auto node = std::make_shared<AVAudioUnitMIDIInstrument>(unit);
    const std::array<std::uint8_t, 3> message{0x90, 60, 100};
    ASSERT_EQ(engine.attachNode(node), noErr);
    ASSERT_EQ(engine.connect(node, engine.mainMixerNode(), 0, 0), noErr);
    rendered(engine, 1);
    EXPECT_EQ(unit->scheduleMIDIEvent(0, 0, 3, message.data()), noErr);
    ASSERT_EQ(engine.disconnectNodeOutput(node), noErr);
    rendered(engine, 1);
    EXPECT_EQ(unit->scheduleMIDIEvent(0, 0, 3, message.data()), kAudioToolboxErr_CannotDoInCurrentContext);
    ASSERT_EQ(engine.connect(node, engine.mainMixerNode(), 0, 0), noErr);
    rendered(engine, 1);
    EXPECT_EQ(unit->scheduleMIDIEvent(0, 0, 3, message.data()), noErr);
}

TEST(AVAudioEngine, DisconnectingWhatIsNotAttachedIsAStatus)
{
    AVAudioEngine engine;
    const auto node = nodeOf<DoublingUnit>();
    EXPECT_EQ(engine.disconnectNodeInput(node), kAUGraphErr_NodeNotFound);
    EXPECT_EQ(engine.disconnectNodeInput(node, 0), kAUGraphErr_NodeNotFound);
    EXPECT_EQ(engine.disconnectNodeOutput(node), kAUGraphErr_NodeNotFound);
    ASSERT_EQ(engine.attachNode(node), noErr);
    EXPECT_EQ(engine.disconnectNodeInput(node), noErr);
    EXPECT_EQ(engine.disconnectNodeOutput(node), noErr);
}

TEST(AVAudioEngine, ADetachedNodeIsReleasedOnceTheRenderThreadLetItGo)
{
    RunningEngine running;
    auto node = nodeOf<CountingUnit>();
    const std::weak_ptr<AVAudioUnit> watch = node;
    ASSERT_EQ(running.engine.attachNode(node), noErr);
    ASSERT_EQ(running.engine.connect(node, running.engine.mainMixerNode(), 0, 0), noErr);
    rendered(running.engine, 64);
    ASSERT_EQ(running.engine.detachNode(node), noErr);
    node.reset();
    running.engine.collectGarbage();
    EXPECT_FALSE(watch.expired());
    rendered(running.engine, 64);
    EXPECT_FALSE(watch.expired());
    running.engine.collectGarbage();
    EXPECT_TRUE(watch.expired());
}

TEST(AVAudioEngine, TheEngineReleasesWhatIsLeftWhenItDies)
{
    auto engine = std::make_unique<AVAudioEngine>();
    auto dropped = nodeOf<CountingUnit>();
    const auto kept = nodeOf<CountingUnit>();
    const std::weak_ptr<AVAudioUnit> watch = dropped;
    for (const auto& node : {dropped, kept}) {
        ASSERT_EQ(engine->attachNode(node), noErr);
        ASSERT_EQ(engine->connect(node, engine->mainMixerNode(), 0,
                                  engine->mainMixerNode()->nextAvailableInputBus()),
                  noErr);
    }
    dropped.reset();
    EXPECT_FALSE(watch.expired());
    engine.reset();
    EXPECT_TRUE(watch.expired());
    EXPECT_EQ(kept->engine, nullptr);
    EXPECT_EQ(kept.use_count(), 1);
}

TEST(AVAudioEngine, RenderingByHandHasItsConditions)
{
    AVAudioEngine engine;
    float left = 7.0F;
    float right = 7.0F;
    EXPECT_EQ(engine.renderOffline(1, &left, &right), kAudioEngineErr_InvalidMode);
    EXPECT_EQ(engine.enableManualRenderingMode(0), kAudio_ParamError);
    EXPECT_EQ(engine.enableManualRenderingMode(8), noErr);
    EXPECT_EQ(engine.renderOffline(1, &left, &right), kAudioEngineErr_NotRunning);
    ASSERT_EQ(engine.start().error(), "");
    EXPECT_EQ(engine.renderOffline(9, &left, &right), kAudio_ParamError);
    EXPECT_EQ(engine.renderOffline(0, &left, &right), kAudio_ParamError);
    EXPECT_EQ(engine.enableManualRenderingMode(16), kAudioEngineErr_Initialized);
    EXPECT_EQ(engine.disableManualRenderingMode(), kAudioEngineErr_Initialized);
    EXPECT_EQ(left, 7.0F);
    EXPECT_EQ(engine.renderOffline(1, &left, &right), noErr);
    EXPECT_EQ(left, 0.0F);
    engine.stop();
    EXPECT_EQ(engine.disableManualRenderingMode(), noErr);
    EXPECT_FALSE(engine.isInManualRenderingMode());
}

TEST(AVAudioEngine, AnEngineThatDoesNotRunGivesSilence)
{
    AVAudioEngine engine;
    float left[3] = {7.0F, 7.0F, 7.0F};
    float right[3] = {7.0F, 7.0F, 7.0F};
    engine.render(left, right, 3);
    EXPECT_THAT(left, ElementsAre(0.0F, 0.0F, 0.0F));
    EXPECT_THAT(right, ElementsAre(0.0F, 0.0F, 0.0F));
}

TEST(AVAudioEngine, TheSinkIsOpenWhileTheEngineRuns)
{
    AVAudioEngine engine;
    const auto sink = std::make_shared<ScriptedSink>();
    const auto next = std::make_shared<ScriptedSink>();
    EXPECT_EQ(engine.setSink(sink).error(), "");
    EXPECT_EQ(sink->opened, 0);
    engine.prepare();
    EXPECT_EQ(engine.start().error(), "");
    EXPECT_EQ(engine.start().error(), "");
    EXPECT_EQ(sink->opened, 1);
    EXPECT_EQ(sink->source, &engine);
    EXPECT_EQ(engine.setSink(next).error(), "");
    EXPECT_EQ(sink->closed, 1);
    EXPECT_EQ(next->opened, 1);
    engine.pause();
    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(next->closed, 1);
    EXPECT_EQ(engine.start().error(), "");
    engine.stop();
    EXPECT_EQ(next->closed, 2);
}

TEST(AVAudioEngine, ASinkThatDoesNotOpenIsAnError)
{
    AVAudioEngine engine;
    const auto sink = std::make_shared<ScriptedSink>();
    sink->opens = false;
    EXPECT_EQ(engine.setSink(sink).error(), "");
    EXPECT_EQ(engine.start().error(), "No device.");
    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.setSink(nullptr).error(), "");
    EXPECT_EQ(engine.start().error(), "");
    EXPECT_FALSE(engine.setSink(sink));
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(sink->closed, 0);
}

TEST(AVAudioEngine, NoSinkIsOpenedWhileRenderingByHand)
{
    AVAudioEngine engine;
    const auto sink = std::make_shared<ScriptedSink>();
    EXPECT_EQ(engine.setSink(sink).error(), "");
    EXPECT_EQ(engine.enableManualRenderingMode(64), noErr);
    EXPECT_EQ(engine.start().error(), "");
    EXPECT_EQ(sink->opened, 0);
}

TEST(AVAudioEngine, AUnitThatLeavesTheGraphForgetsWhatWaitedForIt)
{
    Studio studio;
    studio.load(Song().note(0.0, 0, 60, 100, 1.0).note(1.0, 0, 62, 100, 1.0));
    ASSERT_EQ(studio.engine->disconnectNodeOutput(studio.instrument), noErr);
    studio.start();
    EXPECT_THAT(studio.run(12000), ElementsAre());
    ASSERT_EQ(studio.engine->connect(studio.instrument, studio.engine->mainMixerNode(), 0, 0), noErr);
    // Its clock stood still, and the first note was never begun there.
    EXPECT_THAT(studio.run(24000), ElementsAre("12000: 80 3C 00", "12000: 90 3E 64"));
}

} // namespace

} // namespace volvelle::test
