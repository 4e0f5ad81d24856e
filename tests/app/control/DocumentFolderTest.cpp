#include "app/control/DocumentFolder.h"
#include "tests/app/control/ScreenFixture.h"
#include "tests/services/files/FileSizeLimit.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

class DocumentFolderTest : public testing::Test {
protected:
    static std::string textOf(const fs::path& file)
    {
        std::vector<std::uint8_t> bytes;
        EXPECT_EQ(readFile(file, bytes), noErr) << file;
        return {bytes.begin(), bytes.end()};
    }

    static std::string told(const Result<fs::path>& place)
    {
        return place ? place->filename().string() : place.error();
    }

    TemporaryFolder ideas;
    TemporaryFolder elsewhere;
    std::shared_ptr<FakeTrash> trash = std::make_shared<FakeTrash>();
    DocumentFolder folder{ideas.path, trash};
};

TEST_F(DocumentFolderTest, MIDIFilesAloneAreDocuments)
{
    ideas.write("a.mid", "abc");
    ideas.write("b.MIDI", "");
    ideas.write(".hidden.mid", "");
    ideas.write("c.txt", "");
    fs::create_directory(ideas.path / "d.mid");
    fs::create_symlink("nowhere", ideas.path / "e.mid");
    mkfifo((ideas.path / "f.mid").c_str(), 0600);
    const auto now = fs::file_time_type::clock::now();
    fs::last_write_time(ideas.path / "b.MIDI", now - std::chrono::hours(1));
    const auto documents = folder.documents();
    ASSERT_EQ(documents.size(), 2U);
    EXPECT_EQ(documents[0].location, ideas.path / "a.mid");
    EXPECT_EQ(documents[0].name, "a");
    EXPECT_EQ(documents[0].size, 3);
    EXPECT_EQ(documents[1].name, "b");
    EXPECT_GT(documents[0].modified, documents[1].modified);
}

TEST_F(DocumentFolderTest, FilesOfOneTimeStandByTheirNames)
{
    const auto now = fs::file_time_type::clock::now();
    for (const char* name : {"c.mid", "a.mid", "b.mid"}) {
        fs::last_write_time(ideas.write(name, ""), now);
    }
    Lines names;
    for (const auto& document : folder.documents()) {
        names.push_back(document.name);
    }
    EXPECT_EQ(names, (Lines{"a", "b", "c"}));
}

TEST_F(DocumentFolderTest, NamesOfOtherBytesAreShownAsText)
{
    ideas.write("a\xE9\n.mid", "");
    EXPECT_EQ(folder.documents().at(0).name, "aé ");
    EXPECT_EQ(folder.documents().at(0).location, ideas.path / "a\xE9\n.mid");
}

TEST_F(DocumentFolderTest, AFolderThatIsNotThereIsEmptyUntilItIsNeeded)
{
    const DocumentFolder later(ideas.path / "x/y", trash);
    EXPECT_EQ(later.documents().size(), 0U);
    EXPECT_FALSE(later.contains(ideas.path / "x/y/a.mid"));
    EXPECT_EQ(told(later.takeCopy(elsewhere.write("a.mid", "abc"))), "a.mid");
    EXPECT_TRUE(later.contains(ideas.path / "x/y/a.mid"));
    EXPECT_FALSE(folder.contains(ideas.path / "x/y/a.mid"));
}

TEST_F(DocumentFolderTest, ACopyTakesTheNextFreeName)
{
    const fs::path file = elsewhere.write("a.mid", "new");
    ideas.write("a.mid", "old");
    fs::create_symlink("nowhere", ideas.path / "a 2.mid");
    EXPECT_EQ(told(folder.takeCopy(file)), "a 3.mid");
    EXPECT_EQ(textOf(ideas.path / "a.mid"), "old");
    EXPECT_EQ(textOf(ideas.path / "a 3.mid"), "new");
    EXPECT_EQ(textOf(file), "new");
    EXPECT_EQ(told(folder.takeCopy(elsewhere.write("song.kar", ""))), "song.kar.mid");
}

