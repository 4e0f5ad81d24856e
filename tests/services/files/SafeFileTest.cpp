#include "services/files/SafeFile.h"

#include "services/files/FileFailure.h"
#include "tests/services/files/FileSizeLimit.h"
#include "tests/support/Bytes.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace volvelle::test {

namespace {

Bytes contentOf(const std::filesystem::path& path)
{
    Bytes bytes;
    EXPECT_EQ(readFile(path, bytes), noErr);
    return bytes;
}

class SafeFiles : public testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path path = folder.path / "a.mid";
};

TEST_F(SafeFiles, AFileReadsBackAsItWasWritten)
{
    Bytes bytes(200'000);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 7);
    }
    EXPECT_EQ(replaceFile(path, bytes, false), noErr);
    EXPECT_EQ(contentOf(path), bytes);
    EXPECT_EQ(replaceFile(path, {}, true), noErr);
    EXPECT_EQ(contentOf(path), Bytes{});
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
}

TEST_F(SafeFiles, AFullDiskLeavesNothingBehindAndTheExistingFileAsItWas)
{
    EXPECT_EQ(replaceFile(path, hex("0102"), false), noErr);
    {
        const FileSizeLimit limit(1000);
        EXPECT_EQ(replaceFile(path, Bytes(5000, 1), true), fileIOErr);
        EXPECT_EQ(replaceFile(folder.path / "b.mid", Bytes(5000, 1), true), fileIOErr);
    }
    EXPECT_EQ(contentOf(path), hex("0102"));
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
}

TEST_F(SafeFiles, AFolderThatCannotBeWrittenLeavesTheExistingFileAsItWas)
{
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser may write everywhere";
    }
    EXPECT_EQ(replaceFile(path, hex("0102"), false), noErr);
    std::filesystem::permissions(folder.path,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    EXPECT_EQ(replaceFile(path, hex("03"), true), fileIOErr);
    EXPECT_EQ(contentOf(path), hex("0102"));
}

TEST_F(SafeFiles, AFileThatMayNotBeReadIsAnIOError)
{
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser may read everything";
    }
    EXPECT_EQ(replaceFile(path, hex("01"), false), noErr);
    std::filesystem::permissions(path, std::filesystem::perms::none);
    Bytes bytes = hex("77");
    EXPECT_EQ(readFile(path, bytes), fileIOErr);
    EXPECT_EQ(bytes, hex("77"));
}

TEST_F(SafeFiles, ALinkIsFollowedAndStays)
{
    const std::filesystem::path link = folder.path / "link.mid";
    EXPECT_EQ(replaceFile(path, hex("01"), false), noErr);
    std::filesystem::create_symlink("a.mid", link);
    EXPECT_EQ(replaceFile(link, hex("02"), true), noErr);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(contentOf(path), hex("02"));
}

TEST_F(SafeFiles, TheAccessRightsOfAnExistingFileStay)
{
    EXPECT_EQ(replaceFile(path, hex("01"), false), noErr);
    std::filesystem::permissions(path,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(replaceFile(path, hex("02"), true), noErr);
    EXPECT_EQ(std::filesystem::status(path).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(SafeFiles, ANameWithoutAFolderIsTakenInTheCurrentOne)
{
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path);
    EXPECT_EQ(replaceFile("plain.mid", hex("01"), false), noErr);
    std::filesystem::current_path(before);
    EXPECT_EQ(folder.names(), Lines{"plain.mid"});
}

TEST_F(SafeFiles, ADeviceIsWrittenDirectly)
{
    EXPECT_EQ(replaceFile("/dev/null", hex("01"), true), noErr);
    EXPECT_EQ(replaceFile("/dev/null", hex("01"), false), fileExistsErr);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_EQ(replaceFile("/dev/full", hex("01"), true), fileIOErr);
}

TEST_F(SafeFiles, APipeIsWrittenDirectly)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    EXPECT_EQ(replaceFile("/dev/fd/" + std::to_string(ends[1]), hex("0102"), true), noErr);
    close(ends[1]);
    std::array<std::uint8_t, 8> read{};
    EXPECT_EQ(::read(ends[0], read.data(), read.size()), 2);
    close(ends[0]);
}

TEST_F(SafeFiles, APipeIsReadToItsEndWhateverItHolds)
{
    for (const std::size_t size : {0U, 1U, 2U, 65'535U, 65'536U, 65'537U, 65'538U, 200'000U}) {
        Bytes bytes(size);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<std::uint8_t>(i * 7);
        }
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe(ends.data()), 0);
        ASSERT_GE(fcntl(ends[1], F_SETPIPE_SZ, 1 << 18), 1 << 18);
        ASSERT_EQ(write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(size));
        close(ends[1]);
        EXPECT_EQ(contentOf("/dev/fd/" + std::to_string(ends[0])), bytes) << size;
        close(ends[0]);
    }
}

