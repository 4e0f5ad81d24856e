#include "tests/services/audiograph/Studio.h"

#include "base/Text.h"

#include <algorithm>

namespace volvelle::test {

Studio::Studio(int blockFrames, double rate)
    : block(blockFrames),
      recorder(std::make_shared<RecordingUnit>(rate)),
      sequencer(std::make_unique<AVAudioSequencer>(engine))
{
    std::string error;
    EXPECT_EQ(engine->attachNode(instrument), noErr);
    EXPECT_EQ(engine->connect(instrument, engine->mainMixerNode(), 0, 0), noErr);
    EXPECT_EQ(engine->enableManualRenderingMode(AudioSource::maximumFrames), noErr);
    EXPECT_TRUE(engine->start(error)) << error;
}

void Studio::load(const Song& song)
{
    std::string error;
    ASSERT_TRUE(sequencer->loadFromData(song.file(), AVAudioSequencer::channelsToTracks, error)) << error;
    for (const auto& track : sequencer->tracks()) {
        track->setDestinationAudioUnit(instrument);
    }
}

void Studio::start(double beats)
{
    std::string error;
    sequencer->setCurrentPositionInBeats(beats);
    EXPECT_TRUE(sequencer->start(error)) << error;
}

Lines Studio::run(std::int64_t wanted)
{
    left.assign(static_cast<std::size_t>(wanted), 7.0F);
    right.assign(static_cast<std::size_t>(wanted), 7.0F);
    std::uniform_int_distribution<int> sizes(1, AudioSource::maximumFrames);
    for (std::int64_t done = 0; done < wanted;) {
        const int size = block == 0 ? sizes(random) : block;
        const int now = static_cast<int>(std::min<std::int64_t>(size, wanted - done));
        EXPECT_EQ(engine->renderOffline(now, left.data() + done, right.data() + done), noErr);
        done += now;
    }
    frames += wanted;
    return recorder->take();
}

Lines resetLines(std::int64_t frame)
{
    Lines lines;
    const std::string begin = std::to_string(frame) + ": ";
    for (int channel = 0; channel < 16; ++channel) {
        const std::string digit(1, "0123456789ABCDEF"[channel]);
        for (const char* rest :
             {"B# 78 00", "B# 79 00", "E# 00 40", "B# 07 64", "B# 0A 40", "B# 00 00", "B# 20 00", "C# 00"}) {
            std::string line = begin + rest;
            line.replace(line.find('#'), 1, digit);
            lines.push_back(line);
        }
    }
    return lines;
}

std::string blockName(const testing::TestParamInfo<int>& block)
{
    return block.param == 0 ? "random" : "of" + std::to_string(block.param);
}

Lines joined(const std::vector<Lines>& parts)
{
    Lines result;
    for (const Lines& part : parts) {
        result.insert(result.end(), part.begin(), part.end());
    }
    return result;
}

} // namespace volvelle::test