TEST_F(DocumentFolderTest, ACopyThatFailsLeavesNothing)
{
    EXPECT_EQ(told(folder.takeCopy(elsewhere.path / "a.mid")), "'a' could not be read.");
    const fs::path file = elsewhere.write("a.mid", "more than four bytes");
    const FileSizeLimit limit(4);
    EXPECT_EQ(told(folder.takeCopy(file)), "'" + (ideas.path / "a.mid").string() +
                                               "' could not be written: it would be larger than allowed.");
    EXPECT_EQ(ideas.names(), Lines{});
}

TEST_F(DocumentFolderTest, AFailureShowsANameOfOtherBytesAsText)
{
    const fs::path file = elsewhere.write("a\xE9.mid", "more than four bytes");
    const FileSizeLimit limit(4);
    EXPECT_EQ(told(folder.takeCopy(file)), "'" + (ideas.path / "aé.mid").string() +
                                               "' could not be written: it would be larger than allowed.");
}

TEST_F(DocumentFolderTest, AMoveTakesTheNextFreeNameAndLeavesOneFile)
{
    ideas.write("a.mid", "old");
    const fs::path file = elsewhere.write("a.mid", "new");
    EXPECT_EQ(told(folder.takeMove(file)), "a 2.mid");
    EXPECT_EQ(textOf(ideas.path / "a.mid"), "old");
    EXPECT_EQ(textOf(ideas.path / "a 2.mid"), "new");
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(told(folder.takeMove(file)), "'a' is not there any more.");
}

TEST_F(DocumentFolderTest, AFolderThatCannotBeMadeIsTold)
{
    const fs::path place = ideas.write("file", "") / "below";
    const DocumentFolder none(place, trash);
    const std::string sentence = "The folder '" + place.string() + "' could not be made.";
    EXPECT_EQ(told(none.takeCopy(elsewhere.write("a.mid", ""))), sentence);
    EXPECT_EQ(told(none.takeMove(elsewhere.path / "a.mid")), sentence);
}

TEST_F(DocumentFolderTest, ADuplicateIsNumbered)
{
    const fs::path file = ideas.write("Slow tide 2.mid", "abc");
    EXPECT_EQ(told(folder.duplicate(file)), "Slow tide 2 2.mid");
    EXPECT_EQ(textOf(ideas.path / "Slow tide 2 2.mid"), "abc");
}

TEST_F(DocumentFolderTest, ARenamedFileKeepsItsEnding)
{
    const fs::path file = ideas.write("a.MIDI", "abc");
    EXPECT_EQ(told(folder.rename(file, "a")), "a.MIDI");
    EXPECT_EQ(told(folder.rename(file, "b.c")), "b.c.MIDI");
    EXPECT_EQ(told(folder.rename(ideas.path / "b.c.MIDI", "d.mid")), "d.MIDI");
    EXPECT_EQ(ideas.names(), Lines{"d.MIDI"});
}

TEST_F(DocumentFolderTest, ANameThatWillNotDoIsRefused)
{
    const fs::path file = ideas.write("a.mid", "abc");
    ideas.write("b.mid", "old");
    EXPECT_EQ(told(folder.rename(file, "")), "A name needs at least one letter.");
    EXPECT_EQ(told(folder.rename(file, " ")), "A name needs at least one letter.");
    EXPECT_EQ(told(folder.rename(file, "\t\xC2\xA0\xE3\x80\x80")), "A name needs at least one letter.");
    for (const char* unseen : {"\u00AD", "\u180E", "\u200C", "\u200D \u2060", "\uFEFF"}) {
        EXPECT_EQ(told(folder.rename(file, unseen)), "A name needs at least one letter.") << unseen;
    }
    EXPECT_EQ(told(folder.rename(file, "  .mid")), "A name needs at least one letter.");
    EXPECT_EQ(told(folder.rename(file, ".a")), "A name cannot begin with a point.");
    for (const std::string& name : {std::string("a/b"), std::string("AC/DC.mid"), std::string("../x.mid"),
                                    std::string("//b.MIDI"), std::string("x/y/z.mid"), std::string("x/.mid"),
                                    std::string("/"), std::string("a\0b", 3), std::string("a\0b.mid", 7)}) {
        EXPECT_EQ(told(folder.rename(file, name)), "A name cannot hold a slash.") << name;
    }
    EXPECT_EQ(told(folder.rename(file, std::string(252, 'x'))), "The name is too long.");
    EXPECT_EQ(told(folder.rename(file, "b")), "There is already an idea called 'b'.");
    EXPECT_EQ(told(folder.rename(ideas.path / "c.mid", "d")), "'c' is not there any more.");
    EXPECT_EQ(ideas.names(), (Lines{"a.mid", "b.mid"}));
    EXPECT_EQ(told(folder.rename(file, std::string(251, 'x'))), std::string(251, 'x') + ".mid");
}

