#include "app/document/DocumentBrowser.h"
#include "services/files/MoveFile.h"
#include "services/files/SafeFile.h"
#include "services/musicsequence/FaultPoint.h"
#include "tests/app/document/MIDIDocumentFixture.h"
#include "tests/phrases/PhraseMaking.h"

#include "base/FatalStop.h"

#include <filesystem>
#include <limits>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

class StillBrowser : public DocumentBrowser {
public:
    std::optional<double> beats;

    std::optional<double> playingBeats() const override { return beats; }

    void stopEngine() override {}
};

// MARK: New documents

TEST_F(MIDIDocuments, ANewDocumentIsAnArrangementInAFolderOfItsOwn)
{
    auto document = MIDIDocument::make();
    const auto other = MIDIDocument::make();
    const fs::path place = document->fileURL().parent_path();
    EXPECT_EQ(document->fileURL().filename(), "New MIDI Idea.mid");
    EXPECT_NE(document->fileURL(), other->fileURL());
    EXPECT_EQ(fs::status(place).permissions(), fs::perms::owner_all);
    EXPECT_TRUE(document->data);
    EXPECT_FALSE(document->getEvents().empty());
    EXPECT_EQ(document->loadProgress.totalUnitCount, 10);
    EXPECT_EQ(document->documentState(), UIDocumentState::closed);
    document.reset();
    EXPECT_FALSE(fs::exists(place));
}

TEST_F(MIDIDocuments, ANewDocumentIsSavedClosedAndMovedAway)
{
    const auto document = MIDIDocument::make();
    console.take();
    EXPECT_TRUE(saves(*document, UIDocumentSaveOperation::forCreating));
    EXPECT_TRUE(closes(*document));
    EXPECT_EQ(console.take(), (Lines{"MIDIDocument::contents()", " - type: audio/midi",
                                     "MIDIDocument::updateDocumentState() : Document entered normal state.",
                                     "MIDIDocument::updateDocumentState() : Document has been closed."}));
    EXPECT_EQ(moveFile(document->fileURL(), folder.path / "a.mid"), noErr);
    std::vector<std::uint8_t> bytes;
    EXPECT_EQ(readFile(folder.path / "a.mid", bytes), noErr);
    EXPECT_EQ(bytes, document->data);
}

TEST_F(MIDIDocuments, ADocumentOnALocationHasNoContentUntilItIsOpened)
{
    const auto document = MIDIDocument::make(folder.path / "a.mid");
    EXPECT_FALSE(document->data);
    EXPECT_TRUE(document->getEvents().empty());
    EXPECT_EQ(console.take(), Lines{});
}

// MARK: Generating

TEST_F(MIDIDocuments, GeneratingWithoutADelegateGivesBytesAndEvents)
{
    const auto document = MIDIDocument::make(folder.path / "a.mid");
    const auto bytes = document->generateMIDIFile();
    ASSERT_TRUE(bytes);
    EXPECT_FALSE(document->data);
    EXPECT_FALSE(document->getEvents().empty());
    const std::vector<std::uint8_t> head(bytes->begin(), bytes->begin() + 14);
    EXPECT_EQ(head, (std::vector<std::uint8_t>{'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1, 0, 17, 0x01, 0xE0}));
}

TEST_F(MIDIDocuments, GeneratingShowsAndPlaysTheArrangement)
{
    const auto document = MIDIDocument::make(folder.path / "a.mid");
    document->delegate = screen;
    const auto bytes = document->generateMIDIFile();
    EXPECT_EQ(screen->calls, (Lines{"update " + std::to_string(document->getEvents().size()), "play"}));
    EXPECT_EQ(screen->played, bytes);
}

TEST_F(MIDIDocuments, ADelegateThatIsGoneIsNotCalled)
{
    const auto document = MIDIDocument::make(folder.path / "a.mid");
    document->delegate = screen;
    screen.reset();
    EXPECT_TRUE(document->generateMIDIFile());
}

TEST_F(MIDIDocuments, AFailedConversionIsToldAndGivesNothing)
{
    const auto document = MIDIDocument::make(folder.path / "a.mid");
    document->generateMIDIFile();
    console.take();
    setFault(MusicSequenceOperation::MusicSequenceFileCreateData, {-7});
    EXPECT_EQ(document->generateMIDIFile(), std::nullopt);
    const Lines lines = console.take();
    EXPECT_EQ(std::ranges::count(lines, "MIDIDocument::sequenceData() : Error: Could not convert music "
                                        "sequence to data. Status: -7"),
              1);
    EXPECT_FALSE(document->getEvents().empty());
    clearFaults();
}

TEST_F(MIDIDocuments, AConversionWithoutDataGivesNothing)
{
    const auto document = MIDIDocument::make(folder.path / "a.mid");
    setFault(MusicSequenceOperation::MusicSequenceFileCreateData, {});
    EXPECT_EQ(document->generateMIDIFile(), std::nullopt);
    clearFaults();
}

TEST_F(MIDIDocuments, AnArrangementWithoutASequenceIsToldAndGivesNothing)
{
    const auto document = MIDIDocument::make(folder.path / "a.mid");
    setFault(MusicSequenceOperation::NewMusicSequence, {-7, 0, -1});
    EXPECT_EQ(document->generateMIDIFile(), std::nullopt);
    clearFaults();
    EXPECT_EQ(console.take().back(), "MIDIDocument::generateMIDIFile() : Error: MusicSequence is nil.");
}

using MIDIDocumentsDeathTest = MIDIDocuments;

TEST_F(MIDIDocumentsDeathTest, AnArrangementWithoutBytesIsNotPlayed)
{
    const auto document = MIDIDocument::make(folder.path / "a.mid");
    document->delegate = screen;
    setFault(MusicSequenceOperation::MusicSequenceFileCreateData, {-7});
    EXPECT_DEATH(document->generateMIDIFile(), onlyLine(nilMessage));
    clearFaults();
}

// MARK: Beats

TEST_F(MIDIDocuments, TheCircleShowsWholeBeatsAndNeverFewerThanSixteen)
{
    const auto document = MIDIDocument::make(folder.path / "a.mid");
    EXPECT_EQ(document->getBeatCount(), 16.0);
    auto browser = std::make_shared<StillBrowser>();
    browserViewController = browser;
    EXPECT_EQ(document->getBeatCount(), 16.0);
    for (const auto& [beats, shown] : {std::pair(12.5, 16.0), std::pair(16.9, 16.0), std::pair(17.0, 17.0),
                                       std::pair(17.9, 17.0), std::pair(-1.0, 16.0), std::pair(4e9, 4e9)}) {
        browser->beats = beats;
        EXPECT_EQ(document->getBeatCount(), shown) << beats;
    }
    browser.reset();
    EXPECT_EQ(document->getBeatCount(), 16.0);
}

TEST_F(MIDIDocumentsDeathTest, AnEndlessCountOfBeatsIsAStop)
{
    const auto document = MIDIDocument::make(folder.path / "a.mid");
    const auto browser = std::make_shared<StillBrowser>();
    browser->beats = std::numeric_limits<double>::infinity();
    browserViewController = browser;
    EXPECT_DEATH(document->getBeatCount(), onlyLine(conversionMessage));
}

} // namespace

} // namespace volvelle::test
