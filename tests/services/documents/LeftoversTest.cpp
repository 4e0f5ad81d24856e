#include "services/documents/Leftovers.h"
#include "base/PendingFiles.h"
#include "services/documents/NSFileVersion.h"
#include "tests/services/documents/DocumentFixture.h"
#include "tests/services/documents/SystemCalls.h"
#include "tests/support/ConsoleCapture.h"

#include <algorithm>
#include <climits>
#include <csignal>
#include <fstream>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

class Leftovers : public Documents {
protected:
    ~Leftovers() override { beforeRenaming = {}; }

    // The number of a process that has ended.
    static std::string deadProcess()
    {
        const pid_t child = fork();
        if (child == 0) {
            _exit(0);
        }
        waitpid(child, nullptr, 0);
        return std::to_string(child);
    }

    static Lines versionsOfFile(const fs::path& of)
    {
        Lines contents;
        const auto kept = NSFileVersion::otherVersionsOfItemAtURL(of);
        for (const auto& version : kept.value()) {
            contents.push_back(contentOf(version->url()));
        }
        return contents;
    }

    // Saves in another process, which is killed before the renaming of that number; before the first one
    // another program writes "theirs".
    void saveAndBeKilled(int renaming) const
    {
        const pid_t child = fork();
        if (child == 0) {
            const auto document = std::make_shared<PlainDocument>(file);
            document->open();
            document->words = "new";
            int done = 0;
            std::function<void()> count = [&] {
                if (++done == 1) {
                    writeTheirs();
                }
                if (done == renaming) {
                    kill(getpid(), SIGKILL);
                }
                beforeRenaming = count;
            };
            beforeRenaming = count;
            document->save();
            _exit(0);
        }
        ASSERT_GT(child, 0);
        waitpid(child, nullptr, 0);
    }

    void writeTheirs() const { std::ofstream(file) << "theirs"; }
};

TEST_F(Leftovers, WhatIsAVersionAlreadyBecomesNoSecondOne)
{
    folder.write("a.mid", "old");
    for (const char* bytes : {"theirs", "theirs", "theirs too", "theirs"}) {
        folder.write(".volvelle-" + deadProcess() + "-3-a.mid.replaced", bytes);
        keepLeftovers(folder.path);
    }
    EXPECT_EQ(versionsOfFile(file), (Lines{"theirs", "theirs too", "theirs"}));
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
}

TEST_F(Leftovers, WhatAnotherProgramWroteIsNeverLostWhereverASaveIsKilled)
{
    for (int renaming = 2; renaming < 7; ++renaming) {
        SCOPED_TRACE(renaming);
        folder.write("a.mid", "old");
        saveAndBeKilled(renaming);
        const auto document = std::make_shared<PlainDocument>(file);
        EXPECT_EQ(document->open(), "yes");
        EXPECT_EQ(folder.names(), Lines{"a.mid"});
        Lines all = versionsOfFile(file);
        all.push_back(contentOf(file));
        EXPECT_NE(std::ranges::find(all, "theirs"), all.end()) << all.size();
        EXPECT_TRUE(all.back() == "new" || all.back() == "theirs") << all.back();
        fs::remove_all(states.path / "volvelle");
    }
}

TEST_F(Leftovers, OfAReplacedFileBecomesAVersionAtTheNextSave)
{
    const auto document = opened();
    folder.write(".volvelle-" + deadProcess() + "-3-a.mid.replaced", "theirs");
    StateListener listener(*document);
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
    EXPECT_EQ(versionsOfFile(file), Lines{"theirs"});
    EXPECT_EQ(listener.take(), (States{UIDocumentState::inConflict, 0}));
}

TEST_F(Leftovers, BecomeVersionsOfTheFilesTheyStoodFor)
{
    const std::string dead = deadProcess();
    folder.write(".volvelle-" + dead + "-3-b-4.c.mid.replaced", "b");
    folder.write(".volvelle-" + dead + "-4.replaced", "long");
    opened();
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
    EXPECT_EQ(versionsOfFile(file), Lines{});
    EXPECT_EQ(versionsOfFile(folder.path / "b-4.c.mid"), Lines{"b"});
    EXPECT_EQ(versionsOfFile(folder.path / (".volvelle-" + dead + "-4.replaced")), Lines{"long"});
}

TEST_F(Leftovers, OfAFileThatALinkLeadsToAreFoundThroughTheLink)
{
    folder.write("real/a.mid", "old");
    fs::create_symlink("real/a.mid", folder.path / "link.mid");
    folder.write("real/.volvelle-" + deadProcess() + "-3-a.mid.replaced", "theirs");
    const auto document = std::make_shared<PlainDocument>(folder.path / "link.mid");
    EXPECT_EQ(document->open(), "yes");
    EXPECT_EQ(versionsOfFile(folder.path / "link.mid"), Lines{"theirs"});
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path / "real"), {}), 1);
}