TEST_F(DocumentFolderTest, TwoDocumentsOfOneNameAreNeverMadeWhateverTheirEndings)
{
    ideas.write("a.MIDI", "old");
    const fs::path other = ideas.write("b.mid", "other");
    EXPECT_EQ(told(folder.rename(other, "a")), "There is already an idea called 'a'.");
    EXPECT_EQ(told(folder.takeCopy(elsewhere.write("a", "new"))), "a 2.mid");
    EXPECT_EQ(told(folder.takeCopy(elsewhere.write("a.mid", "new"))), "a 3.mid");
    EXPECT_EQ(told(folder.takeMove(elsewhere.write("a.mid", "new"))), "a 4.mid");
    ideas.write("b 2.MID", "old");
    EXPECT_EQ(told(folder.duplicate(other)), "b 3.mid");
    EXPECT_EQ(told(folder.rename(other, "A")), "A.mid");
    EXPECT_EQ(textOf(ideas.path / "a.MIDI"), "old");
}

TEST_F(DocumentFolderTest, ABroughtBackFileStandsBesideAnotherOfItsName)
{
    const fs::path file = ideas.write("a.mid", "abc");
    EXPECT_TRUE(folder.moveToTrash(file));
    ideas.write("a.MIDI", "old");
    EXPECT_EQ(told(folder.restore()), "a.mid");
}

TEST_F(DocumentFolderTest, ALongNameIsRenamedDuplicatedAndImported)
{
    const std::string longest = std::string(251, 'x') + ".mid";
    const fs::path file = ideas.write(longest, "abc");
    EXPECT_EQ(told(folder.duplicate(file)), std::string(249, 'x') + " 2.mid");
    EXPECT_EQ(told(folder.duplicate(file)), std::string(249, 'x') + " 3.mid");
    EXPECT_EQ(told(folder.takeCopy(elsewhere.write(longest, "new"))), std::string(249, 'x') + " 4.mid");
    EXPECT_EQ(told(folder.rename(file, std::string(251, 'y'))), std::string(251, 'y') + ".mid");
    EXPECT_EQ(told(folder.takeCopy(elsewhere.write(std::string(251, 'z'), ""))),
              std::string(251, 'z') + ".mid");
    EXPECT_EQ(folder.documents().size(), 5U);
}

TEST_F(DocumentFolderTest, ATooLongNameIsRefusedBeforeAnythingIsTouched)
{
    const DocumentFolder later(ideas.path / "x", trash);
    EXPECT_EQ(told(later.takeCopy(elsewhere.write(std::string(252, 'x'), ""))), "The name is too long.");
    EXPECT_EQ(ideas.names(), Lines{});
}

TEST_F(DocumentFolderTest, ANameOfOtherBytesIsRenamedAndLeftWhereItIsNotEdited)
{
    const fs::path file = ideas.write("a\xE9\n.mid", "abc");
    EXPECT_EQ(told(folder.rename(file, "aé ")), "a\xE9\n.mid");
    EXPECT_EQ(told(folder.duplicate(file)), "a\xE9\n 2.mid");
    EXPECT_EQ(told(folder.rename(file, "b")), "b.mid");
    EXPECT_EQ(textOf(ideas.path / "b.mid"), "abc");
}

