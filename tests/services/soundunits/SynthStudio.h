#pragma once

#include "services/audiograph/graph/AVAudioEngine.h"
#include "services/audiograph/graph/AVAudioUnitMIDIInstrument.h"
#include "services/audiograph/sequencer/AVAudioSequencer.h"
#include "tests/services/audiograph/sequencer/Song.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace volvelle::test {

// A running engine that is rendered by hand, with the real synthesizer, dry, and a sequencer.
class SynthStudio {
public:
    // With the built-in bank, or another; the synthesizer at that rate.
    explicit SynthStudio(const std::optional<std::filesystem::path>& bank = std::nullopt,
                         double rate = 48'000.0);
    ~SynthStudio();

    void load(const Song& song);
    void start(double beats = 0.0);

    // Renders in blocks of 512 frames; gives the left channel and then the right one.
    std::vector<float> run(int blocks);

    static constexpr int blockFrames = 512;

    std::shared_ptr<AVAudioEngine> engine = std::make_shared<AVAudioEngine>();
    std::shared_ptr<AVAudioUnitMIDIInstrument> instrument;
    std::unique_ptr<AVAudioSequencer> sequencer;
};

float loudest(const std::vector<float>& sound);

// The greatest difference of two sounds of one length.
float greatestDifference(const std::vector<float>& one, const std::vector<float>& other);

} // namespace volvelle::test
