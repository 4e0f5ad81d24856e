#include "tests/services/soundunits/SynthStudio.h"
#include "tests/support/ProjectFolders.h"

#include "base/Paths.h"
#include "services/audiograph/sequencer/AVMusicTrack.h"
#include "services/soundunits/MIDISynthUnit.h"
#include "tests/services/soundunits/KnownSynth.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace volvelle::test {

SynthStudio::SynthStudio(const std::optional<std::filesystem::path>& bank, double rate)
{
    setResourcesFolder(buildFolder() / "resources");
    SynthesizerOptions options;
    options.reverb = false;
    options.chorus = false;
    options.sampleRate = rate;
    registerMIDISynth(options, bank);
    instrument = AVAudioUnitMIDIInstrument::make(synthesizerComponent);
    EXPECT_EQ(engine->attachNode(instrument), noErr);
    EXPECT_EQ(engine->connect(instrument, engine->mainMixerNode(), 0, 0), noErr);
    engine->enableManualRenderingMode(blockFrames);
    EXPECT_EQ(engine->start().error(), "");
    sequencer = std::make_unique<AVAudioSequencer>(engine);
}

SynthStudio::~SynthStudio()
{
    engine->stop();
    setResourcesFolder(std::nullopt);
}

void SynthStudio::load(const Song& song)
{
    EXPECT_EQ(sequencer->loadFromData(song.file(), AVAudioSequencer::channelsToTracks).error(), "");
    for (const auto& track : sequencer->tracks()) {
        track->setDestinationAudioUnit(instrument);
    }
}

void SynthStudio::start(double beats)
{
    sequencer->prepareToPlay();
    sequencer->setCurrentPositionInBeats(beats);
    EXPECT_EQ(sequencer->start().error(), "");
}

std::vector<float> SynthStudio::run(int blocks)
{
    const auto frames = static_cast<std::size_t>(blocks) * blockFrames;
    std::vector<float> sound(2 * frames);
    for (std::size_t done = 0; done < frames; done += blockFrames) {
        EXPECT_EQ(engine->renderOffline(blockFrames, sound.data() + done, sound.data() + frames + done),
                  noErr);
    }
    return sound;
}

float loudest(const std::vector<float>& sound)
{
    float peak = 0.0F;
    for (const float sample : sound) {
        peak = std::max(peak, std::fabs(sample));
    }
    return peak;
}

float greatestDifference(const std::vector<float>& one, const std::vector<float>& other)
{
    EXPECT_EQ(one.size(), other.size());
    float greatest = 0.0F;
    for (std::size_t i = 0; i < std::min(one.size(), other.size()); ++i) {
        greatest = std::max(greatest, std::fabs(one[i] - other[i]));
    }
    return greatest;
}

} // namespace volvelle::test