TEST_F(DocumentFolderTest, AMoveThatFailsTellsWhy)
{
    std::error_code none;
    if (!fs::is_directory("/dev/shm", none)) {
        GTEST_SKIP() << "there is no second device";
    }
    const fs::path file = fs::path("/dev/shm") / (ideas.path.filename().string() + ".mid");
    ASSERT_EQ(putFile(file, std::vector<std::uint8_t>(20), true), 0);
    {
        const FileSizeLimit limit(4);
        EXPECT_EQ(told(folder.takeMove(file)),
                  "'" + (ideas.path / file.filename()).string() +
                      "' could not be written: it would be larger than allowed.");
    }
    EXPECT_TRUE(fs::remove(file));
    EXPECT_EQ(ideas.names(), Lines{});
}

TEST_F(DocumentFolderTest, TheTrashGivesBackTheLastFirst)
{
    const fs::path a = ideas.write("a.mid", "a");
    const fs::path b = ideas.write("b.mid", "b");
    EXPECT_EQ(told(folder.restore()), "There is nothing to bring back.");
    EXPECT_TRUE(folder.moveToTrash(a));
    EXPECT_TRUE(folder.moveToTrash(b));
    EXPECT_EQ(ideas.names(), Lines{});
    EXPECT_EQ(told(folder.restore()), "b.mid");
    trash->failed = "It is full.";
    EXPECT_EQ(folder.moveToTrash(b).error(), "It is full.");
    EXPECT_EQ(told(folder.restore()), "It is full.");
    EXPECT_TRUE(folder.canRestore());
    trash->failed.clear();
    fs::remove_all(ideas.path);
    EXPECT_EQ(told(folder.restore()), "a.mid");
    EXPECT_EQ(textOf(a), "a");
    EXPECT_FALSE(folder.canRestore());
}

TEST_F(DocumentFolderTest, WhatComesBackTakesTheNextFreeNameAndBlocksNothing)
{
    const fs::path a = ideas.write("a.mid", "a");
    const fs::path b = ideas.write("b.mid", "b");
    EXPECT_TRUE(folder.moveToTrash(a));
    EXPECT_TRUE(folder.moveToTrash(b));
    ideas.write("b.mid", "new");
    ideas.write("b 2.MIDI", "other");
    EXPECT_EQ(told(folder.restore()), "b 3.mid");
    EXPECT_EQ(told(folder.restore()), "a.mid");
    EXPECT_EQ(textOf(ideas.path / "b 3.mid"), "b");
    EXPECT_EQ(textOf(b), "new");
    EXPECT_FALSE(folder.canRestore());
}

TEST_F(DocumentFolderTest, ACopyIsNeverHidden)
{
    EXPECT_EQ(told(folder.takeCopy(elsewhere.write(".a.mid", "abc"))), "a.mid");
    EXPECT_EQ(told(folder.takeCopy(elsewhere.write("..b.mid", ""))), "b.mid");
    EXPECT_EQ(told(folder.takeCopy(elsewhere.write(".mid", ""))), "New MIDI Idea.mid");
    EXPECT_EQ(told(folder.takeCopy(elsewhere.write("...", ""))), "New MIDI Idea 2.mid");
    EXPECT_EQ(folder.documents().size(), 4U);
}

TEST_F(DocumentFolderTest, OfOneSecondTheNewerStandsFirst)
{
    const auto stamp = [&](const std::string& name, long nanoseconds) {
        const timespec times[2] = {{1000, 0}, {1000, nanoseconds}};
        EXPECT_EQ(utimensat(AT_FDCWD, ideas.write(name, "abc").c_str(), times, 0), 0);
    };
    stamp("a.mid", 1000);
    stamp("b.mid", 2000);
    const auto listed = folder.documents();
    ASSERT_EQ(listed.size(), 2U);
    EXPECT_EQ(listed[0].name, "b");
    EXPECT_EQ(listed[0].nanoseconds, 2000);
}

} // namespace

} // namespace volvelle::test
