#include "services/documents/NSFileVersion.h"

#include "tests/services/documents/DocumentFixture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

using NSFileVersionTest = Documents;

std::vector<std::uint8_t> bytesOf(std::string_view words)
{
    return {words.begin(), words.end()};
}

// Where the versions of a file stand, as far as they can be told.
std::vector<std::string> namesOf(const std::optional<NSFileVersion::Versions>& versions)
{
    std::vector<std::string> names;
    for (const auto& version : versions.value_or(NSFileVersion::Versions())) {
        names.push_back(version->url().filename().string());
    }
    return names;
}

// MARK: Versions

TEST_F(NSFileVersionTest, AFileHasNoOtherVersionsAtFirst)
{
    EXPECT_EQ(NSFileVersion::otherVersionsOfItemAtURL(file).value().size(), 0U);
    EXPECT_TRUE(NSFileVersion::removeOtherVersionsOfItemAtURL(file));
    EXPECT_EQ(states.names(), Lines{});
}

TEST_F(NSFileVersionTest, VersionsAreKeptForEachFileInTheirOrder)
{
    for (int i = 0; i < 11; ++i) {
        EXPECT_TRUE(NSFileVersion::addVersionOfItemAtURL(file, bytesOf("version " + std::to_string(i))));
    }
    EXPECT_TRUE(NSFileVersion::addVersionOfItemAtURL(folder.path / "b.mid", {}));
    const auto versions = NSFileVersion::otherVersionsOfItemAtURL(file);
    ASSERT_EQ(namesOf(versions).size(), 11U);
    EXPECT_EQ(namesOf(versions).back(), "conflict 11.mid");
    EXPECT_EQ(versions->back()->url().parent_path(), versionsOf("open", "a.mid"));
    EXPECT_EQ(contentOf(versions->at(1)->url()), "version 1");
    EXPECT_EQ(namesOf(NSFileVersion::otherVersionsOfItemAtURL(folder.path / "b.mid")),
              Lines{"conflict 1.mid"});
}

