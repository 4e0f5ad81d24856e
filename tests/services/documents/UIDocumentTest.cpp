#include "base/MainQueue.h"
#include "tests/services/documents/DocumentFixture.h"
#include "tests/services/files/FileSizeLimit.h"

#include <sys/stat.h>
#include <unistd.h>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

using UIDocumentTest = Documents;

// MARK: Opening and closing

TEST_F(UIDocumentTest, ADocumentStartsClosedIsNormalOnceOpenAndClosedAfterClosing)
{
    const auto document = std::make_shared<PlainDocument>(folder.write("a.mid", "old"));
    StateListener listener(*document);
    EXPECT_EQ(document->documentState(), UIDocumentState::closed);
    EXPECT_EQ(document->open(), "yes");
    EXPECT_EQ(document->documentState(), UIDocumentState::normal);
    EXPECT_EQ(document->close(), "yes");
    EXPECT_EQ(listener.take(), (States{0, 1}));
    EXPECT_EQ(document->takeCalls(), Lines{"load old audio/midi"});
}

TEST_F(UIDocumentTest, OpeningAnOpenDocumentAndClosingAClosedOneChangeNothing)
{
    const auto document = opened();
    StateListener listener(*document);
    document->words = "edited";
    EXPECT_EQ(document->open(), "yes");
    EXPECT_EQ(document->words, "edited");
    EXPECT_EQ(listener.take(), States{});
    document->close();
    EXPECT_EQ(listener.take(), States{1});
    document->updateChangeCount(done);
    EXPECT_EQ(document->close(), "yes");
    EXPECT_EQ(listener.take(), States{});
    EXPECT_EQ(contentOf(file), "old");
}

TEST_F(UIDocumentTest, ADocumentThatIsClosedCanBeOpenedAgain)
{
    const auto document = opened();
    document->close();
    folder.write("a.mid", "new");
    EXPECT_EQ(document->open(), "yes");
    EXPECT_EQ(document->words, "new");
    EXPECT_FALSE(document->hasUnsavedChanges());
}

TEST_F(UIDocumentTest, AMissingFileIsNotOpened)
{
    const auto document = std::make_shared<PlainDocument>(file);
    StateListener listener(*document);
    EXPECT_EQ(document->open(), "no");
    const std::string line = "'" + file.string() + "' could not be read: it does not exist.";
    EXPECT_EQ(document->lastError(), line);
    EXPECT_EQ(document->takeCalls(), Lines{"error " + line});
    EXPECT_EQ(listener.take(), States{});
    EXPECT_EQ(document->documentState(), UIDocumentState::closed);
    folder.write("a.mid", "old");
    EXPECT_EQ(document->open(), "yes");
    EXPECT_EQ(document->lastError(), "");
}

TEST_F(UIDocumentTest, AFileOfMoreThanTwoGibibytesIsNotOpened)
{
    const auto document = std::make_shared<PlainDocument>(folder.write("a.mid", "old"));
    fs::resize_file(file, std::uintmax_t{3} << 30U);
    EXPECT_EQ(document->open(), "no");
    EXPECT_EQ(document->lastError(), "'" + file.string() + "' could not be read.");
}

TEST_F(UIDocumentTest, AFileThatMayNotBeReadIsNotOpened)
{
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser may read everything";
    }
    const auto document = std::make_shared<PlainDocument>(folder.write("a.mid", "old"));
    fs::permissions(file, fs::perms::none);
    EXPECT_EQ(document->open(), "no");
    EXPECT_EQ(document->lastError(), "'" + file.string() + "' could not be read.");
}

TEST_F(UIDocumentTest, ADocumentWhoseContentsDoNotLoadStaysClosed)
{
    const auto document = std::make_shared<PlainDocument>(folder.write("a.mid", "old"));
    document->loadFailure = "It is no text.";
    EXPECT_EQ(document->open(), "no");
    EXPECT_EQ(document->lastError(), "It is no text.");
    EXPECT_EQ(document->takeCalls(), (Lines{"load old audio/midi", "error It is no text."}));
    EXPECT_EQ(document->documentState(), UIDocumentState::closed);
}

TEST_F(UIDocumentTest, AFolderIsContentsWithoutBytes)
{
    const auto document = std::make_shared<PlainDocument>(folder.path);
    EXPECT_EQ(document->open(), "yes");
    EXPECT_EQ(document->takeCalls(), Lines{"load the folder '" + folder.path.string() + "' ?"});
    document->words = "new";
    document->updateChangeCount(done);
    EXPECT_EQ(document->close(), "no");
    EXPECT_EQ(document->lastError(), "'" + folder.path.string() + "' could not be written: it is a folder.");
}

TEST_F(UIDocumentTest, APipeIsRefusedWithoutWaitingForIt)
{
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    const auto document = std::make_shared<PlainDocument>(file);
    EXPECT_EQ(document->open(), "no");
    EXPECT_EQ(document->lastError(), "'" + file.string() + "' could not be read: it is no file.");
}

