#include "services/files/SafeFile.h"
#include "services/musicsequence/FaultPoint.h"
#include "tests/app/document/MIDIDocumentFixture.h"

#include <algorithm>
#include <filesystem>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

// The events at the nearest ticks of a file, sorted: an end stands between them at first.
std::vector<std::string> onTicks(MIDIDocument& document)
{
    constexpr std::int64_t tick = 50; // samples
    auto events = document.getEvents();
    for (const auto& event : events) {
        std::int64_t& time = event->pEvent()->eventSampleTime;
        time = (time + tick / 2) / tick * tick;
    }
    auto texts = textsOf(events);
    std::ranges::sort(texts);
    return texts;
}

class MIDIDocumentLoading : public MIDIDocuments {
protected:
    // What the start of each loading writes.
    static Lines loadLines(const fs::path& url, const Lines& rest, const char* type = "audio/midi")
    {
        Lines lines{"MIDIDocument::read()", "MIDIDocument::load() :", " - url: " + url.string(),
                    std::string(" - type: ") + type};
        lines.insert(lines.end(), rest.begin(), rest.end());
        lines.emplace_back("MIDIDocument::updateDocumentState() : Document entered normal state.");
        return lines;
    }

    std::shared_ptr<MIDIDocument> documentOf(const std::vector<std::uint8_t>& bytes)
    {
        const auto document = MIDIDocument::make(folder.write("a.mid", bytes));
        document->delegate = screen;
        return document;
    }

    const fs::path file = folder.path / "a.mid";
};

TEST_F(MIDIDocumentLoading, OpeningShowsAndPlaysTheFile)
{
    const auto document = documentOf(smallFile());
    EXPECT_TRUE(opens(*document));
    EXPECT_EQ(takeLines(), loadLines(file, sequenceLines));
    EXPECT_EQ(screen->calls, (Lines{"update 6", "play"}));
    EXPECT_EQ(screen->played, smallFile());
    EXPECT_EQ(document->data, smallFile());
    EXPECT_EQ(textsOf(document->getEvents()), (Lines{"0 144 60 100", "24000 128 60 0", "24000 145 64 90",
                                                     "48000 129 64 0", "48000 144 62 80", "60000 128 62 0"}));
}

TEST_F(MIDIDocumentLoading, AnEmptyFileLeavesTheDocumentWithoutEvents)
{
    const auto document = documentOf({});
    EXPECT_TRUE(opens(*document));
    EXPECT_EQ(takeLines(), loadLines(file, {"MIDIDocument::sequenceFromData() : Error: Could not populate "
                                            "music sequence with data. Status: -10870",
                                            "MIDIDocument::load() : Error: MusicSequence is nil."}));
    EXPECT_EQ(screen->calls, Lines{});
    EXPECT_EQ(document->data, std::vector<std::uint8_t>());
}

TEST_F(MIDIDocumentLoading, AFileThatIsNoMIDIFileKeepsItsBytes)
{
    const auto document = documentOf({'n', 'o'});
    EXPECT_TRUE(opens(*document));
    document->updateChangeCount(UIDocumentChangeKind::done);
    EXPECT_TRUE(closes(*document));
    std::vector<std::uint8_t> bytes;
    EXPECT_EQ(readFile(file, bytes), noErr);
    EXPECT_EQ(bytes, (std::vector<std::uint8_t>{'n', 'o'}));
}

TEST_F(MIDIDocumentLoading, WithoutANewSequenceNothingIsLoaded)
{
    const auto document = documentOf(smallFile());
    setFault(MusicSequenceOperation::NewMusicSequence, {-7});
    EXPECT_TRUE(opens(*document));
    clearFaults();
    EXPECT_EQ(takeLines(),
              loadLines(file, {"MIDIDocument::sequenceFromData() : Error: Could not create a new "
                               "music sequence. Status: -7",
                               "MIDIDocument::load() : Error: MusicSequence is nil."}));
    EXPECT_EQ(screen->calls, Lines{});
}

TEST_F(MIDIDocumentLoading, ContentsThatAreNoBytesLeaveTheDocumentWithoutData)
{
    const auto document = MIDIDocument::make(folder.path);
    document->data = smallFile();
    EXPECT_TRUE(opens(*document));
    EXPECT_EQ(takeLines(), loadLines(folder.path,
                                     {"MIDIDocument::load() : Error: the folder '" + folder.path.string() +
                                      "' is not an instance of NSData."},
                                     "?"));
    EXPECT_FALSE(document->data);
}

TEST_F(MIDIDocumentLoading, AMissingFileIsToldAndLeavesTheDocumentClosed)
{
    const auto document = MIDIDocument::make(file);
    EXPECT_FALSE(opens(*document));
    EXPECT_EQ(takeLines(),
              (Lines{"MIDIDocument::read()", "MIDIDocument::handleError() : Error: '" + file.string() +
                                                 "' could not be read: it does not exist."}));
    EXPECT_EQ(document->documentState(), UIDocumentState::closed);
}

TEST_F(MIDIDocumentLoading, ASecondLoadingReplacesTheEventsOfTheFirst)
{
    const auto document = documentOf(smallFile());
    opens(*document);
    EXPECT_TRUE(document->load({std::vector<std::uint8_t>(), {}}, std::nullopt));
    EXPECT_TRUE(document->getEvents().empty());
}

TEST_F(MIDIDocumentLoading, ADocumentWithoutDataIsNotSaved)
{
    const auto document = documentOf(smallFile());
    opens(*document);
    takeLines();
    document->data.reset();
    EXPECT_EQ(document->contents("a type").has_value(), false);
    EXPECT_EQ(takeLines(), (Lines{"MIDIDocument::contents()", " - type: a type",
                                  "MIDIDocument::contents() : Error: Data is nil."}));
    EXPECT_FALSE(saves(*document));
    EXPECT_EQ(takeLines(), (Lines{"MIDIDocument::contents()", " - type: audio/midi",
                                  "MIDIDocument::contents() : Error: Data is nil.",
                                  "MIDIDocument::updateDocumentState() : Error: Document saving error.",
                                  "MIDIDocument::handleError() : Error: '" + file.string() +
                                      "' could not be written: there is nothing to write."}));
    std::vector<std::uint8_t> bytes;
    EXPECT_EQ(readFile(file, bytes), noErr);
    EXPECT_EQ(bytes, smallFile());
}

TEST_F(MIDIDocumentLoading, ADocumentReadsBackTheNotesThatItWrote)
{
    for (int i = 0; i < 20; ++i) {
        const auto written = MIDIDocument::make();
        ASSERT_TRUE(saves(*written, UIDocumentSaveOperation::forCreating));
        const auto read = MIDIDocument::make(written->fileURL());
        ASSERT_TRUE(opens(*read));
        EXPECT_EQ(read->data, written->data);
        EXPECT_EQ(onTicks(*read), onTicks(*written));
        takeLines();
    }
}

} // namespace

} // namespace volvelle::test
