#include "services/files/FileExchange.h"

#include "base/PendingFiles.h"
#include "services/files/SafeFile.h"
#include "tests/services/documents/SystemCalls.h"
#include "tests/support/Bytes.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

class FileExchanges : public testing::Test {
protected:
    FileExchanges()
    {
        temporary.write("one/a", "old");
        temporary.write("two/b", "old");
        temporary.write("two/c", "old");
    }

    fs::path at(const char* name) const { return temporary.path / name; }

    static std::string content(const fs::path& path)
    {
        Bytes bytes;
        EXPECT_EQ(readFile(path, bytes), noErr) << path;
        return {bytes.begin(), bytes.end()};
    }

    static Lines namesIn(const fs::path& folder)
    {
        Lines names;
        for (const auto& entry : fs::directory_iterator(folder)) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }

    // The first name with a dot, the folder beside the files.
    std::string sideIn(const char* folder) const { return namesIn(at(folder)).front(); }

    void expectThatNothingChanged() const
    {
        EXPECT_EQ(temporary.names(), (Lines{"one", "two"}));
        EXPECT_EQ(namesIn(at("one")), Lines{"a"});
        EXPECT_EQ(namesIn(at("two")), (Lines{"b", "c"}));
        for (const char* const name : {"one/a", "two/b", "two/c"}) {
            EXPECT_EQ(content(at(name)), "old") << name;
        }
    }

    TemporaryFolder temporary;
    const Bytes bytes = hex("6E 65 77"); // "new"
};

TEST_F(FileExchanges, AFolderThatWasMadeStaysWhereAllIsDone)
{
    for (const bool isDone : {false, true}) {
        {
            FileExchange files;
            EXPECT_EQ(files.makeFolder(at("three/four")).error(), "");
            if (isDone) {
                EXPECT_EQ(files.carryOut().error(), "");
            }
        }
        EXPECT_EQ(fs::exists(at("three/four")), isDone);
    }
}

TEST_F(FileExchanges, FilesAreReplacedAddedAndRemoved)
{
    {
        FileExchange files;
        EXPECT_EQ(files.makeFolder(at("three/four")).error(), "");
        EXPECT_EQ(files.put(at("three/four/e"), bytes).error(), "");
        EXPECT_EQ(files.put(at("one/a"), bytes).error(), "");
        EXPECT_EQ(files.put(at("two/d"), bytes).error(), "");
        EXPECT_EQ(files.remove(at("two/b")).error(), "");
        EXPECT_EQ(content(at("one/a")), "old");
        EXPECT_EQ(files.carryOut().error(), "");
    }
    EXPECT_EQ(content(at("three/four/e")), "new");
    EXPECT_EQ(content(at("one/a")), "new");
    EXPECT_EQ(content(at("two/c")), "old");
    EXPECT_EQ(namesIn(at("three/four")), Lines{"e"});
    EXPECT_EQ(namesIn(at("one")), Lines{"a"});
    EXPECT_EQ(namesIn(at("two")), (Lines{"c", "d"}));
}

TEST_F(FileExchanges, WhatIsNotCarriedOutLeavesNothingBehind)
{
    {
        FileExchange files;
        EXPECT_EQ(files.makeFolder(at("three/four")).error(), "");
        EXPECT_EQ(files.put(at("three/four/e"), bytes).error(), "");
        EXPECT_EQ(files.put(at("one/a"), bytes).error(), "");
        EXPECT_EQ(files.remove(at("two/b")).error(), "");
    }
    expectThatNothingChanged();
}

TEST_F(FileExchanges, WhereOneFailsAllGoBack)
{
    {
        FileExchange files;
        EXPECT_EQ(files.makeFolder(at("three")).error(), "");
        EXPECT_EQ(files.put(at("one/a"), bytes).error(), "");
        EXPECT_EQ(files.put(at("two/d"), bytes).error(), "");
        EXPECT_EQ(files.remove(at("two/b")).error(), "");
        EXPECT_EQ(files.put(at("three/e"), bytes).error(), "");
        EXPECT_EQ(files.put(at("two/c"), bytes).error(), "");
        fs::remove_all(at("three"));
        EXPECT_EQ(files.carryOut().error(),
                  "'" + at("three/e").string() + "' could not be written: its folder does not exist.");
    }
    expectThatNothingChanged();
}

TEST_F(FileExchanges, WhatIsNoFileStaysInItsPlace)
{
    for (const char* const name : {"one/a", "one/b"}) {
        FileExchange files;
        EXPECT_EQ(files.put(at("two/b"), bytes).error(), "");
        EXPECT_EQ(
            (std::string(name) == "one/a" ? files.put(at(name), bytes) : files.remove(at(name))).error(), "");
        fs::remove(at(name));
        temporary.write(std::string(name) + "/mine", "mine");
        EXPECT_EQ(files.carryOut().error(),
                  "'" + at(name).string() + "' could not be written: it is a folder.");
    }
    EXPECT_EQ(content(at("one/a/mine")), "mine");
    EXPECT_EQ(content(at("one/b/mine")), "mine");
    EXPECT_EQ(content(at("two/b")), "old");
    EXPECT_EQ(namesIn(at("one")), (Lines{"a", "b"}));
}

