#include "tests/app/control/ScreenFixture.h"

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

class UIDocumentBrowserViewControllerTest : public LogicScreens {
protected:
    void makeBrowser(const Lines& names)
    {
        const auto now = fs::file_time_type::clock::now();
        for (std::size_t index = 0; index < names.size(); ++index) {
            const fs::path file = writeDocument(names[index]);
            fs::last_write_time(file, now - std::chrono::hours(index));
        }
        makeRoot();
        root->onBrowserChanged = [this] { ++changes; };
    }

    Lines shownNames() const
    {
        Lines names;
        for (const FolderDocument& document : root->documents()) {
            names.push_back(document.name);
        }
        return names;
    }

    std::string selectedName() const { return root->selection().value_or("").filename().string(); }

    int changes = 0;
};

TEST_F(UIDocumentBrowserViewControllerTest, TheDocumentsStandWithTheNewestFirst)
{
    makeBrowser({"b.mid", "A.MID", "c.midi"});
    EXPECT_EQ(shownNames(), (Lines{"b", "A", "c"}));
    EXPECT_EQ(root->countLine(), "3 ideas in Documents / Volvelle");
    EXPECT_EQ(root->emptySearchLine(), "");
}

TEST_F(UIDocumentBrowserViewControllerTest, AnEmptyFolderSaysSo)
{
    makeBrowser({});
    EXPECT_EQ(root->countLine(), "Documents / Volvelle is empty");
    root->setSearchText("x");
    EXPECT_EQ(root->countLine(), "Documents / Volvelle is empty");
    EXPECT_EQ(root->emptySearchLine(), "");
}

