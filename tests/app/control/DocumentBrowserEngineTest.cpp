#include "services/audiodevice/AVAudioSession.h"
#include "services/audiograph/graph/AVAudioUnitEffect.h"
#include "tests/app/control/ScreenFixture.h"

#include <algorithm>

namespace volvelle::test {

namespace {

// A silent unit that counts how often its engine stopped.
class StopCounter : public AUAudioUnit {
public:
    StopCounter() : AUAudioUnit(limiterComponent) { outputBusses.push_back({{48000.0, 2}, "out", true}); }

    void engineStopped() override { ++stops; }

    int stops = 0;

protected:
    void renderBlock(const float* /*inputLeft*/, const float* /*inputRight*/, float* left, float* right,
                     int frames, std::span<const TimedMessage> /*events*/) noexcept override
    {
        std::fill_n(left, frames, 0.0F);
        std::fill_n(right, frames, 0.0F);
    }
};

class DocumentBrowserEngineTest : public LogicScreens {
protected:
    std::shared_ptr<DocumentBrowserViewController> unloaded()
    {
        return DocumentBrowserViewController::make(services());
    }

    void post(std::string_view notification) { defaultNotificationCenter().post(notification, nullptr); }

    // The one that the sink pulls.
    AVAudioEngine& engine() const { return dynamic_cast<AVAudioEngine&>(*sink->source); }

    void openSlowTide()
    {
        makeRoot();
        root->presentDocument(writeDocument("Slow tide.mid"));
        screenLines();
    }

