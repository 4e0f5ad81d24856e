#pragma once

#include "services/audiograph/graph/AVAudioEngine.h"
#include "services/audiograph/sequencer/AVAudioSequencer.h"
#include "tests/services/audiograph/TestUnits.h"
#include "tests/services/audiograph/sequencer/Song.h"
#include "wire/ShortMessage.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace volvelle::test {

using Lines = std::vector<std::string>;

// A running engine that is rendered by hand, a recording instrument on its mixer and a sequencer.
struct Studio {
    // `block` frames a call, 0 for random sizes from 1 to 4,096; `rate` is the recorder's own.
    explicit Studio(int block = 512, double rate = AudioSource::sampleRate);

    // Loads a file with one track per channel, and leads all tracks to the recorder.
    void load(const Song& song);

    // Starts the sequencer at `beats`.
    void start(double beats = 0.0);

    // Renders `frames` frames and gives what the recorder was sent.
    Lines run(std::int64_t frames);

    int block;
    std::mt19937 random{20240607}; // always the same
    std::shared_ptr<AVAudioEngine> engine = std::make_shared<AVAudioEngine>();
    std::shared_ptr<RecordingUnit> recorder;
    std::shared_ptr<AVAudioUnitMIDIInstrument> instrument =
        std::make_shared<AVAudioUnitMIDIInstrument>(recorder);
    std::unique_ptr<AVAudioSequencer> sequencer;
    std::int64_t frames = 0; // of all runs
    std::vector<float> left; // of the last run
    std::vector<float> right;
};

// What brings a channel to where the messages have it, or to where it is at first.
Lines stateLines(std::int64_t frame, int channel, const std::vector<ShortMessage>& messages = {});

// What a start at 0 sends to a destination of which these channels are in use.
Lines resetLines(std::int64_t frame, const std::vector<int>& channels = {0});

// Pedals up, and with `all` notes off.
Lines releaseLines(std::int64_t frame, int channel, bool all = true);

// All of `parts`, one after the other.
Lines joined(const std::vector<Lines>& parts);

// A test for each block size.
class EachBlockSize : public testing::TestWithParam<int> {};

std::string blockName(const testing::TestParamInfo<int>& block);

#define VOLVELLE_EACH_BLOCK_SIZE(suite)                                                                      \
    INSTANTIATE_TEST_SUITE_P(Blocks, suite, testing::Values(1, 37, 64, 512, 0), blockName)

} // namespace volvelle::test