TEST_F(UIDocumentTest, AFileThatTheMemoryCannotHoldIsNotOpened)
{
    const auto document = std::make_shared<PlainDocument>(folder.write("a.mid", "old"));
    document->isTooLarge = true;
    EXPECT_EQ(document->open(), "no");
    EXPECT_EQ(document->lastError(), "'" + file.string() + "' could not be read: it is too large.");
    EXPECT_EQ(document->documentState(), UIDocumentState::closed);
}

TEST_F(UIDocumentTest, ContentsThatTheMemoryCannotHoldAreNotSaved)
{
    const auto document = opened();
    document->isTooLarge = true;
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(document->lastError(), "'" + file.string() + "' could not be written: it is too large.");
    EXPECT_EQ(contentOf(file), "old");
}

TEST_F(UIDocumentTest, TheTypeIsThatOfTheName)
{
    const auto typeOf = [](const char* name) { return PlainDocument(name).fileType().value_or("?"); };
    EXPECT_EQ(typeOf("a.mid"), "audio/midi");
    EXPECT_EQ(typeOf("a.MIDI"), "audio/midi");
    EXPECT_EQ(typeOf("a.txt"), "?");
    EXPECT_EQ(typeOf("mid"), "?");
}

TEST_F(UIDocumentTest, AnEmptyCompletionIsNotCalled)
{
    const auto document = std::make_shared<PlainDocument>(file);
    document->openWithCompletionHandler({});
    document->words = "new";
    document->saveToURL(file, forCreating, {});
    document->closeWithCompletionHandler({});
    EXPECT_EQ(contentOf(file), "new");
}

// MARK: Saving

TEST_F(UIDocumentTest, TheCreatingSaveOpensADocument)
{
    const auto document = std::make_shared<PlainDocument>(file);
    StateListener listener(*document);
    document->words = "new";
    EXPECT_EQ(document->save(file, forCreating), "yes");
    EXPECT_EQ(document->close(), "yes");
    EXPECT_EQ(listener.take(), (States{0, 1}));
    EXPECT_EQ(document->takeCalls(), Lines{"contents audio/midi"});
    EXPECT_EQ(contentOf(file), "new");
}

TEST_F(UIDocumentTest, TheCreatingSaveNeverTakesThePlaceOfAFile)
{
    const auto document = std::make_shared<PlainDocument>(folder.write("a.mid", "old"));
    document->words = "new";
    EXPECT_EQ(document->save(file, forCreating), "no");
    EXPECT_EQ(document->lastError(), "'" + file.string() + "' could not be written: it is there already.");
    EXPECT_EQ(document->documentState(), UIDocumentState::closed | UIDocumentState::savingError);
    EXPECT_EQ(contentOf(file), "old");
}

TEST_F(UIDocumentTest, ClosingWithoutUnsavedChangesWritesNothing)
{
    const auto document = opened();
    document->words = "new";
    EXPECT_EQ(document->close(), "yes");
    EXPECT_EQ(document->takeCalls(), Lines{});
    EXPECT_EQ(contentOf(file), "old");
}

TEST_F(UIDocumentTest, ClosingSavesUnsavedChanges)
{
    const auto document = opened();
    document->words = "new";
    document->updateChangeCount(done);
    EXPECT_TRUE(document->hasUnsavedChanges());
    EXPECT_EQ(document->close(), "yes");
    EXPECT_FALSE(document->hasUnsavedChanges());
    EXPECT_EQ(contentOf(file), "new");
    mainQueue().drain();
    EXPECT_EQ(document->takeCalls(), Lines{"contents audio/midi"});
}

TEST_F(UIDocumentTest, AChangeIsSavedFromTheMainQueueOnce)
{
    const auto document = opened();
    document->words = "new";
    for (const auto change : {done, UIDocumentChangeKind::undone, UIDocumentChangeKind::redone}) {
        document->updateChangeCount(change);
    }
    EXPECT_EQ(contentOf(file), "old");
    mainQueue().drain();
    EXPECT_EQ(contentOf(file), "new");
    EXPECT_FALSE(document->hasUnsavedChanges());
    EXPECT_EQ(document->takeCalls(), Lines{"contents audio/midi"});
}

TEST_F(UIDocumentTest, AChangeIsSavedThoughNobodyHoldsTheDocumentAnyMore)
{
    auto document = opened();
    document->words = "new";
    document->updateChangeCount(done);
    document.reset();
    mainQueue().drain();
    EXPECT_EQ(contentOf(file), "new");
}

TEST_F(UIDocumentTest, ChangesThatAreClearedAreNotSaved)
{
    const auto document = opened();
    document->words = "new";
    document->updateChangeCount(done);
    document->updateChangeCount(cleared);
    EXPECT_FALSE(document->hasUnsavedChanges());
    mainQueue().drain();
    EXPECT_EQ(document->close(), "yes");
    EXPECT_EQ(contentOf(file), "old");
}