TEST_F(FileExchanges, ANewFileThatVanishedFailsAndAllGoBack)
{
    for (const bool isWritten : {false, true}) {
        FileExchange files;
        EXPECT_EQ(files.remove(at("two/c")).error(), "");
        EXPECT_EQ(files.put(at("one/a"), bytes).error(), "");
        const auto vanish = [this] { fs::remove(at("one") / sideIn("one") / "a"); };
        if (isWritten) {
            beforeRenaming = vanish;
        } else {
            vanish();
        }
        EXPECT_EQ(files.carryOut().error(),
                  "'" + at("one/a").string() + "' could not be written: its folder does not exist.");
    }
    expectThatNothingChanged();
}

TEST_F(FileExchanges, WhatCannotGoBackIsKeptBesideItsPlace)
{
    const auto fail = [this] {
        FileExchange files;
        const bool isPut = files.put(at("one/a"), bytes) && files.put(at("two/b"), bytes);
        const fs::path other = at("two") / sideIn("two") / "b";
        beforeRenaming = [&] {
            beforeRenaming = [&] {
                fs::remove(other);
                beforeRenaming = [this] { fs::remove(at("one/a")); };
            };
        };
        return isPut && !files.carryOut();
    };
    EXPECT_EXIT(_exit(fail() ? 7 : 8), testing::ExitedWithCode(7), "");
    EXPECT_TRUE(sideIn("one").ends_with(".kept")) << sideIn("one");
    {
        FileExchange files;
        EXPECT_EQ(files.put(at("one/a"), bytes).error(), "");
        EXPECT_EQ(files.carryOut().error(), "");
    }
    EXPECT_EQ(content(at("one") / sideIn("one") / "a"), "old");
}

TEST_F(FileExchanges, WhatCannotBeMadeOrWrittenIsNamed)
{
    FileExchange files;
    EXPECT_EQ(files.makeFolder(at("one/a/b")).error(),
              "'" + at("one/a").string() + "' could not be written: it is there already.");
    EXPECT_EQ(files.put(at("none/a"), bytes).error(),
              "'" + at("none/a").string() + "' could not be written: its folder does not exist.");
    EXPECT_EQ(files.remove(at("none/a")).error(),
              "'" + at("none/a").string() + "' could not be written: its folder does not exist.");
}

TEST_F(FileExchanges, ASignalWaitsForTheEndAndStopsWhatIsNotWrittenYet)
{
    const auto end = [](int /*signal*/) { _exit(7); };
    EXPECT_EXIT(
        {
            std::signal(SIGTERM, end);
            FileExchange files;
            const Result<> before = files.put(at("one/a"), bytes);
            std::raise(SIGTERM);
            const Result<> after = files.put(at("two/b"), bytes);
            if (!before || after) {
                _exit(8);
            }
        },
        testing::ExitedWithCode(7), "");
    expectThatNothingChanged();
}

TEST_F(FileExchanges, ASignalBeforeAnyFileTookItsPlaceStopsAll)
{
    const auto end = [](int /*signal*/) { _exit(7); };
    EXPECT_EXIT(
        {
            std::signal(SIGTERM, end);
            FileExchange files;
            const Result<> before = files.put(at("one/a"), bytes);
            std::raise(SIGTERM);
            if (!before || files.carryOut()) {
                _exit(8);
            }
        },
        testing::ExitedWithCode(7), "");
    expectThatNothingChanged();
}

TEST_F(FileExchanges, ALinkInAPlaceStaysAndSoDoesAllElse)
{
    fs::create_symlink("../two/b", at("one/link"));
    for (const bool isPut : {true, false}) {
        FileExchange files;
        EXPECT_EQ(files.put(at("one/a"), bytes).error(), "");
        EXPECT_EQ((isPut ? files.put(at("one/link"), bytes) : files.remove(at("one/link"))).error(), "");
        EXPECT_EQ(files.carryOut().error(),
                  "'" + at("one/link").string() + "' could not be written: it is there already.");
    }
    EXPECT_TRUE(fs::is_symlink(at("one/link")));
    fs::remove(at("one/link"));
    expectThatNothingChanged();
}

TEST_F(FileExchanges, ASignalThatIsIgnoredStopsNothing)
{
    const auto before = std::signal(SIGHUP, SIG_IGN);
    {
        FileExchange files;
        std::raise(SIGHUP);
        EXPECT_EQ(files.put(at("one/a"), bytes).error(), "");
        EXPECT_EQ(files.carryOut().error(), "");
    }
    std::signal(SIGHUP, before);
    EXPECT_EQ(content(at("one/a")), "new");
}

