#include "tests/services/audiograph/Studio.h"

#include "tests/wire/ToldState.h"

#include "base/Text.h"

#include <algorithm>

namespace volvelle::test {

Studio::Studio(int blockFrames, double rate)
    : block(blockFrames),
      recorder(std::make_shared<RecordingUnit>(rate)),
      sequencer(std::make_unique<AVAudioSequencer>(engine))
{
    EXPECT_EQ(engine->attachNode(instrument), noErr);
    EXPECT_EQ(engine->connect(instrument, engine->mainMixerNode(), 0, 0), noErr);
    EXPECT_EQ(engine->enableManualRenderingMode(AudioSource::maximumFrames), noErr);
    EXPECT_EQ(engine->start().error(), "");
}

void Studio::load(const Song& song)
{
    ASSERT_EQ(sequencer->loadFromData(song.file(), AVAudioSequencer::channelsToTracks).error(), "");
    for (const auto& track : sequencer->tracks()) {
        track->setDestinationAudioUnit(instrument);
    }
}

void Studio::start(double beats)
{
    sequencer->setCurrentPositionInBeats(beats);
    EXPECT_EQ(sequencer->start().error(), "");
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

namespace {

Lines at(std::int64_t frame, const Lines& messages)
{
    Lines lines;
    for (const std::string& message : messages) {
        lines.push_back(std::to_string(frame) + ": " + message);
    }
    return lines;
}

} // namespace

Lines stateLines(std::int64_t frame, int channel, const std::vector<ShortMessage>& messages)
{
    ChannelState state;
    for (const ShortMessage& message : messages) {
        state.apply(message);
    }
    return at(frame, told(state, channel));
}

Lines resetLines(std::int64_t frame, const std::vector<int>& channels)
{
    Lines lines;
    for (const int channel : channels) {
        const auto status = static_cast<std::uint8_t>(0xB0 + channel);
        lines = joined({lines, at(frame, {hexLine({status, 120, 0})})});
    }
    for (const int channel : channels) {
        lines = joined({lines, stateLines(frame, channel)});
    }
    return lines;
}

Lines releaseLines(std::int64_t frame, int channel, bool all)
{
    const auto status = static_cast<std::uint8_t>(0xB0 + channel);
    Lines messages{hexLine({status, 64, 0}), hexLine({status, 66, 0}), hexLine({status, 69, 0})};
    if (all) {
        messages.push_back(hexLine({status, 123, 0}));
    }
    return at(frame, messages);
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