    const std::string started = told("startEngine() : The audio engine was started.");
    const std::string background = told("onBackground(): The app has gone to background.");
    const std::string foreground = told("onForeground(): The app will come to foreground.");
    const std::string stopped = "MIDISequencer::stop() : The sequencer was stopped.";
};

TEST_F(DocumentBrowserEngineTest, StoppingAndPausingWithoutAnEngineDoesNothing)
{
    const auto screen = unloaded();
    screen->stopEngine();
    screen->pauseEngine();
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(DocumentBrowserEngineTest, WithoutAnEngineStartingAndPlayingAreFatal)
{
    const auto screen = unloaded();
    const std::string line = told("startEngine() : Error: Audio engine is nil.");
    EXPECT_STOP(screen->startEngine(), line, {line});
    EXPECT_STOP(screen->playSequence(smallFile()), told("playSequence Error: Audio engine not initialized"));
}

TEST_F(DocumentBrowserEngineTest, ASecondStartIsAWarning)
{
    makeRoot();
    EXPECT_NE(sink->source, nullptr);
    root->startEngine();
    EXPECT_EQ(screenLines(), Lines{told("startEngine() : Warning: The audio engine is already active.")});
    root->stopEngine();
    EXPECT_EQ(sink->source, nullptr);
    root->startEngine();
    EXPECT_EQ(screenLines(), Lines{started});
}

TEST_F(DocumentBrowserEngineTest, AnEngineThatDoesNotStartIsTold)
{
    makeRoot();
    root->stopEngine();
    sink->failed = "The device is away.";
    root->startEngine();
    EXPECT_EQ(screenLines(),
              Lines{told("startEngine() : Error: The device is away.. \nThe audio engine could "
                         "not be started.")});
    root->presentDocument(writeDocument("Slow tide.mid"));
    EXPECT_TRUE(up()->isUp());
    EXPECT_EQ(hiddenButtons(), "");
}

TEST_F(DocumentBrowserEngineTest, WithoutASinkTheEngineRunsAndNothingPulls)
{
    BrowserServices given = services();
    given.makeSink = nullptr;
    root = DocumentBrowserViewController::make(given);
    root->loadViewIfNeeded();
    EXPECT_EQ(screenLines().back(), started);
    EXPECT_EQ(root->sink(), nullptr);
    EXPECT_EQ(sink->source, nullptr);
}

TEST_F(DocumentBrowserEngineTest, TheRateIsThatOfTheSession)
{
    makeRoot();
    EXPECT_EQ(root->getSamplerate(), AVAudioSession::sharedInstance().sampleRate());
    EXPECT_EQ(root->getSamplerate(), 48000.0);
    EXPECT_EQ(root->sink(), sink);
}

TEST_F(DocumentBrowserEngineTest, TheSynthesizerSoundsThroughALimiter)
{
    makeRoot();
    std::vector<AudioComponentDescription> chain; // from the mixer back
    const AVAudioNode* node = engine().mainMixerNode().get();
    while (const AudioConnection* const wire = engine().connections().input(*node, 0)) {
        node = wire->from.get();
        chain.push_back(dynamic_cast<const AVAudioUnit&>(*node).audioComponentDescription());
    }
    EXPECT_EQ(chain, (std::vector{limiterComponent, synthesizerComponent}));
}

TEST_F(DocumentBrowserEngineTest, TheSynthesizerRestsOnceItsMusicIsOver)
{
    openSlowTide();
    EXPECT_GT(sink->render(0.5), 0.01F);
    goOn(2.0);
    sink->render(20.0);
    EXPECT_EQ(sink->render(1.0), 0.0F);
}

TEST_F(DocumentBrowserEngineTest, NoSoundsAreLoadedAheadOfADocument)
{
    root = DocumentBrowserViewController::make(services());
    root->loadViewIfNeeded();
    for (const std::string& line : console.take()) {
        EXPECT_EQ(line.find("preload"), std::string::npos) << line;
    }
}

TEST_F(DocumentBrowserEngineTest, AnEngineThatPausesKeepsWhatSoundsAndOneThatStopsDoesNot)
{
    makeRoot();
    AVAudioEngine& driven = engine();
    const auto unit = std::make_shared<StopCounter>();
    ASSERT_EQ(driven.attachNode(std::make_shared<AVAudioUnit>(unit)), noErr);
    root->pauseEngine();
    EXPECT_FALSE(driven.isRunning());
    EXPECT_EQ(unit->stops, 0);
    root->startEngine();
    root->stopEngine();
    EXPECT_FALSE(driven.isRunning());
    EXPECT_EQ(unit->stops, 1);
}

TEST_F(DocumentBrowserEngineTest, WhileMusicPlaysThreeButtonsAreAway)
{
    openSlowTide();
    EXPECT_EQ(hiddenButtons(), "Play Save Generate ");
    root->onSequencerStateChanged("pause");
    root->onSequencerStateChanged("dance");
    EXPECT_EQ(hiddenButtons(), "Play Save Generate ");
    root->onSequencerStateChanged("stop");
    EXPECT_EQ(hiddenButtons(), "");
    EXPECT_EQ(screenLines(),
              (Lines{"sequencer state: pause", "sequencer state: dance", "sequencer state: stop"}));
}

TEST_F(DocumentBrowserEngineTest, WithoutADocumentNothingIsHidden)
{
    makeRoot();
    root->onSequencerStateChanged("play");
    root->onSequencerProgress(1.0, 4.0);
    root->onMIDILoad("a.mid");
    EXPECT_EQ(screenLines(), Lines{"sequencer state: play"});
    EXPECT_EQ(root->playingBeats(), std::nullopt);
}

TEST_F(DocumentBrowserEngineTest, ProgressReachesTheCircleAndTheEndShowsTheButtons)
{
    openSlowTide();
    goOn(0.5);
    EXPECT_GT(up()->contentView->baseClass->currentBeat, 0.5);
    EXPECT_LT(up()->contentView->baseClass->currentBeat, 1.5);
    EXPECT_EQ(hiddenButtons(), "Play Save Generate ");
    goOn(1.5);
    EXPECT_EQ(hiddenButtons(), "");
    EXPECT_EQ(screenLines(), (Lines{stopped, "sequencer state: stop", "sequencer finished."}));
    EXPECT_EQ(root->playingBeats(), 2.5);
}

TEST_F(DocumentBrowserEngineTest, ACircleHasSixteenBeatsUntilSomethingLongerPlays)
{
    makeRoot();
    const auto document = MIDIDocument::make(documents / "Other.mid");
    EXPECT_EQ(document->getBeatCount(), 16.0);
    writeFile(folder.path / "long.mid", {{{20.0, 60, 3.5}}, {}, {}});
    root->presentDocument(folder.path / "long.mid");
    EXPECT_EQ(root->playingBeats(), 23.5);
    EXPECT_EQ(document->getBeatCount(), 23.0);
}

TEST_F(DocumentBrowserEngineTest, EachPlayingHasATransportOfItsOwn)
{
    openSlowTide();
    const auto first = root->sequencer;
    up()->onButtonPlay();
    EXPECT_NE(root->sequencer, first);
    EXPECT_FALSE(first->isPlaying());
    EXPECT_TRUE(root->sequencer->isPlaying());
    EXPECT_EQ(screenLines(), (Lines{stopped, "MIDIDocumentViewController::midiDocumentPlaySequence()",
                                    "MIDISequencer::start() : The sequencer is playing.",
                                    "sequencer state: stop", "sequencer state: play"}));
    EXPECT_EQ(hiddenButtons(), "Play Save Generate ");
}

TEST_F(DocumentBrowserEngineTest, TheBackgroundStopsTheMusicAndTheForegroundStartsTheEngineAlone)
{
    openSlowTide();
    const auto transport = root->sequencer;
    post(UIApplicationDidEnterBackgroundNotification);
    EXPECT_EQ(screenLines(), (Lines{background, stopped, "sequencer state: stop"}));
    EXPECT_EQ(hiddenButtons(), "");
    post(UIApplicationWillEnterForegroundNotification);
    EXPECT_EQ(screenLines(), (Lines{foreground, started}));
    EXPECT_EQ(root->sequencer, transport);
    EXPECT_FALSE(transport->isPlaying());
    up()->onButtonPlay();
    EXPECT_TRUE(root->sequencer->isPlaying());
}

TEST_F(DocumentBrowserEngineTest, TerminatingStopsTheMusicAndTheEngine)
{
    openSlowTide();
    post(UIApplicationWillTerminateNotification);
    EXPECT_EQ(screenLines(), (Lines{told("onTerminate(): The app is about to terminate."), stopped,
                                    "sequencer state: stop"}));
    EXPECT_EQ(sink->source, nullptr);
    EXPECT_TRUE(up()->isUp());
}

TEST_F(DocumentBrowserEngineTest, ARootScreenThatDiesWhilePlayingIsToldNothingMore)
{
    openSlowTide();
    const auto transport = root->sequencer;
    root.reset();
    EXPECT_EQ(sink->source, nullptr);
    clock.advance(0.1);
    post(UIApplicationDidEnterBackgroundNotification);
    EXPECT_EQ(screenLines(), Lines{stopped});
}

} // namespace

} // namespace volvelle::test
