#include "tests/app/control/ScreenFixture.h"
#include "tests/services/files/FileSizeLimit.h"

#include <unistd.h>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

class MIDIDocumentViewControllerTest : public LogicScreens {
protected:
    // The screen of a document, with its root screen.
    fs::path openSlowTide()
    {
        const fs::path file = writeDocument("Slow tide.mid");
        makeRoot();
        root->presentDocument(file);
        screenLines();
        host->calls.clear();
        return file;
    }

    // A screen without a root screen, on an open document.
    std::shared_ptr<MIDIDocumentViewController> lonely()
    {
        const auto screen = makeDocumentScreen();
        screen->loadViewIfNeeded();
        const auto document = MIDIDocument::make(writeDocument("Slow tide.mid"));
        EXPECT_TRUE(opens(*document));
        screen->setDocument(document);
        screenLines();
        return screen;
    }

    static std::string labelOf(const MIDIDocumentViewController& screen)
    {
        return std::static_pointer_cast<FakeLabel>(screen.labelFile)->shown;
    }

    const std::string closed = "MIDIDocumentViewController::viewDidDisappear() : Document closed.";
    const std::string notClosed = "MIDIDocumentViewController::viewDidDisappear() : Error closing document.";
    const std::string update = "MIDIDocumentViewController::midiDocumentUpdateEvents()";
    const std::string play = "MIDIDocumentViewController::midiDocumentPlaySequence()";
    const std::string playing = "MIDISequencer::start() : The sequencer is playing.";
    const std::string stopped = "MIDISequencer::stop() : The sequencer was stopped.";
    const std::string nil = "Unexpectedly found nil while unwrapping an Optional value";
};

TEST_F(MIDIDocumentViewControllerTest, ADocumentNeedsTheLayoutAndMustBeThere)
{
    const auto screen = MIDIDocumentViewController::make({});
    EXPECT_STOP(screen->setDocument(MIDIDocument::make("a.mid")), nil);
    EXPECT_STOP(makeDocumentScreen()->setDocument(nullptr), nil);
}

TEST_F(MIDIDocumentViewControllerTest, ADocumentTellsTheScreenAndGivesTheCircleItsEvents)
{
    const auto screen = lonely();
    EXPECT_EQ(screen->document()->delegate.lock(), screen);
    EXPECT_EQ(screen->contentView->delegate(), screen->document().get());
    EXPECT_EQ(textsOf(screen->contentView->delegate()->getEvents()),
              textsOf(screen->document()->getEvents()));
}

TEST_F(MIDIDocumentViewControllerTest, WithoutADocumentGenerateAndPlayDoNothing)
{
    const auto screen = makeDocumentScreen();
    screen->loadViewIfNeeded();
    screen->onGenerate();
    screen->onButtonPlay();
    screen->playOrStop();
    EXPECT_FALSE(screen->isPlaying());
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDIDocumentViewControllerTest, GenerateWithoutABrowserGeneratesAndPlaysNothing)
{
    const auto screen = lonely();
    screen->onGenerate();
    EXPECT_EQ(screenLines(), (Lines{update, play}));
    EXPECT_NE(screen->document()->data, smallFile());
    EXPECT_FALSE(screen->document()->hasUnsavedChanges());
}

TEST_F(MIDIDocumentViewControllerTest, GenerateShowsAndPlaysBeforeItEnds)
{
    openSlowTide();
    Lines contents;
    up()->onContentChanged = [&](const std::vector<std::uint8_t>& data) {
        contents.push_back(data == smallFile() ? "old" : "new");
    };
    int redrawn = 0;
    up()->contentView->setNeedsDisplay = [&redrawn] { ++redrawn; };
    up()->contentView->backgroundColor = UIColor{1.0, 0.0, 0.0, 1.0};
    up()->onGenerate();
    EXPECT_EQ(screenLines(),
              (Lines{stopped, update, play, playing, "sequencer state: stop", "sequencer state: play"}));
    EXPECT_EQ(contents, Lines{"new"});
    EXPECT_GE(redrawn, 1);
    EXPECT_EQ(up()->contentView->backgroundColor, UIColor::clearColor());
    EXPECT_FALSE(up()->document()->hasUnsavedChanges());
    EXPECT_TRUE(up()->isPlaying());
}

