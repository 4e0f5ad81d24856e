#include "tests/services/audiograph/Studio.h"

#include <gmock/gmock.h>

namespace volvelle::test {

namespace {

Song pedalledNote(int pedal)
{
    return Song().message(0.0, 0xB0, pedal, 127).note(0.0, 0, 60, 100, 0.25).note(8.0, 0, 60, 100, 1.0);
}

// The pedals come up after the note-off, and before anything goes down again.
void expectPedalsUp(const Lines& heard, const std::string& frame)
{
    for (const char* pedal : {"40", "42", "45"}) {
        EXPECT_THAT(heard, testing::Contains(frame + ": B0 " + pedal + " 00"));
    }
}

class Pedals : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(All, Pedals, testing::Values(64, 66, 69));

TEST_P(Pedals, ComeUpAtAStop)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.sequencer->stop();
    expectPedalsUp(studio.run(512), "9600");
}

TEST_P(Pedals, ComeUpAtASeekAndGoDownAgainWhereTheyAreDownThere)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.sequencer->setCurrentPositionInBeats(4.0);
    const Lines heard = studio.run(512);
    expectPedalsUp(heard, "9600");
    const auto pedal = static_cast<std::uint8_t>(GetParam());
    const Lines state = stateLines(9600, 0, {{0xB0, pedal, 127}});
    EXPECT_EQ(Lines(heard.end() - static_cast<std::ptrdiff_t>(state.size()), heard.end()), state);
}

TEST_P(Pedals, ComeUpWhereOtherContentTakesOver)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.load(Song().note(8.0, 1, 60, 100, 1.0));
    expectPedalsUp(studio.run(512), "9600");
}

TEST_P(Pedals, ComeUpWhereTheDestinationIsTakenAway)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.sequencer->tracks()[0]->setDestinationAudioUnit(nullptr);
    expectPedalsUp(studio.run(512), "9600");
}

TEST_P(Pedals, ComeUpWhereTheSequencerDies)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.sequencer.reset();
    expectPedalsUp(studio.run(512), "9600");
}

TEST_P(Pedals, ComeUpWhereTheSequencerStopsInTheBlockOfOtherContent)
{
    Studio studio;
    studio.load(pedalledNote(GetParam()));
    studio.start();
    studio.run(9600);
    studio.load(Song().note(8.0, 1, 60, 100, 1.0));
    studio.sequencer->stop();
    expectPedalsUp(studio.run(512), "9600");
}

} // namespace

} // namespace volvelle::test
