#include "services/documents/NSFileVersion.h"
#include "tests/app/control/ScreenFixture.h"
#include "tests/services/files/FileSizeLimit.h"

#include <unistd.h>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

// A document that was changed, saved and left while its file could not be written.
class UnsavedDocument : public LogicScreens {
protected:
    void leaveWhileFull()
    {
        makeRoot();
        root->presentDocument(file);
        up()->onGenerate();
        last = up()->document()->data;
        screenLines();
        const FileSizeLimit limit(10);
        up()->onButtonSave();
        screenLines();
    }

    std::string alertOf(const std::string& reason, const std::string& buttons = "[Retry, OK]") const
    {
        return "File Error: Error: '" + file.string() + "' could not be written: " + reason +
               ". Could not save file '" + file.string() + "'. With OK, what was not saved is lost. " +
               buttons;
    }

    const fs::path file = writeDocument("Slow tide.mid");
    std::optional<std::vector<std::uint8_t>> last;
    const std::string full = "it would be larger than allowed";
};

TEST_F(UnsavedDocument, IsKeptAndOfferedToTheUser)
{
    makeRoot();
    root->presentDocument(file);
    up()->onGenerate();
    screenLines();
    const FileSizeLimit limit(10);
    up()->onButtonSave();
    EXPECT_TRUE(root->isOccupied());
    EXPECT_EQ(screenLines(),
              (Lines{"MIDISequencer::stop() : The sequencer was stopped.",
                     "MIDIDocumentViewController::viewDidDisappear() : Error closing document.",
                     "sequencer state: stop"}));
    EXPECT_EQ(host->alertTexts(), Lines{alertOf(full)});
    EXPECT_EQ(root->unsavedDocument(), up()->document());
    EXPECT_TRUE(root->isPresenting);
    EXPECT_EQ(bytesOf(file), smallFile());
}

TEST_F(UnsavedDocument, IsOfferedByItsNameAsTextWhereThatHasOtherBytes)
{
    const fs::path odd = writeDocument("a\xE9\n.mid");
    makeRoot();
    root->presentDocument(odd);
    up()->onGenerate();
    const FileSizeLimit limit(10);
    up()->onButtonSave();
    screenLines();
    const std::string shown = "'" + (odd.parent_path() / "aé .mid").string() + "'";
    EXPECT_EQ(host->alertTexts(),
              Lines{"File Error: Error: " + shown + " could not be written: " + full +
                    ". Could not save file " + shown + ". With OK, what was not saved is lost. [Retry, OK]"});
}

TEST_F(UnsavedDocument, IsWrittenByARetry)
{
    leaveWhileFull();
    host->press("Retry");
    EXPECT_EQ(bytesOf(file), last);
    EXPECT_EQ(root->unsavedDocument(), nullptr);
    EXPECT_EQ(host->alerts.size(), 0U);
    EXPECT_FALSE(root->isOccupied());
    EXPECT_EQ(root->selection(), file);
}

TEST_F(UnsavedDocument, IsOfferedAgainWhereTheRetryFails)
{
    leaveWhileFull();
    {
        const FileSizeLimit limit(10);
        host->press("Retry");
        EXPECT_EQ(host->alertTexts(), Lines{alertOf(full)});
    }
    host->press("Retry");
    EXPECT_EQ(bytesOf(file), last);
}

TEST_F(UnsavedDocument, IsClosedInSilenceWhereItIsWrittenMeanwhile)
{
    makeRoot();
    root->presentDocument(file);
    up()->onGenerate();
    last = up()->document()->data;
    screenLines();
    {
        const FileSizeLimit limit(10);
        up()->onButtonSave();
    }
    mainQueue().drain();
    EXPECT_EQ(bytesOf(file), last);
    EXPECT_EQ(host->alerts.size(), 0U);
    EXPECT_EQ(root->unsavedDocument(), nullptr);
    EXPECT_FALSE(root->isOccupied());
}

TEST_F(UnsavedDocument, IsDroppedByTheUsersWordAlone)
{
    leaveWhileFull();
    host->press("OK");
    EXPECT_EQ(root->unsavedDocument(), nullptr);
    EXPECT_FALSE(root->isOccupied());
    mainQueue().drain();
    EXPECT_EQ(bytesOf(file), smallFile());
    EXPECT_NE(up()->document()->documentState() & UIDocumentState::closed, 0);
}

