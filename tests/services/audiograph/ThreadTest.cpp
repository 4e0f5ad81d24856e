#include "services/audiograph/graph/AVAudioUnitEffect.h"
#include "tests/services/audiograph/Studio.h"

#include <array>
#include <atomic>
#include <thread>

namespace volvelle::test {

namespace {

// Pulls without a pause on a thread of its own, and watches whether the left channel goes on counting.
class PullingSink final : public AudioSink {
public:
    Result<> open(AudioSource& source) override
    {
        isOpen = true;
        thread = std::thread([this, &source] { pull(source); });
        return {};
    }

    void close() override
    {
        isOpen = false;
        thread.join();
    }

    std::string description() const override { return "pulling"; }

    bool isAudible() const override { return true; }

    // Returns once `count` more blocks were pulled.
    void wait(int count) const
    {
        const int end = blocks + count;
        while (blocks < end) {
            std::this_thread::yield();
        }
    }

    std::atomic<int> blocks{0};
    std::atomic<int> gaps{0};

private:
    void pull(AudioSource& source)
    {
        std::array<float, 512> left{};
        std::array<float, 512> right{};
        while (isOpen) {
            const int frames = 1 + blocks * 97 % 512;
            source.render(left.data(), right.data(), frames);
            for (int i = 0; i < frames; ++i) {
                const float now = left[static_cast<std::size_t>(i)];
                const bool isWrapped = last == CountingUnit::highest && now == 0.0F;
                gaps += last >= 1.0F && now != last + 1.0F && !isWrapped ? 1 : 0;
                last = now;
            }
            ++blocks;
        }
    }

    std::thread thread;
    std::atomic<bool> isOpen{false};
    float last = 0.0F;
};

struct LiveStudio {
    LiveStudio()
    {
        EXPECT_EQ(engine->attachNode(counter), noErr);
        EXPECT_EQ(engine->attachNode(instrument), noErr);
        EXPECT_EQ(engine->connect(counter, engine->mainMixerNode(), 0, 0), noErr);
        EXPECT_EQ(engine->connect(instrument, engine->mainMixerNode(), 0, 1), noErr);
        EXPECT_EQ(engine->setSink(sink).error(), "");
        EXPECT_EQ(engine->start().error(), "");
        sink->wait(1);
    }

    ~LiveStudio() { engine->stop(); }

    LiveStudio(const LiveStudio&) = delete;
    LiveStudio& operator=(const LiveStudio&) = delete;

    std::shared_ptr<PullingSink> sink = std::make_shared<PullingSink>();
    std::shared_ptr<AVAudioEngine> engine = std::make_shared<AVAudioEngine>();
    std::shared_ptr<AVAudioUnit> counter = nodeOf<CountingUnit>();
    std::shared_ptr<RecordingUnit> recorder = std::make_shared<RecordingUnit>();
    std::shared_ptr<AVAudioUnit> instrument = std::make_shared<AVAudioUnitMIDIInstrument>(recorder);
};

TEST(Threads, EditsOfTheGraphLeaveTheSoundWhole)
{
    LiveStudio studio;
    AVAudioEngine& engine = *studio.engine;
    for (int i = 0; i < 150; ++i) {
        const auto silent = nodeOf<RecordingUnit>(i % 2 == 0 ? 44100.0 : 48000.0);
        const auto mixer = std::make_shared<AVAudioMixerNode>();
        ASSERT_EQ(engine.attachNode(silent), noErr);
        ASSERT_EQ(engine.attachNode(mixer), noErr);
        ASSERT_EQ(engine.connect(mixer, engine.mainMixerNode(), 0, 2), noErr);
        ASSERT_EQ(engine.connect(silent, mixer, 0, 0), noErr);
        studio.sink->wait(i % 3);
        ASSERT_EQ(engine.detachNode(silent), noErr);
        ASSERT_EQ(engine.detachNode(mixer), noErr);
    }
    studio.sink->wait(3);
    EXPECT_EQ(studio.sink->gaps, 0);
    EXPECT_EQ(engine.attachedNodes().size(), 4U);
}

TEST(Threads, SequencersComeAndGoWithoutAHangingNote)
{
    LiveStudio studio;
    Song song;
    for (int i = 0; i < 200; ++i) {
        song.note(i * 0.01, i % 16, 40 + i % 30, 100, 0.5).message(i * 0.01, 0xB0 | i % 16, 10, i % 128);
    }
    const std::vector<std::uint8_t> file = song.file();
    for (int i = 0; i < 60; ++i) {
        AVAudioSequencer sequencer(studio.engine);
        ASSERT_EQ(sequencer.loadFromData(file, AVAudioSequencer::channelsToTracks).error(), "");
        for (const auto& track : sequencer.tracks()) {
            track->setDestinationAudioUnit(studio.instrument);
        }
        ASSERT_EQ(sequencer.start().error(), "");
        studio.sink->wait(2);
        sequencer.setCurrentPositionInBeats(0.5);
        EXPECT_GE(sequencer.currentPositionInBeats(), 0.5);
        sequencer.setRate(1.5F);
        sequencer.tracks()[3]->setDestinationAudioUnit(nullptr);
        studio.sink->wait(2);
        if (i % 2 == 0) {
            sequencer.stop();
        }
    }
    studio.sink->wait(3);
    studio.engine->stop();
    EXPECT_EQ(studio.recorder->sounding(), 0);
    EXPECT_EQ(studio.sink->gaps, 0);
}

TEST(Threads, PositionsNeverGoBackWhilePlaying)
{
    LiveStudio studio;
    AVAudioSequencer sequencer(studio.engine);
    ASSERT_EQ(sequencer.start().error(), "");
    double last = 0.0;
    bool isForward = true;
    const int end = studio.sink->blocks + 300;
    while (studio.sink->blocks < end) {
        const double now = sequencer.currentPositionInBeats();
        isForward = isForward && now >= last;
        last = now;
    }
    EXPECT_TRUE(isForward);
    EXPECT_GT(sequencer.currentPositionInBeats(), 0.0);
    EXPECT_GE(sequencer.currentPositionInBeats(), last);
}

} // namespace

} // namespace volvelle::test
