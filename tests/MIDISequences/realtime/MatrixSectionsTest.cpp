#include "tests/MIDISequences/realtime/SequencerProbe.h"

#include "MIDISequences/realtime/MatrixSections.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/RealtimeGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

using testing::ElementsAre;

std::shared_ptr<SequencerProbe> fill(MatrixSections& matrix, std::size_t section, std::size_t track,
                                     const StampedEvents& list)
{
    auto cell = std::make_shared<SequencerProbe>();
    cell->isLooping = true;
    cell->load(list);
    matrix.sections[section]->tracks[track] = cell;
    return cell;
}

} // namespace

TEST(MatrixSections, HasEightSectionsOfSixteenLoopingSequencersEachOnItsChannel)
{
    const MatrixSections matrix;

    ASSERT_EQ(matrix.sections.size(), 8U);
    for (const auto& section : matrix.sections) {
        ASSERT_EQ(section->tracks.size(), 16U);
        for (std::size_t i = 0; i < 16; ++i) {
            EXPECT_EQ(section->tracks[i]->currentChannel, i);
            EXPECT_FALSE(section->tracks[i]->isMultiChannel);
            EXPECT_TRUE(section->tracks[i]->isLooping);
        }
    }
    EXPECT_GE(matrix.allEvents.capacity(), 4096U);
}

TEST(MatrixSections, OfEmptyCellsGivesNothing)
{
    MatrixSections matrix;
    EXPECT_EQ(matrix.process(1000, 512), nullptr);
    matrix.deallocateRealtimeEventListHead(nullptr);
}

TEST(MatrixSections, GivesTheEventsBySectionTrackAndTime)
{
    MatrixSections matrix;
    fill(matrix, 1, 0, {{0, {0xB0, 7, 3}}, {9000, {0xB0, 7, 9}}});
    fill(matrix, 0, 9, {{400, {0xB9, 7, 2}}, {9000, {0xB0, 7, 9}}});
    fill(matrix, 0, 2, {{100, {0xB2, 7, 0}}, {500, {0xF0, 1, 2, 3, 0xF7}}, {9000, {0xB0, 7, 9}}});
    AURenderEvent* const head = matrix.process(0, 512);

    EXPECT_THAT(stampedOf(head), ElementsAre(Stamped{100, {0xB2, 7, 0}}, Stamped{500, {0xF0, 1, 2}},
                                             Stamped{400, {0xB9, 7, 2}}, Stamped{0, {0xB0, 7, 3}}));
    EXPECT_EQ(matrix.allEvents.size(), 4U);
    matrix.deallocateRealtimeEventListHead(head);
}

TEST(MatrixSections, StartsEveryCellAnewInEachCycle)
{
    MatrixSections matrix;
    const auto cell = fill(matrix, 0, 0, {{100, {0xB0, 7, 0}}, {600, {0xB0, 7, 1}}, {9000, {0xB0, 7, 9}}});
    for (std::int64_t time = 0; time < 60 * 512; time += 512) {
        AURenderEvent* const head = matrix.process(time, 512);
        const std::size_t due = time < 512 ? 1 : time + 512 <= 9000 ? 2 : 3;
        ASSERT_EQ(stampedOf(head).size(), due) << time;
        matrix.deallocateRealtimeEventListHead(head);
    }

    EXPECT_EQ(cell->realtimeEvents.size(), 4096U);
    EXPECT_EQ(cell->realtimeEvents.dropped, 60U * 80U - 4096U);
}

TEST(MatrixSections, TellsWhatItsCellsTellByTheWayForRenderingThreads)
{
    MatrixSections matrix;
    ConsoleCapture console;
    matrix.process(0, 512);
    const auto lines = console.take();

    ASSERT_EQ(lines.size(), 257U);
    EXPECT_THAT(std::vector(lines.begin(), lines.begin() + 4),
                ElementsAre("AUMIDISequencer::stop()", "AUMIDISequencer::seek(0.0)",
                            "AUMIDISequencer::start() at 0",
                            "AUMIDISequencer::ERROR: There is no MIDI data available for playing."));
}

TEST(MatrixSections, PassesOverACellThatIsOperated)
{
    MatrixSections matrix;
    const auto cell = fill(matrix, 0, 0, {{100, {0xB0, 7, 0}}, {9000, {0xB0, 7, 9}}});
    cell->exclusively([&] { EXPECT_EQ(matrix.process(0, 512), nullptr); });

    AURenderEvent* const head = matrix.process(0, 512);
    EXPECT_NE(head, nullptr);
    matrix.deallocateRealtimeEventListHead(head);
}

TEST(MatrixSections, TakesNoMemoryAndNoLockOnceItRuns)
{
    MatrixSections matrix;
    for (std::size_t section = 0; section < 8; ++section) {
        for (std::size_t track = 0; track < 16; ++track) {
            StampedEvents list;
            for (int i = 0; i < 50; ++i) {
                list.push_back({i, {0x90, 60, 1}});
            }
            list.push_back({100'000, {0xB0, 7, 9}});
            fill(matrix, section, track, list);
        }
    }
    const ConsoleCapture console;
    matrix.deallocateRealtimeEventListHead(matrix.process(0, 512));
    for (std::int64_t time = 0; time < 100 * 512; time += 512) {
        const RealtimeGuard guard;
        matrix.deallocateRealtimeEventListHead(matrix.process(time, 512));
    }
    EXPECT_EQ(matrix.allEvents.size(), 6400U);
}

} // namespace volvelle::test