TEST_F(NSFileVersionTest, WhatAProcessThatDiedWasWritingGoesWithTheNextVersion)
{
    ASSERT_TRUE(NSFileVersion::addVersionOfItemAtURL(file, bytesOf("first")));
    const pid_t child = fork();
    if (child == 0) {
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    const fs::path half = versionsOf("open", "a.mid") / (".volvelle-" + std::to_string(child) + "-3.tmp");
    const fs::path running = half.parent_path() / (".volvelle-" + std::to_string(getppid()) + "-3.tmp");
    std::ofstream(half) << "ha";
    std::ofstream(running) << "ha";
    ASSERT_TRUE(NSFileVersion::addVersionOfItemAtURL(file, bytesOf("second")));
    EXPECT_FALSE(fs::exists(half));
    EXPECT_TRUE(fs::exists(running));
    EXPECT_EQ(namesOf(NSFileVersion::otherVersionsOfItemAtURL(file)),
              (Lines{"conflict 1.mid", "conflict 2.mid"}));
}

TEST_F(NSFileVersionTest, AFileIsFoundByAnyNameOfItsFolder)
{
    fs::create_directory(folder.path / "sub");
    fs::create_directory_symlink(folder.path, folder.path / "link");
    EXPECT_TRUE(NSFileVersion::addVersionOfItemAtURL(file, {}));
    for (const char* name : {"link/a.mid", "sub/../a.mid", "./a.mid"}) {
        EXPECT_EQ(namesOf(NSFileVersion::otherVersionsOfItemAtURL(folder.path / name)),
                  Lines{"conflict 1.mid"})
            << name;
    }
}

TEST_F(NSFileVersionTest, AVersionThatIsResolvedStaysSo)
{
    NSFileVersion::addVersionOfItemAtURL(file, {});
    NSFileVersion::addVersionOfItemAtURL(file, {});
    const auto versions = NSFileVersion::unresolvedConflictVersionsOfItemAtURL(file).value();
    EXPECT_FALSE(versions.at(0)->resolved());
    versions.at(0)->setResolved(true);
    versions.at(0)->setResolved(true);
    EXPECT_TRUE(versions.at(0)->resolved());
    EXPECT_EQ(namesOf(NSFileVersion::unresolvedConflictVersionsOfItemAtURL(file)), Lines{"conflict 2.mid"});
    EXPECT_EQ(namesOf(NSFileVersion::otherVersionsOfItemAtURL(file)),
              (Lines{"resolved 1.mid", "conflict 2.mid"}));
    versions.at(0)->setResolved(false);
    EXPECT_EQ(namesOf(NSFileVersion::unresolvedConflictVersionsOfItemAtURL(file)).size(), 2U);
}

TEST_F(NSFileVersionTest, AVersionThatCannotBeRenamedStaysAsItWas)
{
    NSFileVersion::addVersionOfItemAtURL(file, {});
    const auto version = NSFileVersion::otherVersionsOfItemAtURL(file).value().at(0);
    fs::remove(version->url());
    version->setResolved(true);
    EXPECT_FALSE(version->resolved());
    EXPECT_EQ(version->url().filename(), "conflict 1.mid");
}

TEST_F(NSFileVersionTest, VersionsThatAreRemovedAreKeptElsewhere)
{
    for (const char* words : {"one", "two", "three"}) {
        EXPECT_TRUE(NSFileVersion::addVersionOfItemAtURL(file, bytesOf(words)));
        EXPECT_TRUE(NSFileVersion::removeOtherVersionsOfItemAtURL(file));
        EXPECT_EQ(namesOf(NSFileVersion::otherVersionsOfItemAtURL(file)), Lines{});
    }
    EXPECT_EQ(contentOf(versionsOf("kept", "a.mid") / "version 1.mid"), "one");
    EXPECT_EQ(contentOf(versionsOf("kept", "a.mid") / "version 3.mid"), "three");
}

TEST_F(NSFileVersionTest, OthersMayNotLookAtThem)
{
    NSFileVersion::addVersionOfItemAtURL(file, {});
    EXPECT_EQ(fs::status(states.path / "volvelle/versions").permissions(), fs::perms::owner_all);
}

TEST_F(NSFileVersionTest, WhatIsNoVersionIsPassedOver)
{
    NSFileVersion::addVersionOfItemAtURL(file, {});
    for (const char* name : {"notes.txt", "conflict.mid", "conflict x.mid", "conflict -1.mid"}) {
        EXPECT_EQ(replaceFile(versionsOf("open", "a.mid") / name, {}, false), noErr);
    }
    EXPECT_EQ(namesOf(NSFileVersion::otherVersionsOfItemAtURL(file)), Lines{"conflict 1.mid"});
}

TEST_F(NSFileVersionTest, WithoutAFolderForThemNoVersionIsKept)
{
    states.write("volvelle/versions", "no folder");
    EXPECT_EQ(NSFileVersion::addVersionOfItemAtURL(file, {}).error(),
              "'" + versionsOf("open", "a.mid").string() +
                  "' could not be written: its folder does not exist.");
    EXPECT_EQ(NSFileVersion::otherVersionsOfItemAtURL(file).value().size(), 0U);
    unsetenv("XDG_STATE_HOME");
    const std::string home = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "";
    unsetenv("HOME");
    EXPECT_EQ(NSFileVersion::addVersionOfItemAtURL(file, {}).error(),
              "There is no folder for versions of files.");
    setenv("HOME", home.c_str(), 1);
}

TEST_F(NSFileVersionTest, VersionsThatCannotBeMovedStayOnTheList)
{
    NSFileVersion::addVersionOfItemAtURL(file, {});
    states.write("volvelle/versions/kept", "no folder");
    EXPECT_EQ(NSFileVersion::removeOtherVersionsOfItemAtURL(file).error(),
              "'" + versionsOf("kept", "a.mid").string() +
                  "' could not be written: its folder does not exist.");
    EXPECT_EQ(namesOf(NSFileVersion::otherVersionsOfItemAtURL(file)), Lines{"conflict 1.mid"});
}

TEST_F(NSFileVersionTest, AVersionThatCannotBeMovedStaysOnTheList)
{
    NSFileVersion::addVersionOfItemAtURL(file, {});
    const fs::path kept = versionsOf("kept", "a.mid");
    fs::create_directories(kept.parent_path());
    fs::create_directory_symlink("/proc", kept);
    EXPECT_EQ(NSFileVersion::removeOtherVersionsOfItemAtURL(file).error(),
              "'" + (kept / "version 1.mid").string() + "' could not be written: its folder does not exist.");
    EXPECT_EQ(namesOf(NSFileVersion::otherVersionsOfItemAtURL(file)), Lines{"conflict 1.mid"});
}

TEST_F(NSFileVersionTest, VersionsThatCannotBeToldAreNoEmptyList)
{
    fs::create_directory(states.path / "volvelle");
    fs::create_symlink("versions", states.path / "volvelle/versions");
    EXPECT_FALSE(NSFileVersion::otherVersionsOfItemAtURL(file));
    EXPECT_FALSE(NSFileVersion::unresolvedConflictVersionsOfItemAtURL(file));
    EXPECT_EQ(NSFileVersion::removeOtherVersionsOfItemAtURL(file).error(),
              "The versions of '" + file.string() + "' could not be read.");
    EXPECT_FALSE(NSFileVersion::addVersionOfItemAtURL(file, {}));
    const auto document = opened();
    EXPECT_EQ(document->documentState(), UIDocumentState::normal);
}

// MARK: Conflicts of documents

TEST_F(NSFileVersionTest, AFileThatAnotherProgramChangedIsKeptBeforeItIsReplaced)
{
    const auto document = opened();
    StateListener listener(*document);
    folder.write("a.mid", "theirs");
    document->words = "ours";
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(file), "ours");
    const auto versions = NSFileVersion::unresolvedConflictVersionsOfItemAtURL(file).value();
    ASSERT_EQ(versions.size(), 1U);
    EXPECT_EQ(contentOf(versions.at(0)->url()), "theirs");
    EXPECT_EQ(listener.take(), (States{UIDocumentState::inConflict, 0}));
}

