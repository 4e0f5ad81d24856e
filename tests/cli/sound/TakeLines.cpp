#include "tests/cli/sound/TakeLines.h"

#include <gtest/gtest.h>

namespace volvelle::test {

Lines takeLines(const std::vector<std::uint8_t>& file)
{
    MusicSequence sequence;
    std::uint32_t tracks = 0;
    EXPECT_EQ(NewMusicSequence(sequence), noErr);
    EXPECT_EQ(MusicSequenceFileLoadData(sequence, file, kMusicSequenceFile_MIDIType,
                                        kMusicSequenceLoadSMF_PreserveTracks),
              noErr);
    EXPECT_EQ(MusicSequenceGetTrackCount(sequence, tracks), noErr);
    Lines lines;
    for (std::uint32_t i = 0; i < tracks; ++i) {
        MusicTrack track;
        EXPECT_EQ(MusicSequenceGetIndTrack(sequence, i, track), noErr);
        lines = join({lines, contents(track)});
    }
    return lines;
}

} // namespace volvelle::test