TEST_F(UIDocumentTest, ASaveThatFailsKeepsADocumentOpenWithItsChanges)
{
    const auto document = opened();
    StateListener listener(*document);
    document->words = "longer than that";
    document->updateChangeCount(done);
    {
        const FileSizeLimit limit(4);
        EXPECT_EQ(document->close(), "no");
        const std::string line = "'" + file.string() +
                                 "' could not be written: it would be larger than "
                                 "allowed.";
        EXPECT_EQ(document->lastError(), line);
        EXPECT_EQ(document->takeCalls(), (Lines{"contents audio/midi", "error " + line}));
        EXPECT_EQ(document->close(), "no");
    }
    EXPECT_TRUE(document->hasUnsavedChanges());
    EXPECT_EQ(listener.take(), States{UIDocumentState::savingError});
    EXPECT_EQ(contentOf(file), "old");
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
    EXPECT_EQ(document->close(), "yes");
    EXPECT_EQ(listener.take(), (States{0, 1}));
    EXPECT_EQ(document->lastError(), "");
    EXPECT_EQ(contentOf(file), "longer than that");
}

TEST_F(UIDocumentTest, WithoutContentsASaveFails)
{
    const auto document = opened();
    document->words.reset();
    document->updateChangeCount(done);
    EXPECT_EQ(document->close(), "no");
    EXPECT_EQ(document->lastError(),
              "'" + file.string() + "' could not be written: there is nothing to write.");
    EXPECT_EQ(contentOf(file), "old");
}

TEST_F(UIDocumentTest, WhereTheFolderVanishedADocumentIsSavedElsewhere)
{
    const fs::path gone = folder.write("gone/a.mid", "old");
    const fs::path other = folder.path / "b.mid";
    const auto document = std::make_shared<PlainDocument>(gone);
    document->open();
    fs::remove_all(gone.parent_path());
    document->words = "new";
    document->updateChangeCount(done);
    EXPECT_EQ(document->close(), "no");
    EXPECT_EQ(document->lastError(),
              "'" + gone.string() + "' could not be written: its folder does not exist.");
    EXPECT_EQ(document->documentState(), UIDocumentState::savingError);
    EXPECT_EQ(document->save(other, forOverwriting), "yes");
    EXPECT_EQ(document->fileURL(), other);
    EXPECT_EQ(document->documentState(), UIDocumentState::normal);
    EXPECT_FALSE(document->hasUnsavedChanges());
    EXPECT_EQ(contentOf(other), "new");
    EXPECT_EQ(document->close(), "yes");
}

TEST_F(UIDocumentTest, ASaveElsewhereThatFailsLeavesTheDocumentWhereItIs)
{
    const auto document = opened();
    document->updateChangeCount(done);
    EXPECT_EQ(document->save(folder.path / "none" / "b.mid", forCreating), "no");
    EXPECT_EQ(document->fileURL(), file);
    EXPECT_TRUE(document->hasUnsavedChanges());
}

TEST_F(UIDocumentTest, AFileThatVanishedIsWrittenAnew)
{
    const auto document = opened();
    fs::remove(file);
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(file), "old");
}

TEST_F(UIDocumentTest, AFolderThatMayNotBeWrittenLeavesTheFileAsItWas)
{
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser may write everywhere";
    }
    const auto document = opened();
    document->words = "new";
    fs::permissions(folder.path, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(document->lastError(),
              "'" + file.string() + "' could not be written: its folder is not writable.");
    EXPECT_EQ(contentOf(file), "old");
}

TEST_F(UIDocumentTest, AWriteProtectedFileStays)
{
    const auto document = opened();
    document->words = "new";
    fs::permissions(file, fs::perms::owner_read);
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(document->lastError(), "'" + file.string() + "' could not be written: it is write-protected.");
    EXPECT_EQ(contentOf(file), "old");
}

TEST_F(UIDocumentTest, LinksAndRightsAreKept)
{
    const auto target = folder.write("target.mid", "old");
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink(target, file);
    const auto document = std::make_shared<PlainDocument>(file);
    document->open();
    document->words = "new";
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(target), "new");
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(UIDocumentTest, FoldersAndPipesAreNotWritten)
{
    const auto document = opened();
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(document->lastError(), "'" + file.string() + "' could not be written: it is a folder.");
    fs::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(document->lastError(), "'" + file.string() + "' could not be written: it is a pipe.");
    EXPECT_TRUE(fs::is_fifo(file));
}

TEST_F(UIDocumentTest, ADeviceThatIsFullIsTold)
{
    const auto document = opened();
    EXPECT_EQ(document->save("/dev/full", forOverwriting), "no");
    EXPECT_EQ(document->lastError(), "'/dev/full' could not be written: the device is full.");
    EXPECT_EQ(document->fileURL(), file);
}

TEST_F(UIDocumentTest, AStateIsPostedOnChangeOnly)
{
    const auto document = opened();
    StateListener listener(*document);
    document->setDocumentState(UIDocumentState::editingDisabled);
    document->setDocumentState(UIDocumentState::editingDisabled);
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(listener.take(), States{UIDocumentState::editingDisabled});
}

} // namespace

} // namespace volvelle::test
