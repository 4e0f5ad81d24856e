#pragma once

#include "audio/SequencedUnit.h"
#include "services/audiograph/graph/AVAudioEngine.h"
#include "services/audiograph/graph/AVAudioUnitMIDIInstrument.h"
#include "services/audiograph/sequencer/AVAudioSequencer.h"
#include "tests/audio/HeardUnit.h"
#include "tests/services/audiograph/sequencer/Song.h"
#include "tests/support/ConsoleCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <numeric>
#include <vector>

namespace volvelle::test {

using Heard = std::vector<HeardMessage>;

// A system exclusive message of so many bytes.
inline std::vector<std::uint8_t> exclusiveOf(std::size_t length)
{
    std::vector<std::uint8_t> bytes(length);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    std::ranges::for_each(bytes, [](std::uint8_t& byte) { byte &= 0x7F; });
    bytes.front() = 0xF0;
    bytes.back() = 0xF7;
    return bytes;
}

// An engine that renders by hand, with one unit.
class HandEngine {
public:
    static constexpr int longest = 4096; // frames

    explicit HandEngine(std::shared_ptr<AUAudioUnit> unit)
        : instrument(AVAudioUnitMIDIInstrument::of(std::move(unit)))
    {
        EXPECT_EQ(engine->attachNode(instrument), noErr);
        EXPECT_EQ(engine->connect(instrument, engine->mainMixerNode(), 0, 0), noErr);
        EXPECT_EQ(engine->enableManualRenderingMode(longest), noErr);
        EXPECT_EQ(engine->start().error(), "");
    }

    void render(int frames) { EXPECT_EQ(engine->renderOffline(frames, left.data(), right.data()), noErr); }

    // In blocks of so many frames.
    void render(std::int64_t frames, int block)
    {
        for (; frames > 0; frames -= block) {
            render(static_cast<int>(std::min<std::int64_t>(frames, block)));
        }
    }

    const std::shared_ptr<AVAudioEngine> engine = std::make_shared<AVAudioEngine>();
    const std::shared_ptr<AVAudioUnitMIDIInstrument> instrument;

private:
    std::array<float, longest> left{};
    std::array<float, longest> right{};
};

class SequencedTest : public testing::Test {
protected:
    static constexpr int channels = 16;
    static constexpr int resetsOfAStop = 80;

    // What the platform's sequencer plays up to `frames`.
    static Heard ofPlatformWithItsStart(const std::vector<std::uint8_t>& file, std::int64_t frames)
    {
        const auto unit = std::make_shared<HeardUnit>();
        HandEngine hand(unit);
        AVAudioSequencer sequencer(hand.engine);
        EXPECT_EQ(sequencer.loadFromData(file, AVAudioSequencer::channelsToTracks).error(), "");
        for (const auto& track : sequencer.tracks()) {
            track->setDestinationAudioUnit(hand.instrument);
        }
        EXPECT_EQ(sequencer.start().error(), "");
        hand.render(frames, 512);
        return unit->heard;
    }

    // Without what it sends at frame 0 to begin.
    static Heard ofPlatform(const std::vector<std::uint8_t>& file, std::int64_t frames)
    {
        Heard heard = ofPlatformWithItsStart(file, frames);
        std::erase_if(heard, [](const HeardMessage& message) { return message.frame == 0; });
        return heard;
    }

    // Their beginnings and their ends.
    static Heard notesOf(Heard heard)
    {
        std::erase_if(heard, [](const HeardMessage& message) { return message.bytes.front() >= 0xA0; });
        return heard;
    }

    // What the realtime one plays, its lead taken off, without the resets of its start and of its end.
    static Heard ofSequenced(const std::vector<std::uint8_t>& file, std::int64_t frames, int block)
    {
        const auto unit = std::make_shared<HeardUnit>();
        const auto sequenced = std::make_shared<SequencedUnit>(unit);
        HandEngine hand(sequenced);
        EXPECT_EQ(sequenced->load(file).error(), "");
        sequenced->start();
        const int lead = std::min(block, AUAudioUnit::maximumFrames);
        hand.render(frames + lead + 512, block);
        EXPECT_TRUE(sequenced->hasEnded());
        Heard heard = unit->heard;
        EXPECT_GE(heard.size(), std::size_t{2} * resetsOfAStop);
        heard.erase(heard.begin(), heard.begin() + resetsOfAStop);
        heard.resize(heard.size() - resetsOfAStop);
        for (HeardMessage& message : heard) {
            message.frame -= lead;
        }
        return heard;
    }

    // The messages of one channel, or exclusives for -1.
    static Heard ofChannel(const Heard& heard, int channel)
    {
        Heard result;
        std::ranges::copy_if(heard, std::back_inserter(result), [channel](const HeardMessage& message) {
            const int status = message.bytes.front();
            return channel < 0 ? status == 0xF0 : status < 0xF0 && (status & 0x0F) == channel;
        });
        return result;
    }

    // The same messages in the same order on each channel, each within so many frames.
    static void expectSame(const Heard& one, const Heard& other, std::int64_t within)
    {
        EXPECT_EQ(one.size(), other.size());
        for (int channel = -1; channel < channels; ++channel) {
            const Heard left = ofChannel(one, channel);
            const Heard right = ofChannel(other, channel);
            ASSERT_EQ(left.size(), right.size()) << "channel " << channel;
            for (std::size_t i = 0; i < left.size(); ++i) {
                EXPECT_EQ(left[i].bytes, right[i].bytes) << channel << ", " << left[i] << " " << right[i];
                EXPECT_LE(std::abs(left[i].frame - right[i].frame), within)
                    << channel << ", " << left[i] << " " << right[i];
            }
        }
    }

    ConsoleCapture console;
};

// Its unit in an engine, before any start.
class SequencedPlayTest : public SequencedTest {
protected:
    SequencedPlayTest() : hand(sequenced) {}

    void play(const Song& song)
    {
        ASSERT_EQ(sequenced->load(song.file()).error(), "");
        sequenced->start();
    }

    Heard take() { return std::exchange(unit->heard, {}); }

    // How often each key of each channel was begun more often than ended, all notes off taken as an end.
    int hanging() const
    {
        std::array<std::array<int, 128>, channels> sounding{};
        for (const HeardMessage& message : unit->heard) {
            const auto channel = static_cast<std::size_t>(message.bytes[0] & 0x0F);
            const int kind = message.bytes[0] & 0xF0;
            const bool isOn = kind == 0x90 && message.bytes[2] > 0;
            if (isOn || kind == 0x80 || kind == 0x90) {
                sounding[channel][message.bytes[1]] = isOn ? 1 : 0;
            }
        }
        int result = 0;
        for (const auto& keys : sounding) {
            result += static_cast<int>(std::ranges::count(keys, 1));
        }
        return result;
    }

    const std::shared_ptr<HeardUnit> unit = std::make_shared<HeardUnit>();
    const std::shared_ptr<SequencedUnit> sequenced = std::make_shared<SequencedUnit>(unit);
    HandEngine hand;
};

} // namespace volvelle::test
