#include "tests/app/control/ScreenFixture.h"
#include "tests/services/files/FileSizeLimit.h"

#include <cmath>

// The whole road of a document, from New to opening it again.
namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

class DocumentRoad : public LogicScreens {
protected:
    DocumentRoad() { makeRoot(); }

    // Puts the music on the clock until it has ended.
    void playToTheEnd()
    {
        for (int seconds = 0; up()->isPlaying() && seconds < 600; ++seconds) {
            goOn(1.0);
        }
        mainQueue().drain();
    }

    // The events with their times in ticks, to which a file rounds them: "119 137 36 0".
    Lines eventsInTicks() const
    {
        constexpr double samplesToTheTick = 50.0;
        Lines events;
        for (const auto& event : up()->document()->getEvents()) {
            const auto time = static_cast<double>(event->pEvent()->eventSampleTime);
            std::string line = text(std::llround(time / samplesToTheTick));
            for (const std::uint8_t byte : event->array()) {
                line += concat(" ", int{byte});
            }
            events.push_back(line);
        }
        return events;
    }

    const fs::path file = documents / "New MIDI Idea.mid";
    const std::string creating = told("documentBrowser() : Creating a new Document.");
};

TEST_F(DocumentRoad, ANewIdeaIsMadeMovedOpenedPlayedChangedSavedAndOpenedAgain)
{
    root->createDocument();
    EXPECT_EQ(screenLines().front(), creating);
    EXPECT_EQ(folder.names(), Lines{});
    EXPECT_EQ(up()->title, "New MIDI Idea");
    EXPECT_EQ(up()->document()->fileURL(), file);
    EXPECT_EQ(root->selection(), file);
    EXPECT_EQ(hiddenButtons(), "Play Save Generate ");
    EXPECT_EQ(up()->contentView->baseClass->currentBeat, 0.0);
    goOn(1.0);
    EXPECT_GT(up()->contentView->baseClass->currentBeat, 1.0);
    playToTheEnd();
    EXPECT_EQ(screenLines().back(), "sequencer finished.");
    EXPECT_EQ(hiddenButtons(), "");
    const auto first = up()->document()->data;
    up()->onGenerate();
    const auto last = up()->document()->data;
    const Lines events = eventsInTicks();
    EXPECT_NE(first, last);
    playToTheEnd();
    up()->onButtonSave();
    mainQueue().drain();
    EXPECT_EQ(bytesOf(file), last);
    EXPECT_EQ(root->selection(), file);
    root->pickSelection();
    EXPECT_TRUE(up()->isUp());
    EXPECT_EQ(up()->document()->data, last);
    EXPECT_EQ(eventsInTicks(), events);
    EXPECT_EQ(host->alerts.size(), 0U);
}

TEST_F(DocumentRoad, ANewIdeaNeverTakesThePlaceOfAnother)
{
    writeDocument("New MIDI Idea.mid");
    root->createDocument();
    EXPECT_EQ(bytesOf(file), smallFile());
    EXPECT_EQ(up()->document()->fileURL(), documents / "New MIDI Idea 2.mid");
    up()->onButtonDone();
    root->createDocument();
    EXPECT_EQ(up()->document()->fileURL(), documents / "New MIDI Idea 3.mid");
}

TEST_F(DocumentRoad, NothingIsMadeWhileADocumentIsUpOrWhereItIsNotAllowed)
{
    root->createDocument();
    console.take();
    root->createDocument();
    up()->onButtonDone();
    root->allowsDocumentCreation = false;
    screenLines();
    root->createDocument();
    EXPECT_EQ(screenLines(), Lines{});
    EXPECT_EQ(root->documents().size(), 1U);
}

TEST_F(DocumentRoad, AnIdeaThatCannotBeWrittenIsTold)
{
    const FileSizeLimit limit(10);
    root->createDocument();
    EXPECT_EQ(screenLines(),
              (Lines{creating, told("documentBrowser() : Error: Unable to create a new document."),
                     "Message: The new idea could not be written."}));
    EXPECT_EQ(host->alertTexts(), Lines{"File Error: File Error The new idea could not be written. [OK]"});
    EXPECT_FALSE(fs::exists(file));
    host->press("OK");
    EXPECT_FALSE(root->isOccupied());
}

TEST_F(DocumentRoad, WithoutPhrasesNothingIsMadeAndNothingIsLost)
{
    const std::string phrase = library.at(leads) + "001.mid";
    const std::string missing = "File Error: File Error The phrase '" + phrase + "' is missing. [OK]";
    root->createDocument();
    const auto before = up()->document()->data;
    fs::remove(phrase);
    up()->onGenerate();
    EXPECT_EQ(up()->document()->data, before);
    EXPECT_EQ(host->alertTexts(), Lines{missing});
    host->press("OK");
    up()->onButtonDone();
    root->createDocument();
    EXPECT_EQ(host->alertTexts(), Lines{missing});
}

TEST_F(DocumentRoad, AnIdeaThatCannotBeMovedIsTold)
{
    fs::remove_all(documents);
    home.write("Documents", "no folder");
    root->createDocument();
    EXPECT_EQ(host->alertTexts(), Lines{"File Error: File Error The folder '" + documents.string() +
                                        "' could not be made. [OK]"});
    EXPECT_EQ(root->documentViewController, nullptr);
}

TEST_F(DocumentRoad, AFileThatVanishedWhileItWasUpStaysGoneAfterDone)
{
    root->createDocument();
    fs::remove(file);
    up()->onButtonDone();
    mainQueue().drain();
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(root->documents().size(), 0U);
    EXPECT_EQ(root->selection(), std::nullopt);
    EXPECT_EQ(host->alerts.size(), 0U);
}

TEST_F(DocumentRoad, GarbageIsNeitherPickedNorImported)
{
    const fs::path garbage = home.write("Documents/Volvelle/Garbage.mid", "no music");
    const fs::path foreign = folder.write("Foreign.mid", "no music");
    root->refresh();
    root->select(garbage);
    root->pickSelection();
    EXPECT_EQ(host->alertTexts(), Lines{"File Error: File Error 'Garbage' is not a MIDI file. [OK]"});
    host->press("OK");
    root->importDocument(foreign);
    EXPECT_EQ(host->alertTexts(),
              Lines{"File Error: Error: 'Foreign' is not a MIDI file. Could not open file '" +
                    foreign.string() + "'. [OK]"});
    EXPECT_FALSE(fs::exists(documents / "Foreign.mid"));
    EXPECT_EQ(root->documentViewController, nullptr);
}

TEST_F(DocumentRoad, TheHandlerIsToldOnceWhatToDo)
{
    Lines answers;
    root->documentBrowserDidRequestDocumentCreation(
        [&answers](const std::optional<fs::path>& location, UIDocumentBrowserImportMode mode) {
            EXPECT_TRUE(location && fs::exists(*location));
            answers.push_back(concat(location.value_or("").filename().string(), " ", static_cast<int>(mode)));
        });
    EXPECT_EQ(answers, Lines{"New MIDI Idea.mid 2"});
    EXPECT_EQ(root->sequencer, nullptr);
    const FileSizeLimit limit(10);
    root->documentBrowserDidRequestDocumentCreation(
        [&answers](const std::optional<fs::path>& location, UIDocumentBrowserImportMode mode) {
            answers.push_back(concat(location ? "some " : "none ", static_cast<int>(mode)));
        });
    EXPECT_EQ(answers.back(), "none 0");
}

} // namespace

} // namespace volvelle::test
