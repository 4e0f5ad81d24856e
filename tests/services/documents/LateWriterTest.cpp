#include "services/documents/NSFileVersion.h"
#include "tests/services/documents/DocumentFixture.h"
#include "tests/services/documents/SystemCalls.h"

#include <sys/stat.h>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

// Another program changes the file after a save has looked at it.
class LateWriters : public Documents {
protected:
    ~LateWriters() override { beforeRenaming = {}; }

    Lines versions() const
    {
        Lines contents;
        const auto kept = NSFileVersion::otherVersionsOfItemAtURL(file);
        for (const auto& version : kept.value()) {
            contents.push_back(contentOf(version->url()));
        }
        return contents;
    }
};

TEST_F(LateWriters, WhatIsWrittenBetweenTheLookAndTheSaveIsKeptAsAVersion)
{
    const auto document = opened();
    StateListener listener(*document);
    document->words = "new";
    beforeRenaming = [this] { folder.write("a.mid", "theirs"); };
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(file), "new");
    EXPECT_EQ(versions(), Lines{"theirs"});
    EXPECT_EQ(listener.take(), (States{UIDocumentState::inConflict, 0}));
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(versions(), Lines{"theirs"});
}

TEST_F(LateWriters, AFileThatComesAfterTheLookIsKept)
{
    const auto document = opened();
    fs::remove(file);
    beforeRenaming = [this] { folder.write("a.mid", "theirs"); };
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(file), "old");
    EXPECT_EQ(versions(), Lines{"theirs"});
}

TEST_F(LateWriters, AFileThatIsTouchedAloneIsNoVersion)
{
    const auto document = opened();
    document->words = "new";
    beforeRenaming = [this] { folder.write("a.mid", "old"); };
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(file), "new");
    EXPECT_EQ(versions(), Lines{});
}

TEST_F(LateWriters, AFileThatGoesAfterTheLookIsWrittenAnew)
{
    const auto document = opened();
    document->words = "new";
    beforeRenaming = [this] { fs::remove(file); };
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(file), "new");
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
}

TEST_F(LateWriters, WhereAVersionCannotBeKeptTheFileHasItsPlaceBack)
{
    const auto document = opened();
    document->words = "new";
    states.write("volvelle", "no folder");
    beforeRenaming = [this] { folder.write("a.mid", "theirs"); };
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(contentOf(file), "theirs");
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
    EXPECT_EQ(document->lastError(), "'" + versionsOf("open", "a.mid").string() +
                                         "' could not be written: its folder does not exist.");
    fs::remove(states.path / "volvelle");
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(versions(), Lines{"theirs"});
}

TEST_F(LateWriters, AFolderThatGoesEndsTheSave)
{
    const auto document = opened();
    document->words = "new";
    beforeRenaming = [this] { fs::remove_all(folder.path); };
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(document->lastError(),
              "'" + file.string() + "' could not be written: its folder does not exist.");
    fs::create_directory(folder.path);
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(contentOf(file), "new");
}

TEST_F(LateWriters, AFileThatIsTakenAwayBeforeItHasItsPlaceEndsTheSave)
{
    const auto document = opened();
    document->words = "new";
    beforeRenaming = [this] {
        for (const auto& entry : fs::directory_iterator(folder.path)) {
            if (entry.path() != file) {
                fs::remove(entry.path());
            }
        }
    };
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(contentOf(file), "old");
}

TEST_F(LateWriters, AThirdWriterLosesNothingWhileTheSecondHasItsPlaceBack)
{
    const auto document = opened();
    document->words = "new";
    states.write("volvelle", "no folder");
    const auto third = [this] {
        folder.write("third", "third");
        fs::rename(folder.path / "third", file);
    };
    beforeRenaming = [&] {
        folder.write("a.mid", "second");
        beforeRenaming = [&] { beforeRenaming = [&] { beforeRenaming = third; }; };
    };
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(contentOf(file), "second");
    EXPECT_EQ(contentOf(folder.path / "a 2.mid"), "third");
    EXPECT_EQ(folder.names(), (Lines{"a 2.mid", "a.mid"}));
}

TEST_F(LateWriters, WhereThePlaceIsEmptyByNowTheFileGetsItBackAsWell)
{
    const auto document = opened();
    document->words = "new";
    states.write("volvelle", "no folder");
    beforeRenaming = [&] {
        folder.write("a.mid", "second");
        beforeRenaming = [&] { beforeRenaming = [&] { beforeRenaming = [&] { fs::remove(file); }; }; };
    };
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(contentOf(file), "second");
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
}

TEST_F(LateWriters, APipeInTheFilesPlaceStays)
{
    const auto document = opened();
    document->words = "new";
    beforeRenaming = [this] {
        fs::remove(file);
        mkfifo(file.c_str(), 0600);
    };
    EXPECT_EQ(document->save(), "no");
    EXPECT_EQ(document->lastError(), "'" + file.string() + "' could not be written: it changed meanwhile.");
    EXPECT_TRUE(fs::is_fifo(file));
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
}

TEST_F(LateWriters, ASavePutsTheFileAndItsFolderOnDisk)
{
    const auto document = opened();
    document->words = "new";
    synchronised = 0;
    EXPECT_EQ(document->save(), "yes");
    EXPECT_EQ(synchronised, 2);
}

} // namespace

} // namespace volvelle::test