TEST_F(MIDIDocumentViewControllerTest, PlayBeginsAtTheStartEachTime)
{
    openSlowTide();
    goOn(0.5);
    EXPECT_GT(root->sequencer->getPosition(), 0.5);
    up()->onButtonPlay();
    EXPECT_EQ(root->sequencer->getPosition(), 0.0);
    goOn(0.5);
    up()->onButtonPlay();
    EXPECT_EQ(root->sequencer->getPosition(), 0.0);
    EXPECT_TRUE(up()->isPlaying());
}

TEST_F(MIDIDocumentViewControllerTest, PlayWithoutDataIsFatal)
{
    const auto screen = lonely();
    screen->document()->data.reset();
    EXPECT_STOP(screen->onButtonPlay(), nil);
    screen->playOrStop();
    EXPECT_EQ(screenLines(), Lines{});
}

TEST_F(MIDIDocumentViewControllerTest, AClickOnTheDiscStopsAndPlays)
{
    openSlowTide();
    int changes = 0;
    up()->onPlayingChanged = [&changes] { ++changes; };
    up()->playOrStop();
    EXPECT_FALSE(up()->isPlaying());
    mainQueue().drain();
    EXPECT_EQ(hiddenButtons(), "");
    up()->playOrStop();
    EXPECT_TRUE(up()->isPlaying());
    mainQueue().drain();
    EXPECT_EQ(changes, 2);
}

TEST_F(MIDIDocumentViewControllerTest, DoneAfterGenerateLeavesTheFileAsItWas)
{
    const fs::path file = openSlowTide();
    up()->onGenerate();
    up()->onButtonDone();
    console.take();
    EXPECT_EQ(bytesOf(file), smallFile());
    EXPECT_EQ(host->calls, Lines{"hide document animated"});
    EXPECT_FALSE(root->isPresenting);
    EXPECT_EQ(root->selection(), file);
    EXPECT_NE(up()->document()->documentState() & UIDocumentState::closed, 0);
}

TEST_F(MIDIDocumentViewControllerTest, SaveWritesTheLastArrangementAndLeaves)
{
    const fs::path file = openSlowTide();
    up()->onGenerate();
    up()->onGenerate();
    const auto last = up()->document()->data;
    screenLines();
    up()->onButtonSave();
    EXPECT_EQ(screenLines(), (Lines{stopped, closed, "sequencer state: stop"}));
    EXPECT_EQ(bytesOf(file), last);
    EXPECT_FALSE(up()->isUp());
    EXPECT_FALSE(root->isPresenting);
}

TEST_F(MIDIDocumentViewControllerTest, TheDocumentThatWasLeftIsSelectedWhateverWasSearchedFor)
{
    const fs::path file = openSlowTide();
    writeDocument("Other.mid");
    root->setSearchText("nothing of that name");
    int changes = 0;
    root->onBrowserChanged = [&changes] { ++changes; };
    up()->onButtonDone();
    EXPECT_EQ(root->selection(), file);
    EXPECT_EQ(root->searchText(), "");
    EXPECT_EQ(root->documents().size(), 2U);
    EXPECT_GE(changes, 1);
}

TEST_F(MIDIDocumentViewControllerTest, ADocumentFromElsewhereLeavesTheSelection)
{
    const fs::path other = writeDocument("Other.mid");
    makeRoot();
    root->select(other);
    root->presentDocument(folder.write("Slow tide.mid", smallFile()));
    up()->onButtonDone();
    EXPECT_EQ(root->selection(), other);
}

TEST_F(MIDIDocumentViewControllerTest, AClosedDocumentCannotAppear)
{
    const auto screen = lonely();
    closes(*screen->document());
    EXPECT_STOP(screen->viewWillAppear(true),
                "MIDIDocumentViewController::viewWillAppear() : Error: Document is opened.");
}

