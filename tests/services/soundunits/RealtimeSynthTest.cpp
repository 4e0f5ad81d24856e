#include "base/Paths.h"
#include "services/audiograph/graph/AVAudioEngine.h"
#include "services/audiograph/graph/AVAudioUnitEffect.h"
#include "services/audiograph/graph/AVAudioUnitMIDIInstrument.h"
#include "services/audiograph/graph/AudioUnitCalls.h"
#include "services/audiograph/sequencer/AVAudioSequencer.h"
#include "services/audiograph/sequencer/AVMusicTrack.h"
#include "services/soundunits/MIDISynthUnit.h"
#include "tests/services/audiograph/sequencer/Song.h"
#include "tests/services/soundunits/KnownSynth.h"
#include "tests/support/ProjectFolders.h"
#include "tests/support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace volvelle::test {

namespace {

// Engine, synthesizer and limiter as `play` has them.
class RealtimeSynth : public testing::Test {
protected:
    void SetUp() override
    {
        setResourcesFolder(buildFolder() / "resources");
        registerMIDISynth();
        instrument = AVAudioUnitMIDIInstrument::make(synthesizerComponent);
        limiter = AVAudioUnitEffect::make(limiterComponent);
        ASSERT_TRUE(instrument && limiter);
        ASSERT_EQ(engine->attachNode(instrument), noErr);
        ASSERT_EQ(engine->attachNode(limiter), noErr);
        ASSERT_EQ(engine->connect(instrument, limiter, 0, 0), noErr);
        ASSERT_EQ(engine->connect(limiter, engine->mainMixerNode(), 0, 0), noErr);
        engine->enableManualRenderingMode(AudioSource::maximumFrames);
        ASSERT_EQ(engine->start().error(), "");
    }

    ~RealtimeSynth() override
    {
        engine->stop();
        setResourcesFolder(std::nullopt);
    }

    static Song busySong()
    {
        Song song;
        for (int i = 0; i < 600; ++i) {
            const int channel = i % 16;
            song.message(i * 0.05, 0xC0 | channel, i % 128).note(i * 0.05, channel, 30 + i % 60, 100, 0.4);
            song.message(i * 0.05, 0xB0 | channel, 1, i % 128).message(i * 0.05, 0xE0 | channel, 0, i % 128);
        }
        return song.exclusive(2.0, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7});
    }

    // The library behind the synthesizer takes one block and gives it back each time that it renders, which
    // is up to each message and to the end of a block; the first time on a thread it does more.
    void render(int blocks, int messages)
    {
        std::array<float, 512> left{};
        std::array<float, 512> right{};
        engine->render(left.data(), right.data(), 64);
        for (int i = 0; i < blocks; ++i) {
            const RealtimeGuard guard(1 + messages);
            engine->render(left.data(), right.data(), 1 + i * 131 % 512);
            sounds = sounds || *std::max_element(left.begin(), left.end()) > 0.01F;
        }
    }

    std::shared_ptr<AVAudioEngine> engine = std::make_shared<AVAudioEngine>();
    std::shared_ptr<AVAudioUnitMIDIInstrument> instrument;
    std::shared_ptr<AVAudioUnitEffect> limiter;
    bool sounds = false;
};

} // namespace

TEST_F(RealtimeSynth, HeldNotesTakeNoLockNoMemoryAndOneReleaseABlock)
{
    for (std::uint32_t i = 0; i < 32; ++i) {
        ASSERT_EQ(MusicDeviceMIDIEvent(instrument->auAudioUnit(), 0x90U | i % 16, 40 + i, 100, 0), noErr);
    }
    render(500, 0);
    EXPECT_TRUE(sounds);
}

TEST_F(RealtimeSynth, PlayingASongTakesNoLockAndNoMemory)
{
    AVAudioSequencer sequencer(engine);
    ASSERT_EQ(sequencer.loadFromData(busySong().file(), AVAudioSequencer::channelsToTracks).error(), "");
    for (const auto& track : sequencer.tracks()) {
        track->setDestinationAudioUnit(instrument);
    }
    sequencer.prepareToPlay();
    ASSERT_EQ(sequencer.start().error(), "");
    render(400, 8);
    sequencer.setCurrentPositionInBeats(3.0);
    render(400, 8);
    sequencer.stop();
    render(400, 8);
    EXPECT_TRUE(sounds);
}

} // namespace volvelle::test