TEST_F(Leftovers, OfANewFileThatNeverStoodAnywhereGoes)
{
    folder.write(".volvelle-" + deadProcess() + "-3.tmp", "half");
    opened();
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
}

TEST_F(Leftovers, OfProcessesThatLiveAndWhatIsNamedOtherwiseStays)
{
    const std::string dead = deadProcess();
    const Lines names{".volvelle-" + dead + "-3-a.mid",
                      ".volvelle-" + dead + "-a.mid.replaced",
                      ".volvelle-" + dead + ".tmp",
                      ".volvelle--1-3.tmp",
                      ".volvelle-0-3.tmp",
                      ".volvelle-99999999999-3.tmp",
                      temporaryFileName(".tmp"),
                      ".volvelle-" + std::to_string(getppid()) + "-3-a.mid.replaced",
                      "volvelle-" + dead + "-3.tmp"};
    for (const std::string& name : names) {
        folder.write(name, "theirs");
    }
    fs::create_directory(folder.path / (".volvelle-" + dead + "-5.tmp"));
    fs::create_symlink("a.mid", folder.path / (".volvelle-" + dead + "-6-a.mid.replaced"));
    const auto document = opened();
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(folder.names().size(), names.size() + 3);
    EXPECT_EQ(versionsOfFile(file), Lines{});
}

TEST_F(Leftovers, StayWhereNoVersionCanBeKept)
{
    states.write("volvelle", "no folder");
    const std::string left = ".volvelle-" + deadProcess() + "-3-a.mid.replaced";
    folder.write(left, "theirs");
    const auto document = opened();
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(folder.path / left), "theirs");
    fs::remove(states.path / "volvelle");
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(versionsOfFile(file), Lines{"theirs"});
}

TEST_F(Leftovers, StayAsTheyAreInAFolderThatIsReadOnly)
{
    if (geteuid() == 0) {
        GTEST_SKIP() << "who may do everything writes into every folder";
    }
    const std::string left = ".volvelle-" + deadProcess() + "-3-a.mid.replaced";
    folder.write(left, "theirs");
    folder.write("a.mid", "old");
    fs::permissions(folder.path, fs::perms::owner_read | fs::perms::owner_exec);
    const auto document = std::make_shared<PlainDocument>(file);
    EXPECT_EQ(document->open(), "yes");
    fs::permissions(folder.path, fs::perms::owner_all);
    EXPECT_EQ(contentOf(folder.path / left), "theirs");
    EXPECT_EQ(versionsOfFile(file), Lines{});
}

TEST_F(Leftovers, OfAProcessThatHadTheSameNumberAreNeverReplaced)
{
    const auto document = opened();
    document->words = "new";
    const std::string name = temporaryFileName("");
    const int number = std::stoi(name.substr(name.rfind('-') + 1));
    Lines left;
    for (int next = number + 1; next < number + 4; ++next) {
        left.push_back("theirs " + std::to_string(next));
        folder.write(name.substr(0, name.rfind('-') + 1) + std::to_string(next) + "-a.mid.replaced",
                     left.back());
    }
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(file), "new");
    Lines kept = versionsOfFile(file);
    std::ranges::sort(kept);
    EXPECT_EQ(kept, left);
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
}

TEST_F(Leftovers, WithoutANameAreToldWhereTheyAreKept)
{
    const std::string left = ".volvelle-" + deadProcess() + "-4.replaced";
    folder.write(left, "theirs");
    ConsoleCapture console;
    opened();
    EXPECT_EQ(console.take(),
              Lines{"keepLeftovers() : '" + (folder.path / left).string() + "' is kept as a version."});
}

TEST_F(Leftovers, OfTheLongestNameHaveRoomForTheNumberOfThisProcess)
{
    const std::string left = ".volvelle-" + deadProcess() + "-3-";
    const std::string named = std::string(NAME_MAX - left.size() - std::string("-.replaced").size(), 'x');
    for (std::size_t size = 0; size < left.size(); size = temporaryFileName("").size()) {
    }
    folder.write(left + named + ".replaced", "theirs");
    opened();
    EXPECT_EQ(versionsOfFile(folder.path / named), Lines{"theirs"});
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
}

TEST_F(Leftovers, OfALongNameAreKeptUnderTheirOwn)
{
    const std::string longest = std::string(251, 'x') + ".mid";
    const fs::path place = folder.write(longest, "old");
    const auto document = std::make_shared<PlainDocument>(place);
    EXPECT_EQ(document->open(), "yes");
    document->words = "new";
    beforeRenaming = [&] { folder.write(longest, "theirs"); };
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(versionsOfFile(place), Lines{"theirs"});
    EXPECT_EQ(folder.names(), Lines{longest});
}

} // namespace

} // namespace volvelle::test
