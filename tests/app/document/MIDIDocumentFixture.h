#pragma once

#include "app/document/MIDIDocument.h"
#include "tests/phrases/PhraseFiles.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace volvelle::test {

// A screen that notes what a document tells it.
class RecordingScreen : public MIDIDocumentDelegate {
public:
    std::vector<std::string> calls;
    std::vector<std::uint8_t> played;

    void midiDocumentUpdateEvents(const std::vector<std::shared_ptr<AUMIDIEventEx>>& events) override
    {
        calls.push_back("update " + std::to_string(events.size()));
    }

    void midiDocumentPlaySequence(const std::vector<std::uint8_t>& data) override
    {
        calls.push_back("play");
        played = data;
    }
};

// A phrase library, a folder for documents and one for the state of the program.
class MIDIDocuments : public testing::Test {
protected:
    using Lines = std::vector<std::string>;

    MIDIDocuments()
    {
        setenv("XDG_STATE_HOME", states.path.c_str(), 1);
        library.fill();
    }

    ~MIDIDocuments() override { unsetenv("XDG_STATE_HOME"); }

    // The bytes of a file of three notes on two channels.
    static std::vector<std::uint8_t> smallFile();

    // What the document writes meanwhile, without the ends of tracks.
    Lines takeLines() { return withoutTrackEnds(console.take()); }

    // What loading a sequence writes on its way: of the empty arrangement, and of the empty tempo track.
    const Lines sequenceLines{"MIDIClipGenerator::makeArrangement()",
                              "Arranger::makeSequence() : There are no events for mixing.",
                              "MIDISequence::Warnung: Die Spur enthält keine Daten."};

    TemporaryFolder folder;
    TemporaryFolder states;
    PhraseLibrary library;
    ConsoleCapture console;
    std::shared_ptr<RecordingScreen> screen = std::make_shared<RecordingScreen>();
};

// Sets a document's state as its base would.
void setState(UIDocument& document, int state);

// What each operation's completion is told.
bool opens(UIDocument& document);
bool closes(UIDocument& document);
bool saves(UIDocument& document, UIDocumentSaveOperation operation = UIDocumentSaveOperation::forOverwriting);

// "24000 90 3C 64" for each event.
std::vector<std::string> textsOf(const std::vector<std::shared_ptr<AUMIDIEventEx>>& events);

} // namespace volvelle::test