TEST_F(UnsavedDocument, IsSavedElsewhereWhereThereIsAPlace)
{
    fs::path proposed;
    std::function<void(std::optional<fs::path>)> answer;
    leaveWhileFull();
    host->press("Retry");
    root->presentDocument(file);
    root->askForPlace = [&](const fs::path& proposal, std::function<void(std::optional<fs::path>)> chosen) {
        proposed = proposal;
        answer = std::move(chosen);
    };
    up()->onGenerate();
    last = up()->document()->data;
    {
        const FileSizeLimit limit(10);
        up()->onButtonSave();
        mainQueue().drain();
    }
    EXPECT_EQ(host->alertTexts(), Lines{alertOf(full, "[Retry, Save As, OK]")});
    host->press("Save As");
    EXPECT_EQ(proposed, file);
    EXPECT_TRUE(root->isPresenting);
    answer(std::nullopt);
    EXPECT_EQ(host->alerts.size(), 1U);
    host->press("Save As");
    answer(documents / "Elsewhere.mid");
    EXPECT_EQ(bytesOf(documents / "Elsewhere.mid"), last);
    EXPECT_EQ(root->unsavedDocument(), nullptr);
    EXPECT_EQ(root->selection(), documents / "Elsewhere.mid");
    EXPECT_FALSE(root->isPresenting);
}

TEST_F(UnsavedDocument, IsOfferedAgainWhereThePlaceIsNoGood)
{
    leaveWhileFull();
    root->askForPlace = [&](const fs::path&, const std::function<void(std::optional<fs::path>)>& chosen) {
        chosen(home.path / "no/folder/a.mid");
    };
    host->alerts.clear();
    root->keepUnsavedDocument(root->unsavedDocument());
    mainQueue().drain();
    host->press("Save As");
    EXPECT_EQ(host->alerts.size(), 1U);
    EXPECT_NE(root->unsavedDocument(), nullptr);
    host->press("Retry");
    EXPECT_EQ(bytesOf(file), last);
}

TEST_F(UnsavedDocument, LetsNoOtherTakeItsPlace)
{
    const fs::path other = writeDocument("Other.mid");
    makeRoot();
    root->presentDocument(file);
    up()->onGenerate();
    screenLines();
    const FileSizeLimit limit(10);
    up()->onButtonSave();
    root->presentDocument(other);
    const Lines lines = screenLines();
    EXPECT_EQ(std::ranges::count(lines, warning), 1);
    EXPECT_NE(root->unsavedDocument(), nullptr);
    EXPECT_EQ(root->waitingLine(), "'Other' waits to be opened.");
    host->press("OK");
    root->openWaitingDocument();
    EXPECT_EQ(up()->title, "Other");
}

TEST_F(UnsavedDocument, IsKeptWhereItsFolderIsReadOnly)
{
    if (geteuid() == 0) {
        GTEST_SKIP() << "who may do everything writes into every folder";
    }
    makeRoot();
    root->presentDocument(file);
    up()->onGenerate();
    last = up()->document()->data;
    fs::permissions(documents, fs::perms::owner_read | fs::perms::owner_exec);
    up()->onButtonSave();
    mainQueue().drain();
    fs::permissions(documents, fs::perms::owner_all);
    EXPECT_EQ(host->alertTexts(), Lines{alertOf("its folder is not writable")});
    host->press("Retry");
    EXPECT_EQ(bytesOf(file), last);
}

TEST_F(UnsavedDocument, ComesBackWhereItsFileVanished)
{
    makeRoot();
    root->presentDocument(file);
    up()->onGenerate();
    last = up()->document()->data;
    fs::remove(file);
    up()->onButtonSave();
    EXPECT_EQ(bytesOf(file), last);
    EXPECT_EQ(host->alerts.size(), 0U);
}

TEST_F(UnsavedDocument, IsKeptWhereItsWholeFolderVanished)
{
    makeRoot();
    root->presentDocument(file);
    up()->onGenerate();
    last = up()->document()->data;
    fs::remove_all(documents);
    up()->onButtonSave();
    mainQueue().drain();
    EXPECT_EQ(host->alertTexts(), Lines{alertOf("its folder does not exist")});
    fs::create_directories(documents);
    host->press("Retry");
    EXPECT_EQ(bytesOf(file), last);
    EXPECT_EQ(root->selection(), file);
}

TEST_F(UnsavedDocument, IsSavedBeforeTheEnd)
{
    leaveWhileFull();
    root->prepareForEnd();
    EXPECT_EQ(bytesOf(file), last);
    EXPECT_EQ(root->unsavedDocument(), nullptr);
}

TEST_F(UnsavedDocument, IsKeptAsAVersionWhereTheEndComesFirst)
{
    setenv("XDG_STATE_HOME", (home.path / ".state").c_str(), 1);
    leaveWhileFull();
    fs::remove_all(documents);
    root->prepareForEnd();
    const auto versions = NSFileVersion::otherVersionsOfItemAtURL(file);
    EXPECT_EQ(root->unsavedDocument(), nullptr);
    EXPECT_EQ(versions->size(), 1U);
    EXPECT_EQ(bytesOf(versions->at(0)->url()), last);
    unsetenv("XDG_STATE_HOME");
}

