#include "tests/services/audiograph/Studio.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>
#include <string>
#include <tuple>

namespace volvelle::test {

namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;

// A destination of any rate, pulled in blocks of any size.
class SequencerRates : public testing::TestWithParam<std::tuple<double, int>> {
protected:
    double rate() const { return std::get<0>(GetParam()); }

    Studio studio{std::get<1>(GetParam()), std::get<0>(GetParam())};

    // The frame of the destination at which an event at a frame of the engine is to act.
    std::int64_t place(double engineFrame) const
    {
        const bool isConverted = rate() != AudioSource::sampleRate;
        return (isConverted ? AUAudioUnit::pullAhead : 0) +
               std::llround(engineFrame * rate() / AudioSource::sampleRate);
    }

    // True where the place lies in the middle between two frames, as well as a double can tell.
    bool isTie(double engineFrame) const
    {
        const double frame = engineFrame * rate() / AudioSource::sampleRate;
        return std::fabs(frame - std::floor(frame) - 0.5) < 1.0e-6;
    }

    std::string line(double engineFrame, const std::string& bytes) const
    {
        return std::to_string(place(engineFrame)) + ": " + bytes;
    }
};

std::string nameOf(const testing::TestParamInfo<std::tuple<double, int>>& info)
{
    const int block = std::get<1>(info.param);
    return std::to_string(static_cast<int>(std::get<0>(info.param))) + "In" +
           (block == 0 ? "RandomBlocks" : "BlocksOf" + std::to_string(block));
}

INSTANTIATE_TEST_SUITE_P(Rates, SequencerRates,
                         testing::Combine(testing::Values(44100.0, 48000.0, 96000.0),
                                          testing::Values(1, 37, 64, 512, 0)),
                         nameOf);

} // namespace

TEST_P(SequencerRates, EventsStandAtTheirExactFrames)
{
    studio.load(Song()
                    .note(0.0, 0, 60, 100, 1.0)
                    .note(1.0, 0, 60, 90, 0.5, 33)
                    .message(1.25, 0xB0, 7, 80)
                    .note(1.0 / 3.0, 1, 64, 70, 1.0 / 3.0)
                    .exclusive(2.0, {0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7}));
    studio.start();
    EXPECT_THAT(
        studio.run(60000),
        ElementsAreArray(joined({resetLines(place(0), {0, 1}),
                                 {line(0, "90 3C 64"), line(8000, "91 40 46"), line(16000, "81 40 00"),
                                  line(24000, "80 3C 00"), line(24000, "90 3C 5A"), line(30000, "B0 07 50"),
                                  line(36000, "80 3C 21"), line(48000, "F0 7E 7F 09 01 F7")}})));
}

TEST_P(SequencerRates, AThousandNotesAtOddTimesStandAtTheirExactFrames)
{
    constexpr double secondsPerBeat = 0.437956; // a file has whole microseconds
    constexpr double framesPerTick = 48000.0 * secondsPerBeat / 480.0;
    std::mt19937 random(44100);
    Song song;
    song.tempo(0.0, 60.0 / secondsPerBeat);
    Lines expected = resetLines(place(0));
    for (int i = 0, tick = 0; i < 1000; ++i) {
        tick += 2 + static_cast<int>(random() % 90);
        tick += isTie(tick * framesPerTick) || isTie((tick + 1) * framesPerTick) ? 3 : 0;
        song.note(tick / 480.0, 0, 60, 100, 1.0 / 480.0);
        expected.push_back(line(tick * framesPerTick, "90 3C 64"));
        expected.push_back(line((tick + 1) * framesPerTick, "80 3C 00"));
    }
    studio.load(song);
    studio.start();
    const Lines heard = studio.run(static_cast<std::int64_t>(91 * 1000 * framesPerTick));
    EXPECT_THAT(heard, ElementsAreArray(expected));
}

TEST_P(SequencerRates, StoppingAndStartingAnewLeaveNothingHangingAndKeepTheOrder)
{
    Song song;
    for (int i = 0; i < 400; ++i) {
        song.note(i / 16.0, 0, 60 + i % 5, 100, 0.25);
    }
    studio.load(song);
    for (const int frames : {1, 777, 4800, 12345, 30000}) {
        studio.start(frames % 2 == 0 ? 1.0 : 0.0);
        studio.run(frames);
        studio.sequencer->stop();
        studio.run(2000);
        EXPECT_EQ(studio.recorder->sounding(), 0);
    }
    EXPECT_THAT(studio.run(48000), IsEmpty());
}

TEST_P(SequencerRates, ADestinationThatIsPulledAheadIsNeverTooLate)
{
    Song song;
    for (int i = 0; i < 2000; ++i) {
        song.note(i / 64.0, 0, 60, 100, 1.0 / 128.0);
    }
    studio.load(song);
    studio.start();
    for (int i = 0; i < 200; ++i) {
        studio.run(100 + i * 7 % 977);
        const double engineFrames = static_cast<double>(studio.frames) * rate() / AudioSource::sampleRate;
        EXPECT_LE(static_cast<double>(studio.recorder->renderedFrames()),
                  engineFrames + AUAudioUnit::pullAhead);
    }
}

} // namespace volvelle::test
