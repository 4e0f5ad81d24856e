#include "cli/sound/PlayDisplay.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

FileDescription music()
{
    FileDescription description;
    description.length = 16.0;
    FoundTrack track;
    track.notes = {{0.0, 2.0, 60, 90, 0, 0}, {1.0, 4.0, 36, 90, 0, 9}};
    description.tracks.push_back(track);
    description.chords = {{1.0, 3.0, "Am7", "A Minor 7th", {}}, {4.0, 12.0, "FM", "F Major", {}}};
    return description;
}

TEST(PlayDisplay, TheLineTellsBarChordChannelsAndPosition)
{
    const PlayDisplay display(music());
    EXPECT_EQ(display.line(0.0, false), "Bar 1.1  -  channels 1  0.0 of 16.0 beats");
    EXPECT_EQ(display.line(1.55, false), "Bar 1.2  Am7  channels 1 10  1.5 of 16.0 beats");
    EXPECT_EQ(display.line(2.0, false), "Bar 1.3  Am7  channels 10  2.0 of 16.0 beats");
    EXPECT_EQ(display.line(4.0, false), "Bar 2.1  FM  channels 10  4.0 of 16.0 beats");
    EXPECT_EQ(display.line(9.0, true), "Paused  Bar 3.2  FM  channels -  9.0 of 16.0 beats");
}

TEST(PlayDisplay, NotesThatTouchOverlapOrComeInAnyOrderAreOneSound)
{
    FileDescription description = music();
    description.tracks[0].notes = {{6.0, 1.0, 60, 90, 0, 2}, {1.0, 1.0, 60, 90, 0, 2},
                                   {2.0, 1.0, 61, 90, 0, 2}, {0.5, 4.0, 62, 90, 0, 2},
                                   {3.0, 0.5, 63, 90, 0, 2}, {8.0, 0.0, 60, 90, 0, 2}};
    const PlayDisplay display(description);
    for (const auto& [position, sounds] : std::vector<std::pair<double, bool>>{{0.4, false},
                                                                               {0.5, true},
                                                                               {4.4, true},
                                                                               {4.5, false},
                                                                               {5.9, false},
                                                                               {6.0, true},
                                                                               {7.0, false},
                                                                               {8.0, false}}) {
        EXPECT_EQ(display.line(position, false).find("channels 3 ") != std::string::npos, sounds) << position;
    }
}

} // namespace
} // namespace volvelle