TEST_F(UnsavedDocument, IsSpokenOfAtTheNextOpeningWhereItWasKept)
{
    const fs::path state = home.path / ".state";
    setenv("XDG_STATE_HOME", state.c_str(), 1);
    leaveWhileFull();
    fs::remove_all(documents);
    root->prepareForEnd();
    host->press("OK");
    writeDocument("Slow tide.mid");
    makeRoot();
    root->presentDocument(file);
    const fs::path kept = state / "volvelle/versions/kept" / fs::canonical(file).relative_path();
    EXPECT_EQ(root->quietLine(), "Another version of 'Slow tide' is kept in '" + kept.string() + "'.");
    EXPECT_EQ(bytesOf(kept / "version 1.mid"), last);
    up()->onButtonDone();
    mainQueue().drain();
    root->tellQuietly("");
    root->presentDocument(file);
    EXPECT_EQ(root->quietLine(), "");
    unsetenv("XDG_STATE_HOME");
}

TEST_F(UnsavedDocument, StaysWhereNothingCanKeepIt)
{
    leaveWhileFull();
    const FileSizeLimit limit(10);
    root->prepareForEnd();
    EXPECT_NE(root->unsavedDocument(), nullptr);
    const Lines lines = screenLines();
    EXPECT_EQ(std::ranges::count_if(lines,
                                    [](const std::string& line) {
                                        return line.starts_with(told("prepareForEnd() : Error: "));
                                    }),
              1);
}

TEST_F(UnsavedDocument, IsStillTheUsersAfterAnEndThatDidNotCome)
{
    leaveWhileFull();
    root->prepareForQuestion();
    EXPECT_EQ(bytesOf(file), last);
    EXPECT_TRUE(root->isOccupied());
    host->press("Retry");
    EXPECT_EQ(root->unsavedDocument(), nullptr);
    EXPECT_FALSE(root->isOccupied());
    EXPECT_EQ(root->selection(), file);
}

TEST_F(UnsavedDocument, IsKeptOnceAsAVersionHoweverOftenTheEndIsSpokenOf)
{
    setenv("XDG_STATE_HOME", (home.path / ".state").c_str(), 1);
    leaveWhileFull();
    fs::remove_all(documents);
    root->prepareForQuestion();
    root->prepareForQuestion();
    host->press("Retry");
    EXPECT_EQ(host->alerts.size(), 1U);
    EXPECT_NE(root->unsavedDocument(), nullptr);
    root->prepareForEnd();
    EXPECT_EQ(NSFileVersion::otherVersionsOfItemAtURL(file)->size(), 1U);
    EXPECT_EQ(root->unsavedDocument(), nullptr);
    unsetenv("XDG_STATE_HOME");
}

TEST_F(UnsavedDocument, IsSavedElsewhereAfterAnEndThatDidNotCome)
{
    setenv("XDG_STATE_HOME", (home.path / ".state").c_str(), 1);
    leaveWhileFull();
    fs::remove_all(documents);
    root->prepareForQuestion();
    const fs::path elsewhere = home.path / "Elsewhere.mid";
    root->askForPlace = [&](const fs::path&, const std::function<void(std::optional<fs::path>)>& chosen) {
        chosen(elsewhere);
    };
    host->press("Retry");
    host->press("Save As");
    EXPECT_EQ(bytesOf(elsewhere), last);
    EXPECT_EQ(root->unsavedDocument(), nullptr);
    unsetenv("XDG_STATE_HOME");
}

TEST_F(UnsavedDocument, IsNotReachedByAnAnswerAfterTheEnd)
{
    std::function<void(std::optional<fs::path>)> answer;
    leaveWhileFull();
    root->askForPlace = [&](const fs::path&, std::function<void(std::optional<fs::path>)> chosen) {
        answer = std::move(chosen);
    };
    {
        const FileSizeLimit limit(10);
        host->press("Retry");
    }
    const UIAlertController alert = host->alerts.back();
    host->press("Save As");
    root->prepareForEnd();
    answer(std::nullopt);
    answer(documents / "Elsewhere.mid");
    for (const UIAlertAction& action : alert.actions) {
        action.handler();
    }
    EXPECT_EQ(bytesOf(file), last);
    EXPECT_FALSE(fs::exists(documents / "Elsewhere.mid"));
    EXPECT_TRUE(host->alerts.empty());
}

TEST_F(UnsavedDocument, TheEndStopsTheMusic)
{
    makeRoot();
    root->presentDocument(file);
    up()->onButtonPlay();
    screenLines();
    root->prepareForEnd();
    EXPECT_FALSE(up()->isPlaying());
    EXPECT_EQ(screenLines().front(), "MIDISequencer::stop() : The sequencer was stopped.");
}

TEST_F(UnsavedDocument, WithAnAlertThatOutlivesTheRootScreenDoesNothing)
{
    leaveWhileFull();
    root.reset();
    host->press("Retry");
    EXPECT_EQ(bytesOf(file), smallFile());
}

} // namespace

} // namespace volvelle::test