TEST_F(FileExchanges, NewFilesAreOnDiskBeforeTheyTakeTheirPlacesAndTheFoldersAfterwards)
{
    FileExchange files;
    EXPECT_EQ(files.put(at("one/a"), bytes).error(), "");
    EXPECT_EQ(files.put(at("one/new"), bytes).error(), "");
    synchronised = 0;
    int before = 0;
    beforeRenaming = [&before] { before = synchronised; };
    EXPECT_EQ(files.carryOut().error(), "");
    EXPECT_EQ(before, 2);
    EXPECT_EQ(synchronised, before + 1);
}

TEST_F(FileExchanges, FoldersThatAreMadeAreOnDiskToo)
{
    FileExchange files;
    EXPECT_EQ(files.makeFolder(at("three/four")).error(), "");
    synchronised = 0;
    EXPECT_EQ(files.carryOut().error(), "");
    EXPECT_EQ(synchronised, 2);
}

TEST_F(FileExchanges, AFolderIsForOneAloneUntilItsEnd)
{
    const auto isFree = [this](const char* name) {
        const int folder = open(at(name).c_str(), O_RDONLY | O_DIRECTORY);
        const bool locked = flock(folder, LOCK_EX | LOCK_NB) == 0;
        EXPECT_TRUE(locked || errno == EWOULDBLOCK);
        close(folder);
        return locked;
    };
    {
        FileExchange files;
        EXPECT_EQ(files.lock(at("one")).error(), "");
        EXPECT_EQ(files.lock(at("three/four")).error(), "");
        EXPECT_FALSE(isFree("one"));
        EXPECT_FALSE(isFree("three/four"));
        EXPECT_TRUE(isFree("two"));
    }
    EXPECT_TRUE(isFree("one"));
    expectThatNothingChanged();
}

TEST_F(FileExchanges, WhoWaitsForAFolderEndsBySignal)
{
    const int held = open(at("one").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    const itimerval soon{{}, {0, 50'000}};
    EXPECT_EXIT(
        {
            setitimer(ITIMER_REAL, &soon, nullptr);
            std::signal(SIGALRM, [](int) { std::raise(SIGTERM); });
            FileExchange others;
            const Result<> locked = others.lock(at("one"));
            _exit(locked ? 7 : 8);
        },
        testing::KilledBySignal(SIGTERM), "");
    close(held);
}

TEST_F(FileExchanges, ASignalThatIsAnsweredDoesNotEndTheWaiting)
{
    static int held = -1;
    static int rings = 0;
    held = open(at("one").c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    struct sigaction answer = {};
    answer.sa_handler = [](int) {
        if (++rings == 2) {
            flock(held, LOCK_UN);
        }
    };
    struct sigaction before = {};
    ASSERT_EQ(sigaction(SIGALRM, &answer, &before), 0);
    const itimerval often{{0, 50'000}, {0, 50'000}};
    const itimerval never{};
    setitimer(ITIMER_REAL, &often, nullptr);
    int told = 0;
    {
        FileExchange files;
        EXPECT_EQ(files.lock(at("one"), [&told] { ++told; }).error(), "");
        EXPECT_GE(rings, 2);
        setitimer(ITIMER_REAL, &never, nullptr);
        EXPECT_NE(flock(held, LOCK_EX | LOCK_NB), 0);
    }
    EXPECT_EQ(told, 1);
    sigaction(SIGALRM, &before, nullptr);
    close(held);
}

TEST_F(FileExchanges, WhatAProcessThatIsNoMoreLeftGoesOnceAllIsDone)
{
    const pid_t ended = fork();
    if (ended == 0) {
        _exit(0);
    }
    ASSERT_EQ(waitpid(ended, nullptr, 0), ended);
    const std::string left = "one/.volvelle-" + std::to_string(ended) + "-3.new";
    const std::string mine = "one/" + temporaryFileName(".new");
    temporary.write(left + "/a", "older");
    temporary.write(mine + "/a", "newer");
    {
        FileExchange files;
        EXPECT_EQ(files.put(at("one/a"), bytes).error(), "");
    }
    EXPECT_TRUE(fs::exists(temporary.path / left));
    {
        FileExchange files;
        EXPECT_EQ(files.put(at("one/a"), bytes).error(), "");
        beforeRenaming = [&] {
            EXPECT_TRUE(fs::exists(temporary.path / left));
            fs::remove(at("one/a"));
        };
        EXPECT_NE(files.carryOut().error(), "");
    }
    EXPECT_TRUE(fs::exists(temporary.path / left));
    {
        FileExchange files;
        EXPECT_EQ(files.makeFolder(at("one")).error(), "");
        EXPECT_EQ(files.carryOut().error(), "");
    }
    EXPECT_FALSE(fs::exists(temporary.path / left));
    EXPECT_TRUE(fs::exists(temporary.path / mine / "a"));
}

} // namespace

} // namespace volvelle::test
