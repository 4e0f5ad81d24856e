#include "services/documents/NSFileVersion.h"
#include "services/files/SafeFile.h"
#include "tests/app/document/MIDIDocumentFixture.h"

#include <filesystem>
#include <string_view>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

class MIDIDocumentState : public MIDIDocuments {
protected:
    MIDIDocumentState()
    {
        EXPECT_TRUE(opens(*document));
        console.take();
    }

    Lines linesOf(int state)
    {
        setState(*document, state);
        return console.take();
    }

    static std::string told(std::string_view words)
    {
        return std::string("MIDIDocument::updateDocumentState() : ").append(words);
    }

    const std::string normal = told("Document entered normal state.");
    const std::string conflict = told("A docuent conflict was detected and must be resolved.");
    const std::string transfer = "MIDIDocument::handleDocStateForTransfers() : A transfer is in progress.";
    const fs::path file = folder.write("a.mid", smallFile());
    const std::shared_ptr<MIDIDocument> document = MIDIDocument::make(file);
};

TEST_F(MIDIDocumentState, EachStateThatAppliesHasItsLine)
{
    EXPECT_EQ(linesOf(UIDocumentState::editingDisabled), Lines{told("Document's editing is disabled.")});
    EXPECT_EQ(linesOf(UIDocumentState::normal), Lines{normal});
    EXPECT_EQ(linesOf(UIDocumentState::savingError), Lines{told("Error: Document saving error.")});
    EXPECT_EQ(linesOf(UIDocumentState::closed), Lines{told("Document has been closed.")});
    EXPECT_EQ(linesOf(31), (Lines{told("Document has been closed."), told("Document's editing is disabled."),
                                  conflict, told("Error: Document saving error."), transfer}));
}

TEST_F(MIDIDocumentState, ATransferIsToldOnceUntilItEnds)
{
    constexpr int transferring = UIDocumentState::progressAvailable;
    EXPECT_EQ(linesOf(transferring), Lines{transfer});
    EXPECT_EQ(linesOf(transferring | UIDocumentState::editingDisabled),
              Lines{told("Document's editing is disabled.")});
    EXPECT_EQ(linesOf(UIDocumentState::normal), Lines{normal});
    EXPECT_EQ(linesOf(transferring), Lines{transfer});
}

TEST_F(MIDIDocumentState, ADocumentHearsOfItsOwnStateAlone)
{
    const auto other = MIDIDocument::make(folder.path / "b.mid");
    EXPECT_EQ(linesOf(UIDocumentState::closed).size(), 1U);
    setState(*other, UIDocumentState::normal);
    EXPECT_EQ(console.take(), Lines{normal});
}

TEST_F(MIDIDocumentState, AConflictIsResolvedByTheOpenDocument)
{
    folder.write("a.mid", "theirs");
    EXPECT_TRUE(saves(*document));
    EXPECT_EQ(console.take(), (Lines{"MIDIDocument::contents()", " - type: audio/midi", conflict, normal}));
    EXPECT_EQ(document->documentState(), UIDocumentState::normal);
    EXPECT_EQ(NSFileVersion::otherVersionsOfItemAtURL(file).value().size(), 0U);
    std::vector<std::uint8_t> bytes;
    EXPECT_EQ(readFile(states.path / "volvelle/versions/kept" / fs::canonical(file).relative_path() /
                           "version 1.mid",
                       bytes),
              noErr);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "theirs");
    EXPECT_EQ(readFile(file, bytes), noErr);
    EXPECT_EQ(bytes, smallFile());
}

TEST_F(MIDIDocumentState, AConflictThatCannotBeResolvedIsToldAndMetAgain)
{
    states.write("volvelle/versions/kept", "no folder");
    folder.write("a.mid", "theirs");
    EXPECT_TRUE(saves(*document));
    const fs::path kept = states.path / "volvelle/versions/kept" / fs::canonical(file).relative_path();
    const std::string line = "'" + kept.string() + "' could not be written: its folder does not exist.";
    EXPECT_EQ(console.take(),
              (Lines{"MIDIDocument::contents()", " - type: audio/midi", conflict, line, normal}));
    EXPECT_EQ(document->documentState(), UIDocumentState::normal);
    closes(*document);
    fs::remove(states.path / "volvelle/versions/kept");
    console.take();
    EXPECT_TRUE(opens(*document));
    Lines lines{"MIDIDocument::read()", "MIDIDocument::load() :", " - url: " + file.string(),
                " - type: audio/midi"};
    lines.insert(lines.end(), sequenceLines.begin(), sequenceLines.end());
    lines.insert(lines.end(), {conflict, normal});
    EXPECT_EQ(takeLines(), lines);
    EXPECT_EQ(NSFileVersion::otherVersionsOfItemAtURL(file).value().size(), 0U);
}

TEST_F(MIDIDocumentState, ASaveThatFailsKeepsTheDocumentOpen)
{
    document->updateChangeCount(UIDocumentChangeKind::done);
    fs::remove_all(folder.path);
    EXPECT_FALSE(closes(*document));
    EXPECT_EQ(console.take(),
              (Lines{"MIDIDocument::contents()", " - type: audio/midi", told("Error: Document saving error."),
                     "MIDIDocument::handleError() : Error: '" + file.string() +
                         "' could not be written: its folder does not exist.",
                     "MIDIDocument::contents()", " - type: audio/midi",
                     "MIDIDocument::handleError() : Error: '" + file.string() +
                         "' could not be written: its folder does not exist."}));
    EXPECT_EQ(document->documentState(), UIDocumentState::savingError);
    EXPECT_TRUE(document->hasUnsavedChanges());
}

TEST_F(MIDIDocumentState, AGeneratedArrangementIsSavedOnlyWhenItIsAskedFor)
{
    document->data = document->generateMIDIFile();
    document->updateChangeCount(UIDocumentChangeKind::cleared);
    EXPECT_TRUE(closes(*document));
    std::vector<std::uint8_t> bytes;
    EXPECT_EQ(readFile(file, bytes), noErr);
    EXPECT_EQ(bytes, smallFile());
    EXPECT_TRUE(opens(*document));
    document->data = document->generateMIDIFile();
    const auto generated = document->data;
    document->updateChangeCount(UIDocumentChangeKind::done);
    EXPECT_TRUE(closes(*document));
    EXPECT_EQ(readFile(file, bytes), noErr);
    EXPECT_EQ(bytes, generated);
}

} // namespace

} // namespace volvelle::test
