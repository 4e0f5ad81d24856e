#include "tests/app/control/ScreenFixture.h"

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

class WaitingDocuments : public LogicScreens {
protected:
    WaitingDocuments()
    {
        makeRoot();
        root->presentDocument(writeDocument("Slow tide.mid"));
        screenLines();
        root->onBrowserChanged = [this] { told.push_back(root->waitingLine()); };
    }

    Lines told; // the line at each change
};

TEST_F(WaitingDocuments, AreCountedInALine)
{
    EXPECT_EQ(root->waitingLine(), "");
    root->presentDocument(writeDocument("Other.mid"));
    root->presentDocument(writeDocument("Third.mid"));
    EXPECT_EQ(told, (Lines{"'Other' waits to be opened.", "2 ideas wait to be opened."}));
    root->forgetWaitingDocuments();
    EXPECT_EQ(told.back(), "");
    EXPECT_EQ(root->waitingDocuments().size(), 0U);
}

TEST_F(WaitingDocuments, TheFirstIsOpenedInPlaceOfTheOneThatIsUp)
{
    root->presentDocument(writeDocument("Other.mid"));
    root->presentDocument(writeDocument("Third.mid"));
    host->calls.clear();
    told.clear();
    root->openWaitingDocument();
    EXPECT_EQ(host->calls, (Lines{"hide document", "show document animated"}));
    EXPECT_EQ(up()->title, "Other");
    EXPECT_EQ(root->waitingLine(), "'Third' waits to be opened.");
    EXPECT_EQ(told.back(), "'Third' waits to be opened.");
    root->openWaitingDocument();
    root->openWaitingDocument();
    EXPECT_EQ(up()->title, "Third");
    EXPECT_TRUE(up()->isUp());
}

TEST_F(WaitingDocuments, AreOpenedFromTheBrowserToo)
{
    root->presentDocument(writeDocument("Other.mid"));
    up()->onButtonDone();
    root->openWaitingDocument();
    EXPECT_EQ(up()->title, "Other");
}

TEST_F(WaitingDocuments, AreCopiedOnceTheirTurnHasCome)
{
    const fs::path file = folder.write("Other.mid", smallFile());
    root->importOrWait(file);
    EXPECT_EQ(screenLines(), Lines{warning});
    EXPECT_FALSE(fs::exists(documents / "Other.mid"));
    root->openWaitingDocument();
    EXPECT_EQ(up()->document()->fileURL(), documents / "Other.mid");
    EXPECT_EQ(bytesOf(file), smallFile());
}

TEST_F(WaitingDocuments, AreCopiedAtOnceWhereNothingIsUp)
{
    up()->onButtonDone();
    root->importOrWait(folder.write("Other.mid", smallFile()));
    EXPECT_EQ(up()->document()->fileURL(), documents / "Other.mid");
}

TEST_F(WaitingDocuments, OneThatVanishedIsToldOnceTheBrowserIsSeen)
{
    const fs::path other = writeDocument("Other.mid");
    root->presentDocument(other);
    fs::remove(other);
    root->openWaitingDocument();
    EXPECT_EQ(host->alertTexts(), Lines{"File Error: File Error 'Other' does not exist. [OK]"});
    EXPECT_EQ(root->waitingDocuments().size(), 0U);
    EXPECT_EQ(told.back(), "");
    EXPECT_FALSE(up()->isUp());
}

TEST_F(WaitingDocuments, WaitOnWhileTheScreenGoes)
{
    root->presentDocument(writeDocument("Other.mid"));
    host->holds = true;
    root->openWaitingDocument();
    EXPECT_EQ(root->waitingDocuments().size(), 1U);
    host->release();
    EXPECT_EQ(up()->title, "Other");
}

TEST_F(WaitingDocuments, GoWithARootScreenThatDies)
{
    root->presentDocument(writeDocument("Other.mid"));
    host->holds = true;
    root->openWaitingDocument();
    root.reset();
    host->release();
    EXPECT_EQ(host->calls.back(), "hide document");
}

TEST_F(WaitingDocuments, TheProgramTellsWhatItIs)
{
    up()->onButtonDone();
    root->showAbout();
    ASSERT_EQ(host->alerts.size(), 1U);
    EXPECT_EQ(host->alerts.front().title, "Volvelle");
    EXPECT_NE(host->alerts.front().message.find(" makes musical ideas as MIDI files."), std::string::npos);
}

} // namespace

} // namespace volvelle::test