TEST_F(SafeFiles, ALinkToAFileThatIsNotThereGetsIt)
{
    std::filesystem::create_directory(folder.path / "below");
    std::filesystem::create_symlink("below/next", folder.path / "first");
    std::filesystem::create_symlink("../a.mid", folder.path / "below" / "next");
    EXPECT_EQ(replaceFile(folder.path / "first", hex("01"), true), noErr);
    EXPECT_EQ(contentOf(path), hex("01"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path / "first"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path / "below" / "next"));
    EXPECT_EQ(folder.names(), (Lines{"a.mid", "below", "first"}));
    std::filesystem::create_symlink("/nowhere/at/all.mid", folder.path / "lost");
    EXPECT_EQ(putFile(folder.path / "lost", hex("01"), true), ENOENT);
}

TEST_F(SafeFiles, ACircleOfLinksIsRefused)
{
    std::filesystem::create_symlink("two", folder.path / "one");
    std::filesystem::create_symlink("one", folder.path / "two");
    EXPECT_EQ(putFile(folder.path / "one", hex("01"), true), ELOOP);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path / "one"));
    EXPECT_EQ(folder.names(), (Lines{"one", "two"}));
}

TEST_F(SafeFiles, AWriteProtectedFileStays)
{
    EXPECT_EQ(replaceFile(path, hex("01"), false), noErr);
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    EXPECT_EQ(putFile(path, hex("02"), true), EACCES);
    EXPECT_EQ(writeFailure(path, EACCES),
              "'" + path.string() + "' could not be written: it is write-protected.");
    EXPECT_EQ(contentOf(path), hex("01"));
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
}

TEST_F(SafeFiles, EachFailureHasAReasonOfItsOwn)
{
    const auto reason = [this](int error) {
        const std::string begin = "'" + path.string() + "' could not be written: ";
        const std::string line = writeFailure(path, error);
        EXPECT_EQ(line.substr(0, begin.size()), begin);
        return line.substr(begin.size());
    };
    EXPECT_EQ(reason(putFile("/nowhere/a.mid", {}, true)), "its folder does not exist.");
    EXPECT_EQ(reason(putFile("/dev/null/a.mid", {}, true)), "its folder does not exist.");
    EXPECT_EQ(reason(putFile("", {}, true)), "its folder does not exist.");
    EXPECT_EQ(reason(putFile(folder.path, {}, true)), "it is a folder.");
    EXPECT_EQ(reason(putFile("/dev/null", {}, false)), "it is there already.");
    EXPECT_EQ(reason(putFile(folder.path / std::string(300, 'a'), {}, true)), "its name is too long.");
    EXPECT_EQ(reason(putFile("/dev/full", hex("01"), true)), "the device is full.");
    EXPECT_EQ(reason(ELOOP), "its links lead in a circle.");
    EXPECT_EQ(reason(EDQUOT), "the device is full.");
    EXPECT_EQ(reason(EFBIG), "it would be larger than allowed.");
    EXPECT_EQ(reason(EACCES), "its folder is not writable.");
    EXPECT_EQ(reason(EPERM), "its folder is not writable.");
    EXPECT_EQ(reason(EROFS), "the device is read-only.");
    EXPECT_EQ(reason(EPIPE), "nobody reads it.");
    EXPECT_EQ(reason(EIO), "Input/output error.");
}

TEST_F(SafeFiles, WhatIsNotThereIsNotFound)
{
    Bytes bytes;
    EXPECT_EQ(readFile(path, bytes), fileNotFoundErr);
    EXPECT_EQ(readFile("/dev/null/a.mid", bytes), fileNotFoundErr);
    EXPECT_EQ(readFile("", bytes), fileNotFoundErr);
    EXPECT_EQ(replaceFile(folder.path / "none" / "a.mid", hex("01"), true), fileNotFoundErr);
    EXPECT_EQ(replaceFile("", hex("01"), true), fileNotFoundErr);
}

TEST_F(SafeFiles, AFolderIsNoFile)
{
    Bytes bytes;
    EXPECT_EQ(readFile(folder.path, bytes), fileIOErr);
    EXPECT_EQ(replaceFile(folder.path, hex("01"), true), fileIOErr);
}

TEST_F(SafeFiles, AFileBeyondTheGreatestSizeIsNotRead)
{
    std::FILE* const file = std::fopen(path.c_str(), "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    EXPECT_EQ(truncate(path.c_str(), std::int64_t{3} << 30U), 0);
    Bytes bytes;
    EXPECT_EQ(readFile(path, bytes), fileIOErr);
}

} // namespace

} // namespace volvelle::test
