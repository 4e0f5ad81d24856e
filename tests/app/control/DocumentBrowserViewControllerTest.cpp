#include "base/Paths.h"
#include "tests/app/control/ScreenFixture.h"

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

class DocumentBrowserViewControllerTest : public LogicScreens {
protected:
    fs::path writeExample() const
    {
        const fs::path example = library.at("/New MIDI Idea.mid");
        EXPECT_EQ(replaceFile(example, smallFile(), true), noErr);
        return example;
    }

    Lines directories() const
    {
        return {"viewController:getDirectories() : Initialization, enumerating the apps accessible folders.",
                "viewController:getDirectories() : The app's resources path is: " + library.at(""),
                "viewController:getDirectories() : The app's documents path is: " + documents.string()};
    }

    Lines linesOfLoading()
    {
        root = DocumentBrowserViewController::make(services());
        root->host = host;
        root->loadViewIfNeeded();
        return screenLines();
    }

    Lines followedBy(Lines lines, const Lines& more) const
    {
        lines.insert(lines.end(), more.begin(), more.end());
        return lines;
    }

    const std::string started = told("startEngine() : The audio engine was started.");
    const std::string provide = told("provideDefaultDocuments(): ");
};

TEST_F(DocumentBrowserViewControllerTest, TheFirstStartBringsTheExampleAndTheSecondLeavesIt)
{
    writeExample();
    EXPECT_EQ(linesOfLoading(), followedBy(directories(), {started}));
    EXPECT_EQ(bytesOf(documents / "New MIDI Idea.mid"), smallFile());
    EXPECT_EQ(root->documents().size(), 1U);
    EXPECT_EQ(linesOfLoading(), followedBy(directories(), {provide + "The default document '" +
                                                               (documents / "New MIDI Idea.mid").string() +
                                                               "' already existed.",
                                                           started}));
}

TEST_F(DocumentBrowserViewControllerTest, AMissingExampleIsToldOnce)
{
    EXPECT_EQ(
        linesOfLoading(),
        followedBy(directories(), {provide + "ERROR: Missing resource file 'New MIDI Idea.mid'.", started}));
    EXPECT_FALSE(fs::exists(documents));
}

TEST_F(DocumentBrowserViewControllerTest, AnExampleThatCannotBeCopiedIsTold)
{
    writeExample();
    home.write("Documents", "no folder");
    EXPECT_EQ(linesOfLoading(),
              followedBy(directories(),
                         {provide + "ERROR: Could not provide example file: Not a directory", started}));
}

TEST_F(DocumentBrowserViewControllerTest, ALinkInThePlaceOfTheExampleLeadsToIt)
{
    writeExample();
    fs::create_directories(documents);
    fs::create_symlink("elsewhere.mid", documents / "New MIDI Idea.mid");
    EXPECT_EQ(linesOfLoading(), followedBy(directories(), {started}));
    EXPECT_EQ(fs::read_symlink(documents / "New MIDI Idea.mid"), "elsewhere.mid");
    EXPECT_EQ(bytesOf(documents / "elsewhere.mid"), smallFile());
}

TEST_F(DocumentBrowserViewControllerTest, WithoutAFolderForDocumentsNothingIsWrittenAnywhere)
{
    writeExample();
    unsetenv("HOME");
    unsetenv("XDG_CONFIG_HOME");
    const fs::path before = fs::current_path();
    fs::current_path(folder.path);
    const Lines lines = linesOfLoading();
    root->createDocument();
    fs::current_path(before);
    EXPECT_EQ(lines, (Lines{directories()[0], directories()[1],
                            "viewController:getDirectories() : Documents directory is nil.",
                            provide + "ERROR: Could not provide example file: There is no folder for it.",
                            started}));
    EXPECT_EQ(folder.names(), Lines{});
    EXPECT_EQ(host->alerts.size(), 1U);
}

TEST_F(DocumentBrowserViewControllerTest, WithoutResourcesTheExampleIsMissing)
{
    setResourcesFolder(std::nullopt);
    folder.write("New MIDI Idea.mid", smallFile());
    const fs::path before = fs::current_path();
    fs::current_path(folder.path);
    const Lines lines = linesOfLoading();
    fs::current_path(before);
    EXPECT_EQ(lines, (Lines{directories()[0], "ViewController::getDirectories() : Resources folder is nil.",
                            directories()[2], provide + "ERROR: Missing resource file 'New MIDI Idea.mid'.",
                            started}));
    EXPECT_FALSE(fs::exists(documents));
}

