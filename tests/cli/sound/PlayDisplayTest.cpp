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

} // namespace
} // namespace volvelle
