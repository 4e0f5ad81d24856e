#include "app/shell/PictureCommand.h"

#include "services/musicsequence/FaultPoint.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace volvelle::test {
namespace {

TEST(PictureCommand, AReadingThatFailsIsToldByItsStatus)
{
    const TemporaryFolder folder;
    const auto whole = folder.write(
        "a.mid", std::string("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\xC\0\x90H@\x10\x80H\0\0\xFF\x2F\0", 34));
    const auto other = folder.write("b.mid", "no music");

    const auto failure = [&](const std::filesystem::path& file) {
        CommandOutput output(false);
        testing::internal::CaptureStderr();
        EXPECT_EQ(runPicture({.file = file, .out = folder.path / "a.png", .beat = {}}, output), exitFailed);
        return testing::internal::GetCapturedStderr();
    };
    for (const int before : {0, 1}) {
        setFault(MusicSequenceOperation::NewMusicSequenceFromData, {fileIOErr, before, 1});
        EXPECT_EQ(failure(whole), "'" + whole.string() + "' could not be read.\n") << before;
    }
    clearFaults();
    EXPECT_EQ(failure(other), "'" + other.string() + "' is no Standard MIDI File.\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path / "a.png"));
}

} // namespace
} // namespace volvelle::test