TEST_F(MIDIDocumentViewControllerTest, ADocumentInConflictCannotAppear)
{
    const auto screen = lonely();
    setState(*screen->document(), UIDocumentState::inConflict);
    console.take();
    EXPECT_STOP(screen->viewWillAppear(true),
                "MIDIDocumentViewController::viewWillAppear() : Document conflicts not resolved.");
}

TEST_F(MIDIDocumentViewControllerTest, TheNameStandsInTheTitleAndTheLabel)
{
    const auto screen = lonely();
    screen->viewWillAppear(true);
    EXPECT_EQ(screen->title, "Slow tide");
    EXPECT_EQ(labelOf(*screen), "File: Slow tide");
    EXPECT_EQ(console.take(), Lines{"Slow tide"});
}

TEST_F(MIDIDocumentViewControllerTest, AFileWithoutANameIsUnknown)
{
    const auto screen = lonely();
    fs::remove(screen->document()->fileURL());
    screen->viewWillAppear(true);
    EXPECT_EQ(screen->title, std::nullopt);
    EXPECT_EQ(labelOf(*screen), "File: Unknown Document");
    EXPECT_EQ(console.take(), Lines{"Unknown Document"});
}

TEST_F(MIDIDocumentViewControllerTest, AnotherSizeDrawsTheCircleAgain)
{
    const auto screen = lonely();
    int redrawn = 0;
    screen->contentView->setNeedsDisplay = [&redrawn] { ++redrawn; };
    screen->viewWillLayoutSubviews();
    EXPECT_EQ(redrawn, 1);
    MIDIDocumentViewController::make({})->viewWillLayoutSubviews();
}

TEST_F(MIDIDocumentViewControllerTest, ADocumentIsClosedOnceItsScreenIsGone)
{
    openSlowTide();
    host->holds = true;
    up()->onButtonDone();
    EXPECT_EQ(screenLines(), (Lines{stopped, "sequencer state: stop"}));
    EXPECT_TRUE(root->isPresenting);
    root->presentDocument(writeDocument("Other.mid"));
    EXPECT_EQ(screenLines(), Lines{warning});
    host->release();
    EXPECT_EQ(screenLines(), Lines{closed});
    EXPECT_FALSE(root->isPresenting);
}

TEST_F(MIDIDocumentViewControllerTest, AScreenThatDiesLeavesNothingToCall)
{
    const auto view = [this] {
        const auto screen = lonely();
        screen->onContentChanged = [](const std::vector<std::uint8_t>&) {};
        return screen->contentView;
    }();
    EXPECT_EQ(view->delegate(), nullptr);
    EXPECT_EQ(view.use_count(), 1);
}

TEST_F(MIDIDocumentViewControllerTest, ARootScreenThatDiesBeforeTheScreenIsGoneIsNotCalled)
{
    const fs::path file = openSlowTide();
    up()->onGenerate();
    const auto last = up()->document()->data;
    host->holds = true;
    up()->onButtonSave();
    root.reset();
    screenLines();
    host->release();
    EXPECT_EQ(screenLines(), Lines{closed});
    EXPECT_EQ(bytesOf(file), last);
}

TEST_F(MIDIDocumentViewControllerTest, TwoDocumentsOneAfterTheOther)
{
    const fs::path file = openSlowTide();
    const std::weak_ptr<MIDIDocumentViewController> first = up();
    up()->onButtonDone();
    root->presentDocument(writeDocument("Other.mid"));
    EXPECT_EQ(up()->title, "Other");
    mainQueue().drain();
    EXPECT_EQ(hiddenButtons(), "Play Save Generate ");
    host->calls.clear();
    EXPECT_TRUE(first.expired());
    up()->onGenerate();
    up()->onButtonSave();
    EXPECT_EQ(bytesOf(file), smallFile());
    EXPECT_NE(bytesOf(documents / "Other.mid"), smallFile());
}

} // namespace

} // namespace volvelle::test
