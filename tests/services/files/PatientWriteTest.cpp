#include "services/files/PatientWrite.h"

#include "services/files/FileFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace volvelle::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

// Says so when it is asked for the third time.
class ThirdQuestion {
public:
    EndOfPatience end()
    {
        return [this] { return ++asked == 3 ? ECANCELED : 0; };
    }

    int asked = 0;
};

Bytes countingBytes(std::size_t count)
{
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
    }
    return bytes;
}

class PatientWriteTest : public testing::Test {
protected:
    PatientWriteTest() { EXPECT_EQ(pipe(ends.data()), 0); }

    ~PatientWriteTest() override
    {
        close(ends[0]);
        close(ends[1]);
    }

    PatientWriteTest(const PatientWriteTest&) = delete;
    PatientWriteTest& operator=(const PatientWriteTest&) = delete;

    TemporaryFolder folder;
    std::array<int, 2> ends{};
    ThirdQuestion third;
};

TEST_F(PatientWriteTest, WhatFindsRoomIsWrittenWithoutAQuestion)
{
    EXPECT_EQ(writePatiently(ends[1], countingBytes(9'000), third.end()), 0);
    Bytes got(10'000);
    EXPECT_EQ(read(ends[0], got.data(), got.size()), 9'000);
    got.resize(9'000);
    EXPECT_EQ(got, countingBytes(9'000));
    EXPECT_EQ(third.asked, 0);
}

TEST_F(PatientWriteTest, AFullPipeIsWaitedForUntilTheEndOfPatience)
{
    EXPECT_EQ(writePatiently(ends[1], countingBytes(1'000'000), third.end()), ECANCELED);
    EXPECT_EQ(third.asked, 3);
}

TEST_F(PatientWriteTest, WhatIsReadMeanwhileArrivesWhole)
{
    Bytes got;
    const EndOfPatience readAll = [&] {
        std::array<std::uint8_t, 65536> part{};
        const ssize_t count = read(ends[0], part.data(), part.size());
        got.insert(got.end(), part.begin(), part.begin() + count);
        return 0;
    };
    EXPECT_EQ(writePatiently(ends[1], countingBytes(200'000), readAll), 0);
    while (got.size() < 200'000 && readAll() == 0) {
    }
    EXPECT_EQ(got, countingBytes(200'000));
}

TEST_F(PatientWriteTest, APipeWithoutAReaderIsWaitedForUntilTheEndOfPatience)
{
    const std::string name = folder.path / "pipe";
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    EXPECT_EQ(writePatiently(name, countingBytes(10), third.end()), ECANCELED);
    EXPECT_EQ(third.asked, 3);
}

TEST_F(PatientWriteTest, AReaderThatComesLateIsServed)
{
    const std::string name = folder.path / "pipe";
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    int reader = -1;
    const EndOfPatience openIt = [&] {
        reader = open(name.c_str(), O_RDONLY | O_NONBLOCK);
        return 0;
    };
    EXPECT_EQ(writePatiently(name, countingBytes(10), openIt), 0);
    Bytes got(10);
    EXPECT_EQ(read(reader, got.data(), got.size()), 10);
    EXPECT_EQ(got, countingBytes(10));
    close(reader);
}

TEST_F(PatientWriteTest, WhatIsNoPipeIsNotWaitedFor)
{
    const std::string name = folder.path / "socket";
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(name.size(), sizeof(address.sun_path));
    name.copy(address.sun_path, name.size());
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    EXPECT_EQ(writePatiently(name, countingBytes(1), third.end()), ENXIO);
    close(listener);
    EXPECT_EQ(writePatiently("/dev/full", countingBytes(1), third.end()), ENOSPC);
    EXPECT_EQ(writePatiently(folder.path / "no/file", countingBytes(1), third.end()), ENOENT);
    EXPECT_EQ(third.asked, 0);
}

TEST_F(PatientWriteTest, WhatTookTooLongIsReadByNobody)
{
    EXPECT_EQ(writeFailure("a", ETIMEDOUT), "'a' could not be written: nobody reads it.");
}

} // namespace

TEST_F(PatientWriteTest, AFileIsWrittenAlsoWhereNoStandardInputIsOpen)
{
    folder.write("a", "");
    const int input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    const int failed = writePatiently(folder.path / "a", countingBytes(3), third.end());
    const bool isOpen = fcntl(STDIN_FILENO, F_GETFD) >= 0;
    dup2(input, STDIN_FILENO);
    close(input);
    EXPECT_EQ(failed, 0);
    EXPECT_FALSE(isOpen);
    EXPECT_EQ(std::filesystem::file_size(folder.path / "a"), 3U);
}

} // namespace volvelle::test