TEST_F(UIDocumentBrowserViewControllerTest, BeforeAFolderIsShownNothingHappens)
{
    const auto browser = DocumentBrowserViewController::make(services());
    browser->refresh();
    browser->createDocument();
    browser->importDocument("a.mid");
    browser->pick({"a.mid"});
    EXPECT_TRUE(browser->renameSelection("a"));
    browser->duplicateSelection();
    browser->moveSelectionToTrash();
    browser->undo();
    EXPECT_EQ(browser->folderName(), "");
    EXPECT_EQ(browser->documents().size(), 0U);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(UIDocumentBrowserViewControllerTest, ASearchFindsPartsOfNamesInAnyCase)
{
    makeBrowser({"Slow tide.mid", "Low.mid", "Übermut.mid"});
    root->setSearchText("üBER");
    EXPECT_EQ(shownNames(), Lines{"Übermut"});
    root->setSearchText("lOW");
    EXPECT_EQ(shownNames(), (Lines{"Slow tide", "Low"}));
    EXPECT_EQ(root->countLine(), "2 of 3 ideas in Documents / Volvelle");
    root->setSearchText("nothing");
    EXPECT_EQ(root->emptySearchLine(), "No idea is called \"nothing\".");
    EXPECT_EQ(root->allDocuments().size(), 3U);
    root->setSearchText("");
    EXPECT_EQ(root->documents().size(), 3U);
    EXPECT_EQ(changes, 4);
}

TEST_F(UIDocumentBrowserViewControllerTest, ASelectionIsOneOfTheListAndEndsWithIt)
{
    makeBrowser({"a.mid", "b.mid"});
    root->select(documents / "a.mid");
    EXPECT_EQ(selectedName(), "a.mid");
    root->select("/elsewhere/a.mid");
    EXPECT_EQ(root->selection(), std::nullopt);
    root->select(documents / "a.mid");
    root->setSearchText("c");
    EXPECT_EQ(root->selection(), std::nullopt);
}

TEST_F(UIDocumentBrowserViewControllerTest, ASearchSelectsItsFirstHitWhereTheSelectionIsNone)
{
    makeBrowser({"a.mid", "tempo.mid", "tempo 2.mid"});
    root->setSearchText("tempo");
    EXPECT_EQ(selectedName(), "tempo.mid");
    root->select(documents / "tempo 2.mid");
    root->setSearchText("temp");
    EXPECT_EQ(selectedName(), "tempo 2.mid");
    root->setSearchText("");
    EXPECT_EQ(selectedName(), "tempo 2.mid");
    root->setSearchText("a");
    EXPECT_EQ(selectedName(), "a.mid");
    root->setSearchText("late");
    EXPECT_EQ(root->selection(), std::nullopt);
    writeDocument("late.mid");
    root->refresh();
    EXPECT_EQ(selectedName(), "late.mid");
}

TEST_F(UIDocumentBrowserViewControllerTest, WhileADocumentIsUpItsFilesStayAsTheyAre)
{
    makeBrowser({"a.mid", "b.mid"});
    root->select(documents / "b.mid");
    root->moveSelectionToTrash();
    root->select(documents / "a.mid");
    root->pickSelection();
    ASSERT_TRUE(root->isCovered());
    for (const char* selector : {"rename:", "duplicate:", "delete:", "undo:"}) {
        EXPECT_FALSE(root->canPerformAction(selector)) << selector;
    }
    EXPECT_TRUE(root->renameSelection("c"));
    root->duplicateSelection();
    root->moveSelectionToTrash();
    root->undo();
    EXPECT_EQ(shownNames(), Lines{"a"});
    EXPECT_TRUE(fs::exists(documents / "a.mid"));
    EXPECT_EQ(host->alerts.size(), 0U);
    up()->onButtonDone();
    EXPECT_FALSE(root->isCovered());
    root->undo();
    EXPECT_EQ(selectedName(), "b.mid");
}

TEST_F(UIDocumentBrowserViewControllerTest, ASelectionStaysWithItsFileElseWithItsPlace)
{
    makeBrowser({"a.mid", "b.mid", "c.mid"});
    root->select(documents / "b.mid");
    fs::remove(documents / "a.mid");
    root->refresh();
    EXPECT_EQ(selectedName(), "b.mid");
    fs::remove(documents / "b.mid");
    root->refresh();
    EXPECT_EQ(selectedName(), "c.mid");
    fs::remove(documents / "c.mid");
    root->refresh();
    EXPECT_EQ(root->selection(), std::nullopt);
}

TEST_F(UIDocumentBrowserViewControllerTest, ARefreshWithAFileSelectsItWhereItStandsHere)
{
    makeBrowser({"a.mid", "b.mid"});
    root->setSearchText("b");
    root->refreshAndSelect(documents / "a.mid");
    EXPECT_EQ(selectedName(), "a.mid");
    EXPECT_EQ(root->searchText(), "");
    writeDocument("c.mid");
    root->refreshAndSelect("/elsewhere/b.mid");
    EXPECT_EQ(selectedName(), "a.mid");
    EXPECT_EQ(root->documents().size(), 3U);
}

TEST_F(UIDocumentBrowserViewControllerTest, AnImportIsCopiedSelectedAndOpened)
{
    makeBrowser({"Other.mid"});
    root->setSearchText("Other");
    const fs::path file = folder.write("Other", smallFile());
    root->importDocument(file);
    EXPECT_EQ(screenLines().front(), told("documentBrowser() : Imported a document from '" + file.string() +
                                          "' to '" + (documents / "Other 2.mid").string() + "'."));
    EXPECT_EQ(selectedName(), "Other 2.mid");
    EXPECT_EQ(up()->document()->fileURL(), documents / "Other 2.mid");
    root->importDocument(file);
    EXPECT_EQ(root->documents().size(), 2U);
}

TEST_F(UIDocumentBrowserViewControllerTest, AnImportFromTheFolderItselfIsPicked)
{
    makeBrowser({"a.mid"});
    fs::create_directory_symlink(documents, folder.path / "link");
    root->importDocument(folder.path / "link/a.mid");
    EXPECT_EQ(up()->document()->fileURL(), documents / "a.mid");
    EXPECT_EQ(root->documents().size(), 1U);
}

TEST_F(UIDocumentBrowserViewControllerTest, WhatCannotBeImportedIsTold)
{
    makeBrowser({});
    root->importDocument(folder.path / "Gone.mid");
    EXPECT_EQ(host->alertTexts(), Lines{"File Error: Error: 'Gone' does not exist. Could not open file '" +
                                        (folder.path / "Gone.mid").string() + "'. [OK]"});
    host->press("OK");
    root->importDocument(folder.path);
    EXPECT_EQ(host->alerts.size(), 1U);
    host->press("OK");
    root->importDocument(folder.write("Empty.mid", ""));
    EXPECT_EQ(host->alerts.size(), 1U);
    EXPECT_FALSE(fs::exists(documents));
}

TEST_F(UIDocumentBrowserViewControllerTest, OneOfSeveralPickedFilesIsOpened)
{
    makeBrowser({"a.mid", "b.mid"});
    root->pick({documents / "a.mid", documents / "b.mid"});
    EXPECT_EQ(up()->title, "a");
    screenLines();
    root->pick({documents / "b.mid"});
    EXPECT_EQ(screenLines(), Lines{warning});
    up()->onButtonDone();
    screenLines();
    root->pick({});
    EXPECT_EQ(screenLines(), Lines{told("documentBrowser() : Error: Picked URL is invaid.")});
}

TEST_F(UIDocumentBrowserViewControllerTest, AFileThatVanishedIsToldAndLeavesTheList)
{
    makeBrowser({"a.mid", "b.mid"});
    root->select(documents / "a.mid");
    fs::remove(documents / "a.mid");
    root->pickSelection();
    EXPECT_EQ(host->alertTexts(), Lines{"File Error: File Error 'a' is not there any more. [OK]"});
    EXPECT_EQ(shownNames(), Lines{"b"});
}

TEST_F(UIDocumentBrowserViewControllerTest, ARevealedFileIsSelectedAndCopiedOnlyWhereAskedFor)
{
    makeBrowser({"a.mid"});
    Lines places;
    const auto note = [&places](const Result<fs::path>& place) {
        places.push_back(place ? place->string() : place.error());
    };
    const fs::path foreign = folder.write("b.mid", smallFile());
    root->revealDocument(documents / "a.mid", true, note);
    EXPECT_EQ(selectedName(), "a.mid");
    root->revealDocument(foreign, false, note);
    EXPECT_EQ(selectedName(), "a.mid");
    root->revealDocument(foreign, true, note);
    EXPECT_EQ(selectedName(), "b.mid");
    root->revealDocument(folder.path / "c.mid", true, note);
    EXPECT_EQ(places, (Lines{(documents / "a.mid").string(), foreign.string(), (documents / "b.mid").string(),
                             "'c' does not exist."}));
}

TEST_F(UIDocumentBrowserViewControllerTest, AFileIsRenamedDuplicatedAndStaysSelected)
{
    makeBrowser({"a.mid", "b.mid"});
    root->select(documents / "a.mid");
    EXPECT_TRUE(root->renameSelection("c"));
    EXPECT_EQ(selectedName(), "c.mid");
    root->duplicateSelection();
    EXPECT_EQ(selectedName(), "c 2.mid");
    EXPECT_EQ(root->renameSelection("b").error(), "There is already an idea called 'b'.");
    EXPECT_EQ(host->alertTexts(), Lines{});
    EXPECT_EQ(selectedName(), "c 2.mid");
    EXPECT_EQ(folder.names(), Lines{});
}

TEST_F(UIDocumentBrowserViewControllerTest, WhatFailsIsToldAndTheListIsReadAnew)
{
    makeBrowser({"a.mid", "b.mid"});
    root->select(documents / "a.mid");
    fs::remove(documents / "a.mid");
    EXPECT_EQ(root->renameSelection("c").error(), "'a' is not there any more.");
    EXPECT_EQ(shownNames(), Lines{"b"});
    fs::remove(documents / "b.mid");
    root->duplicateSelection();
    EXPECT_EQ(host->alertTexts().back(), "File Error: File Error 'b' could not be read. [OK]");
    EXPECT_EQ(root->documents().size(), 0U);
}

TEST_F(UIDocumentBrowserViewControllerTest, TheTrashGivesBackWhatItTook)
{
    makeBrowser({"a.mid", "b.mid", "c.mid"});
    EXPECT_FALSE(root->canUndo());
    root->select(documents / "a.mid");
    root->moveSelectionToTrash();
    EXPECT_EQ(selectedName(), "b.mid");
    root->moveSelectionToTrash();
    EXPECT_EQ(shownNames(), Lines{"c"});
    EXPECT_TRUE(root->canPerformAction("undo:"));
    root->undo();
    EXPECT_EQ(selectedName(), "b.mid");
    root->undo();
    EXPECT_EQ(selectedName(), "a.mid");
    EXPECT_FALSE(root->canUndo());
    root->undo();
    EXPECT_EQ(host->alerts.size(), 0U);
}

TEST_F(UIDocumentBrowserViewControllerTest, ATrashThatFailsLosesNothing)
{
    makeBrowser({"a.mid"});
    root->select(documents / "a.mid");
    trash->failed = "There is no trash.";
    root->moveSelectionToTrash();
    EXPECT_EQ(host->alertTexts(), Lines{"File Error: File Error There is no trash. [OK]"});
    EXPECT_EQ(selectedName(), "a.mid");
    trash->failed.clear();
    root->moveSelectionToTrash();
    trash->failed = "It is full.";
    root->undo();
    EXPECT_EQ(host->alertTexts().back(), "File Error: File Error It is full. [OK]");
    EXPECT_TRUE(root->canUndo());
    fs::remove_all(trash->folder.path);
    root->undo();
    EXPECT_FALSE(root->canUndo());
}

TEST_F(UIDocumentBrowserViewControllerTest, CommandsForAFileNeedASelection)
{
    makeBrowser({"a.mid"});
    for (const char* selector : {"open:", "rename:", "duplicate:", "delete:"}) {
        root->select(std::nullopt);
        EXPECT_FALSE(root->canPerformAction(selector)) << selector;
        root->select(documents / "a.mid");
        EXPECT_TRUE(root->canPerformAction(selector)) << selector;
    }
    EXPECT_FALSE(root->canPerformAction("undo:"));
    EXPECT_TRUE(root->canPerformAction("new:"));
}

TEST_F(UIDocumentBrowserViewControllerTest, TheFolderIsToldByItsLastTwoNames)
{
    makeBrowser({});
    root->showFolder("/Ideas", trash);
    EXPECT_EQ(root->folderName(), "Ideas");
    root->showFolder("/a/b\n/c", trash);
    EXPECT_EQ(root->folderName(), "b  / c");
}

} // namespace

} // namespace volvelle::test