TEST_F(NSFileVersionTest, AFileThatWasReplacedByOneOfItsSizeAndTimeIsKept)
{
    const auto document = opened();
    struct stat before = {};
    ASSERT_EQ(stat(file.c_str(), &before), 0);
    fs::rename(folder.write("b.mid", "odd"), file);
    const timespec times[2] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(versionsOf("open", "a.mid") / "conflict 1.mid"), "odd");
}

TEST_F(NSFileVersionTest, AFileThatWasWrittenInItsPlaceWithItsTimeSetBackIsKept)
{
    const auto document = opened();
    struct stat before = {};
    ASSERT_EQ(stat(file.c_str(), &before), 0);
    std::ofstream(file) << "odd";
    const timespec times[2] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(versionsOf("open", "a.mid") / "conflict 1.mid"), "odd");
}

TEST_F(NSFileVersionTest, AFileThatWasOnlyTouchedIsNoConflict)
{
    const auto document = opened();
    StateListener listener(*document);
    const timespec times[2] = {{1'000'000'000, 5}, {1'000'000'000, 5}};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(listener.take(), States{});
    EXPECT_EQ(states.names(), Lines{});
}

TEST_F(NSFileVersionTest, EachForeignChangeBetweenTwoSavesIsKept)
{
    const auto document = opened();
    for (const char* words : {"one", "two"}) {
        EXPECT_EQ(document->save(), "yes");
        folder.write("a.mid", words);
    }
    document->updateChangeCount(done);
    EXPECT_EQ(document->close(), "yes");
    EXPECT_EQ(contentOf(versionsOf("open", "a.mid") / "conflict 1.mid"), "one");
    EXPECT_EQ(contentOf(versionsOf("open", "a.mid") / "conflict 2.mid"), "two");
}

TEST_F(NSFileVersionTest, WhereAVersionCannotBeKeptTheSaveFailsAndNothingIsLost)
{
    const auto document = opened();
    states.write("volvelle", "no folder");
    folder.write("a.mid", "theirs");
    document->words = "ours";
    document->updateChangeCount(done);
    EXPECT_EQ(document->close(), "no");
    EXPECT_EQ(document->documentState(), UIDocumentState::savingError);
    EXPECT_EQ(contentOf(file), "theirs");
    EXPECT_TRUE(document->hasUnsavedChanges());
    EXPECT_EQ(document->save(folder.path / "b.mid", forCreating), "yes");
    EXPECT_EQ(contentOf(folder.path / "b.mid"), "ours");
}

TEST_F(NSFileVersionTest, AForeignChangeIsKeptOnceThoughTheSaveFailsAgainAndAgain)
{
    const auto document = opened();
    folder.write("a.mid", "theirs");
    fs::permissions(file, fs::perms::owner_read);
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(document->save(), "no");
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    StateListener listener(*document);
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(namesOf(NSFileVersion::otherVersionsOfItemAtURL(file)), Lines{"conflict 1.mid"});
    EXPECT_EQ(listener.take(), (States{UIDocumentState::inConflict, 0}));
}

TEST_F(NSFileVersionTest, AForeignFileThatCannotBeReadIsNotReplaced)
{
    const auto document = opened();
    fs::resize_file(file, std::uintmax_t{3} << 30U);
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(document->lastError(), "'" + file.string() + "' could not be read.");
    EXPECT_EQ(fs::file_size(file), std::uintmax_t{3} << 30U);
}

TEST_F(NSFileVersionTest, AVersionIsKeptOfAFileThatADocumentNeverRead)
{
    const auto document = std::make_shared<PlainDocument>(folder.write("a.mid", "theirs"));
    document->words = "ours";
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(versionsOf("open", "a.mid") / "conflict 1.mid"), "theirs");
}

TEST_F(NSFileVersionTest, ADocumentMeetsItsUnresolvedVersionsInOpening)
{
    NSFileVersion::addVersionOfItemAtURL(file, {});
    const auto document = std::make_shared<PlainDocument>(folder.write("a.mid", "old"));
    StateListener listener(*document);
    EXPECT_EQ(document->open(), "yes");
    EXPECT_EQ(listener.take(), (States{UIDocumentState::inConflict, 0}));
    document->close();
    NSFileVersion::otherVersionsOfItemAtURL(file).value().at(0)->setResolved(true);
    document->open();
    EXPECT_EQ(listener.take(), (States{1, 0}));
}

} // namespace

} // namespace volvelle::test