TEST_F(DocumentBrowserViewControllerTest, LoadingMakesTheRootScreenKnown)
{
    EXPECT_EQ(currentBrowserViewController(), nullptr);
    makeRoot();
    EXPECT_EQ(currentBrowserViewController(), root);
    EXPECT_EQ(root->browserDelegate.lock(), root);
    EXPECT_TRUE(root->allowsDocumentCreation);
    EXPECT_FALSE(root->allowsPickingMultipleItems);
    EXPECT_FALSE(root->isPresenting);
    EXPECT_EQ(root->documentViewController, nullptr);
    EXPECT_EQ(root->sequencer, nullptr);
    EXPECT_EQ(root->folderName(), "Documents / Volvelle");
}

TEST_F(DocumentBrowserViewControllerTest, ADocumentIsOpenedPlayedAndShown)
{
    const fs::path file = writeDocument("Slow tide.mid");
    makeRoot();
    root->presentDocument(file);
    EXPECT_EQ(screenLines(), (Lines{"MIDIDocumentViewController::midiDocumentUpdateEvents()",
                                    "MIDIDocumentViewController::midiDocumentPlaySequence()",
                                    "MIDISequencer::start() : The sequencer is playing.",
                                    told("presentDocument() : Document opening."), "Slow tide",
                                    told("presentDocument() : Opened document '" + file.string() + "'"),
                                    "sequencer state: play"}));
    EXPECT_EQ(host->calls, Lines{"show document animated"});
    EXPECT_TRUE(root->isPresenting);
    EXPECT_EQ(up()->browser.lock(), root);
    EXPECT_EQ(up()->document()->fileURL(), file);
    EXPECT_EQ(up()->document()->delegate.lock(), up());
}

TEST_F(DocumentBrowserViewControllerTest, ASecondDocumentIsRefusedAndWaits)
{
    const fs::path file = writeDocument("Slow tide.mid");
    const fs::path other = writeDocument("Other.mid");
    makeRoot();
    root->presentDocument(file);
    const auto shown = up();
    screenLines();
    root->presentDocument(other);
    EXPECT_EQ(screenLines(), Lines{warning});
    EXPECT_EQ(up(), shown);
    EXPECT_EQ(root->waitingDocuments(), (std::vector<UIOpenURLContext>{{other, true}}));
}

TEST_F(DocumentBrowserViewControllerTest, ADocumentThatCannotBeOpenedLeavesTheBrowserUsable)
{
    makeRoot();
    const fs::path gone = documents / "Gone.mid";
    root->presentDocument(gone);
    EXPECT_EQ(screenLines(), Lines{told("presentDocument() : Error: Document '" + gone.string() +
                                        "' could not be opened.")});
    EXPECT_FALSE(root->isPresenting);
    EXPECT_EQ(host->calls, Lines{});
    root->presentDocument(writeDocument("Slow tide.mid"));
    EXPECT_TRUE(root->isPresenting);
}

TEST_F(DocumentBrowserViewControllerTest, PickingNothingIsTold)
{
    makeRoot();
    root->documentBrowserDidPickDocuments({});
    EXPECT_EQ(screenLines(), Lines{told("documentBrowser() : Error: Picked URL is invaid.")});
    root->documentBrowserDidPickDocuments({writeDocument("Slow tide.mid"), writeDocument("Other.mid")});
    EXPECT_EQ(up()->title, "Slow tide");
}

TEST_F(DocumentBrowserViewControllerTest, AnImportIsToldAndPresented)
{
    const fs::path file = writeDocument("Slow tide.mid");
    makeRoot();
    root->documentBrowserDidImportDocument("/elsewhere/a.mid", file);
    EXPECT_EQ(
        screenLines().front(),
        told("documentBrowser() : Imported a document from '/elsewhere/a.mid' to '" + file.string() + "'."));
    EXPECT_TRUE(up()->isUp());
}

TEST_F(DocumentBrowserViewControllerTest, AFailedImportIsAnAlertThatKeepsOthersAway)
{
    makeRoot();
    root->documentBrowserFailedToImportDocument("/elsewhere/a\n.mid", "It is no MIDI file.");
    EXPECT_EQ(host->alertTexts(),
              Lines{"File Error: Error: It is no MIDI file. Could not open file '/elsewhere/a .mid'. [OK]"});
    EXPECT_TRUE(root->isPresenting);
    host->press("OK");
    EXPECT_FALSE(root->isPresenting);
}

