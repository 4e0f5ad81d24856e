#pragma once

#include "audio/MIDISequencer.h"
#include "base/FatalStop.h"
#include "base/MainQueue.h"
#include "base/Text.h"
#include "services/musicsequence/FaultPoint.h"
#include "tests/audio/FakeUnit.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/HandClock.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace volvelle::test {

// Notes every call as a line.
class TransportListener : public MIDISequencerDelegate {
public:
    Lines calls;

    void onSequencerStateChanged(std::string_view state) override { calls.emplace_back(state); }

    void onSequencerProgress(double current, double total) override
    {
        calls.push_back(concat(current, " of ", total));
    }

    void onSequencerComplete() override { calls.emplace_back("complete"); }

    void onMIDILoad(const std::filesystem::path& url) override { calls.push_back(url.string()); }
};

// A transport on an engine that is rendered by hand, and units that note what they hear.
class TransportTest : public testing::Test {
protected:
    static constexpr int framesToABeat = 24000; // at 120 beats a minute

    TransportTest()
    {
        EXPECT_EQ(engine->enableManualRenderingMode(AUAudioUnit::maximumFrames), noErr);
        startEngine();
        transport->delegate = listener;
        transport->connect(engine);
    }

    ~TransportTest() override { clearFaults(); }

    void startEngine() { EXPECT_EQ(engine->start().error(), ""); }

    // A unit in the graph, and its fake.
    struct Part {
        std::shared_ptr<AVAudioUnit> node;
        std::shared_ptr<FakeUnit> fake;
    };

    Part addUnit()
    {
        Part part;
        part.fake = std::make_shared<FakeUnit>(fakeComponent, FakeUnitPlan{.takesMIDI = true});
        part.node = std::make_shared<AVAudioUnit>(part.fake);
        EXPECT_EQ(engine->attachNode(part.node), noErr);
        EXPECT_EQ(engine->connect(part.node, engine->mainMixerNode(), 0,
                                  engine->mainMixerNode()->nextAvailableInputBus()),
                  noErr);
        return part;
    }

    void render(int frames)
    {
        std::vector<float> left(AUAudioUnit::maximumFrames);
        std::vector<float> right(AUAudioUnit::maximumFrames);
        for (int done = 0; done < frames; done += AUAudioUnit::maximumFrames) {
            const int count = std::min(frames - done, AUAudioUnit::maximumFrames);
            ASSERT_EQ(engine->renderOffline(count, left.data(), right.data()), noErr);
        }
    }

    // A note of one beat on each of the channels, the last of them ending at `beats`.
    static std::shared_ptr<MIDISequence16> song(const std::vector<std::uint8_t>& channels, double beats = 4.0)
    {
        auto sequence = std::make_shared<MIDISequence16>();
        for (const std::uint8_t channel : channels) {
            sequence->createNoteEvent(beats - 1.0, channel, static_cast<std::uint8_t>(60 + channel), 100, 0,
                                      1.0F);
        }
        return sequence;
    }

    static std::vector<std::uint8_t> bytesOf(const MIDISequence16& sequence)
    {
        std::vector<std::uint8_t> data;
        EXPECT_EQ(
            MusicSequenceFileCreateData(sequence.musicSequence, kMusicSequenceFile_MIDIType, 0, 480, data),
            noErr);
        return data;
    }

    // What the application does before it starts: a song of 4 beats, which are 2 seconds, to one unit.
    void loadSong()
    {
        transport->loadFromData(bytesOf(*song({0})));
        transport->setTrackPorts(lead.node);
        console.take();
    }

    // The calls that the delegate got until now.
    Lines told()
    {
        mainQueue().drain();
        return std::exchange(listener->calls, {});
    }

    // Notes on and off that a unit heard, without the controllers of a start.
    static Lines notes(const Part& part)
    {
        Lines result = part.fake->takeHeard();
        std::erase_if(result, [](const std::string& line) { return line >= "160"; });
        return result;
    }

    // The lines of the transport itself, without those of the sequences that it uses.
    Lines lines()
    {
        Lines result = console.take();
        std::erase_if(result, [](const std::string& line) {
            return !line.starts_with("MIDISequencer") && !line.starts_with("length") &&
                   !line.starts_with(" - ") && !line.starts_with("[AV");
        });
        return result;
    }

    HandClock clock;
    ConsoleCapture console;
    std::shared_ptr<AVAudioEngine> engine = std::make_shared<AVAudioEngine>();
    Part lead = addUnit();
    std::shared_ptr<TransportListener> listener = std::make_shared<TransportListener>();
    std::shared_ptr<MIDISequencer> transport = MIDISequencer::make();
    TemporaryFolder folder;

    const Lines playing{"MIDISequencer::start() : The sequencer is playing."};
    const Lines continuing{"MIDISequencer::play() : The sequencer is playing / continuing."};
    const Lines paused{"MIDISequencer::pause() : The sequencer was paused."};
    const Lines stopped{"MIDISequencer::stop() : The sequencer was stopped."};
    const std::string notRunning = "The audio engine is not running.";
};

} // namespace volvelle::test
