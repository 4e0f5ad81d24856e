#include "app/document/FileCircle.h"

#include "app/document/CircleBeats.h"
#include "tests/app/document/MIDIDocumentFixture.h"
#include "tests/support/Stops.h"

#include <limits>
#include <thread>

namespace volvelle::test {

namespace {

class FileCircleTest : public MIDIDocuments {};

TEST_F(FileCircleTest, ACircleHasWholeBeatsAndAtLeastSixteen)
{
    EXPECT_EQ(circleBeats(0.0), 16.0);
    EXPECT_EQ(circleBeats(16.9), 16.0);
    EXPECT_EQ(circleBeats(17.0), 17.0);
    EXPECT_EQ(circleBeats(-5.0), 16.0);
    EXPECT_STOP(circleBeats(1e300), "Not enough bits to represent the passed value");
    EXPECT_STOP(circleBeats(std::numeric_limits<double>::quiet_NaN()),
                "Not enough bits to represent the passed value");
}

TEST_F(FileCircleTest, HoldsTheEventsThatADocumentOfTheFileHas)
{
    const auto file = folder.write("a.mid", smallFile());
    const auto document = MIDIDocument::make(file);
    EXPECT_TRUE(opens(*document));
    FileCircle circle(file);
    EXPECT_EQ(circle.notes(), 3);
    EXPECT_EQ(circle.getBeatCount(), 16.0);
    EXPECT_EQ(textsOf(circle.getEvents()), textsOf(document->getEvents()));
    EXPECT_EQ(FileCircle(smallFile()).notes(), 3);
}

TEST_F(FileCircleTest, AllEventsGoToTheFirstCable)
{
    const auto file = folder.write("a.mid", smallFile());
    const auto document = MIDIDocument::make(file);
    EXPECT_TRUE(opens(*document));
    FileCircle circle(file);
    auto events = circle.getEvents();
    for (const auto& event : document->getEvents()) {
        events.push_back(event);
    }
    ASSERT_EQ(events.size(), 12U);
    for (const auto& event : events) {
        EXPECT_EQ(event->pEvent()->cable, 0);
    }
}

// One track of two channels, the higher one first.
const std::vector<std::uint8_t> twoChannels{0x4D, 0x54, 0x68, 0x64, 0,    0,    0,    6,    0,  0,    0,
                                            1,    0,    96,   0x4D, 0x54, 0x72, 0x6B, 0,    0,  0,    20,
                                            0,    0x91, 62,   100,  0,    0x90, 60,   100,  96, 0x81, 62,
                                            64,   0,    0x80, 60,   64,   0,    0xFF, 0x2F, 0};

TEST_F(FileCircleTest, TheChannelsOfOneTrackStandApartAsInADocument)
{
    const auto file = folder.write("a.mid", twoChannels);
    const Lines texts = textsOf(FileCircle(file).getEvents());
    ASSERT_EQ(texts.size(), 4U);
    EXPECT_EQ(texts.front(), "0 144 60 100");
    const auto document = MIDIDocument::make(file);
    EXPECT_TRUE(opens(*document));
    EXPECT_EQ(textsOf(document->getEvents()), texts);
}

TEST_F(FileCircleTest, IsAsLongAsItsLongestTrack)
{
    writeFile(folder.path / "a.mid", {{{0.0, 60, 1.0}, {19.0, 62, 1.5, 3}}, {}, {}});
    FileCircle circle(folder.path / "a.mid");
    EXPECT_EQ(circle.notes(), 2);
    EXPECT_EQ(circle.getBeatCount(), 20.0);
}

TEST_F(FileCircleTest, IsMadeOnAnotherThreadWhileADocumentIsOpened)
{
    const auto file = folder.write("a.mid", smallFile());
    std::thread worker([&] {
        for (int i = 0; i < 50; ++i) {
            EXPECT_EQ(FileCircle(file).notes(), 3);
        }
    });
    for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(opens(*MIDIDocument::make(file)));
    }
    worker.join();
}

TEST_F(FileCircleTest, OfWhatCannotBeReadIsEmpty)
{
    for (const auto& file : {folder.path / "gone.mid", folder.path, folder.write("a.mid", "no music")}) {
        FileCircle circle(file);
        EXPECT_EQ(circle.notes(), -1) << file;
        EXPECT_EQ(circle.getEvents().size(), 0U) << file;
        EXPECT_EQ(circle.getBeatCount(), 16.0) << file;
    }
    EXPECT_EQ(FileCircle(std::vector<std::uint8_t>()).notes(), -1);
}

TEST_F(FileCircleTest, IsGivenUpWhereItIsAskedToStop)
{
    std::stop_source stop;
    EXPECT_EQ(FileCircle(smallFile(), stop.get_token()).notes(), 3);
    stop.request_stop();
    FileCircle circle(smallFile(), stop.get_token());
    EXPECT_EQ(circle.notes(), -1);
    EXPECT_EQ(circle.getEvents().size(), 0U);
    EXPECT_EQ(FileCircle(folder.write("a.mid", smallFile()), stop.get_token()).notes(), -1);
}

TEST_F(FileCircleTest, OfAnArrangementHasAllItsNotes)
{
    const auto document = MIDIDocument::make();
    FileCircle circle(*document->data);
    EXPECT_EQ(circle.getEvents().size(), document->getEvents().size());
    EXPECT_EQ(circle.notes() * 2, static_cast<int>(circle.getEvents().size()));
}

} // namespace

} // namespace volvelle::test