TEST_F(DocumentBrowserViewControllerTest, AMessageIsToldTwiceAndKeepsOthersAway)
{
    makeRoot();
    root->showMessage("Caption", "message");
    EXPECT_EQ(screenLines(), Lines{"Message: message"});
    EXPECT_EQ(host->alertTexts(), Lines{"Caption: Caption message [OK]"});
    root->presentDocument(writeDocument("Slow tide.mid"));
    EXPECT_EQ(screenLines(), Lines{warning});
    host->press("OK");
    EXPECT_FALSE(root->isPresenting);
}

TEST_F(DocumentBrowserViewControllerTest, AMessageAboveADocumentLeavesNoRoomForAnother)
{
    makeRoot();
    root->presentDocument(writeDocument("Slow tide.mid"));
    root->showAbout();
    host->press("OK");
    EXPECT_TRUE(root->isPresenting);
    screenLines();
    root->presentDocument(writeDocument("Other.mid"));
    EXPECT_EQ(screenLines(), Lines{warning});
    EXPECT_EQ(up()->title, "Slow tide");
}

TEST_F(DocumentBrowserViewControllerTest, OfTwoAlertsTheLastGivesRoomForADocument)
{
    makeRoot();
    root->showMessage("Caption", "one");
    root->showMessage("Caption", "two");
    host->press("OK");
    EXPECT_TRUE(root->isPresenting);
    host->press("OK");
    EXPECT_FALSE(root->isPresenting);
}

TEST_F(DocumentBrowserViewControllerTest, AnAlertThatOutlivesTheRootScreenDoesNothing)
{
    makeRoot();
    root->showMessage("Caption", "message");
    root.reset();
    host->press("OK");
    EXPECT_EQ(currentBrowserViewController(), nullptr);
}

TEST_F(DocumentBrowserViewControllerTest, HelpOpensTheSiteAndTheManual)
{
    const std::string manual = library.at("/manual.pdf");
    ASSERT_EQ(replaceFile(manual, smallFile(), true), noErr);
    makeRoot();
    root->showHelp();
    EXPECT_EQ(sites, Lines{"https://maker.example/help"});
    EXPECT_EQ(host->calls, Lines{"show help animated"});
    EXPECT_EQ(storyboard->help.lock()->identifier, "showHelp");
    console.take();
    EXPECT_EQ(storyboard->web->calls, Lines{"file " + manual});
    storyboard->help.lock()->onButtonExit();
    root->performSegue("showInfo");
    EXPECT_EQ(storyboard->help.lock()->identifier, "showInfo");
}

TEST_F(DocumentBrowserViewControllerTest, HelpStandsAboveNoOtherHelp)
{
    makeRoot();
    root->performSegue("showInfo");
    root->performSegue("showHelp");
    EXPECT_EQ(host->calls, Lines{"show help animated"});
    EXPECT_EQ(storyboard->help.lock()->identifier, "showInfo");
}

TEST_F(DocumentBrowserViewControllerTest, ASegueOfAnotherNameIsPassedOver)
{
    makeRoot();
    root->prepareForSegue({"showNothing", nullptr});
    EXPECT_EQ(screenLines(), Lines{});
}

TEST_F(DocumentBrowserViewControllerTest, ADocumentTakesThePlaceOfTheHelp)
{
    makeRoot();
    root->performSegue("showInfo");
    root->presentDocument(writeDocument("Slow tide.mid"));
    EXPECT_EQ(host->calls, (Lines{"show help animated", "hide help", "show document animated"}));
    EXPECT_EQ(root->presentedViewController(), up());
}

TEST_F(DocumentBrowserViewControllerTest, HelpAboveADocumentGoesWithIt)
{
    makeRoot();
    root->presentDocument(writeDocument("Slow tide.mid"));
    root->performSegue("showInfo");
    up()->onButtonDone();
    EXPECT_EQ(host->calls,
              (Lines{"show document animated", "show help animated", "hide help", "hide document animated"}));
    EXPECT_EQ(root->presentedViewController(), nullptr);
}

TEST_F(DocumentBrowserViewControllerTest, ActionsAreToldAndAnsweredByTheBrowser)
{
    makeRoot();
    EXPECT_FALSE(root->canPerformAction("rename:"));
    EXPECT_TRUE(root->canPerformAction("paste:"));
    EXPECT_EQ(console.take(), (Lines{"rename:", "paste:"}));
}

} // namespace

} // namespace volvelle::test
