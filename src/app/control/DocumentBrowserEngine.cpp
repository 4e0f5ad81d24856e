#include "app/control/DocumentBrowserViewController.h"
#include "audio/MusicSynthesizer.h"
#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"
#include "services/audiodevice/AVAudioSession.h"
#include "services/audiograph/graph/AVAudioUnitEffect.h"
#include "services/synthesizer/SoundBanks.h"

#include <utility>

// The root screen's engine: its life, and playing.
namespace volvelle {

namespace {

void report(std::string_view step, OSStatus status)
{
    if (status != noErr) {
        safeprint("DocumentBrowserViewController::initializeEngine() : Error: ", step,
                  " failed. Status: ", status);
    }
}

} // namespace

void DocumentBrowserViewController::initializeEngine()
{
    stopEngine();
    engine.reset();
    engine = std::make_shared<AVAudioEngine>();
    const AVAudioFormat format = engine->outputNode()->outputFormatForBus(0);
    const auto limiter = AVAudioUnitEffect::make(limiterComponent);
    report("Attaching the limiter", engine->attachNode(limiter));
    synth = AudioUnitMIDISynth::make(engine, findSoundBank, musicSynthesizer(std::nullopt, true));
    synth->create("Internal MIDI Synth (MT)");
    report("Connecting the limiter", engine->connect(limiter, engine->mainMixerNode(), 0, 0, format));
    report("Connecting the synthesizer", engine->connect(synth->midiSynth, limiter, 0, 0, format));
    synth->initialize(0, false);
    if (services.makeSink) {
        output = services.makeSink();
        if (const auto set = engine->setSink(output); !set) {
            safeprint("DocumentBrowserViewController::initializeEngine() : Error: ", set.error());
        }
    }
    startEngine();
}

void DocumentBrowserViewController::setupNotifications()
{
    NotificationCenter& center = defaultNotificationCenter();
    observers = {center.addObserver(UIApplicationDidEnterBackgroundNotification, nullptr,
                                    [this](const void*) { onBackground(); }),
                 center.addObserver(UIApplicationWillEnterForegroundNotification, nullptr,
                                    [this](const void*) { onForeground(); }),
                 center.addObserver(UIApplicationWillTerminateNotification, nullptr,
                                    [this](const void*) { onTerminate(); })};
}

void DocumentBrowserViewController::startEngine()
{
    if (!engine) {
        constexpr std::string_view message =
            "DocumentBrowserViewController::startEngine() : Error: Audio engine is nil.";
        safeprint(std::string(message));
        fatalStop(message);
    }
    if (engine->isRunning()) {
        safeprint("DocumentBrowserViewController::startEngine() : Warning: The audio engine is already "
                  "active.");
        return;
    }
    engine->prepare();
    if (const auto started = engine->start()) {
        safeprint("DocumentBrowserViewController::startEngine() : The audio engine was started.");
    } else {
        safeprint("DocumentBrowserViewController::startEngine() : Error: ", started.error(),
                  ". \nThe audio engine could not be started.");
    }
}

void DocumentBrowserViewController::stopEngine()
{
    if (!engine) {
        return;
    }
    stopSequencer();
    engine->stop();
}

void DocumentBrowserViewController::pauseEngine()
{
    if (!engine) {
        return;
    }
    stopSequencer();
    engine->pause();
}

void DocumentBrowserViewController::stopSequencer() const
{
    if (sequencer) {
        sequencer->stop();
    }
}

double DocumentBrowserViewController::getSamplerate() const
{
    return AVAudioSession::sharedInstance().sampleRate();
}

void DocumentBrowserViewController::playSequence(const std::vector<std::uint8_t>& data)
{
    if (!engine) {
        fatalStop("DocumentBrowserViewController::playSequence Error: Audio engine not initialized");
    }
    stopSequencer();
    sequencer = MIDISequencer::make();
    sequencer->delegate = self();
    sequencer->connect(engine);
    if (!synth || !synth->getAVAudioUnit()) {
        fatalStop("DocumentBrowserViewController::playSequence Error: Audio unit not initialized.");
    }
    sequencer->loadFromData(data);
    sequencer->setTrackPorts(synth->getAVAudioUnit());
    sequencer->start();
}

std::optional<double> DocumentBrowserViewController::playingBeats() const
{
    return sequencer ? std::optional(sequencer->getBeats()) : std::nullopt;
}

void DocumentBrowserViewController::onBackground()
{
    safeprint("DocumentBrowserViewController::onBackground(): The app has gone to background.");
    pauseEngine();
}

void DocumentBrowserViewController::onForeground()
{
    safeprint("DocumentBrowserViewController::onForeground(): The app will come to foreground.");
    startEngine();
}

void DocumentBrowserViewController::onTerminate()
{
    safeprint("DocumentBrowserViewController::onTerminate(): The app is about to terminate.");
    stopEngine();
}

void DocumentBrowserViewController::onSequencerStateChanged(std::string_view state)
{
    safeprint("sequencer state: ", state);
    const bool isPlay = state == "play";
    if (!documentViewController || (!isPlay && state != "stop")) {
        return;
    }
    const MIDIDocumentViewController& screen = *documentViewController;
    for (const auto& button : {screen.buttonPlay, screen.buttonSave, screen.buttonGenerate}) {
        if (button) {
            button->setHidden(isPlay);
        }
    }
    if (screen.onPlayingChanged) {
        screen.onPlayingChanged();
    }
}

void DocumentBrowserViewController::onSequencerProgress(double current, double /*total*/)
{
    if (documentViewController && documentViewController->contentView) {
        documentViewController->contentView->setProgress(current);
    }
}

void DocumentBrowserViewController::onSequencerComplete()
{
    safeprint("sequencer finished.");
}

void DocumentBrowserViewController::onMIDILoad(const std::filesystem::path& /*url*/) {}

} // namespace volvelle
