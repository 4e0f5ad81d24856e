#include "app/document/MIDIDocument.h"

#include "app/document/CircleBeats.h"
#include "app/document/DocumentBrowser.h"
#include "base/Console.h"
#include "services/documents/NSFileVersion.h"

#include <array>
#include <string_view>
#include <utility>

namespace volvelle {

namespace {

constexpr const char* newName = "New MIDI Idea.mid";

struct StateLine {
    int bit;
    std::string_view line;
};

constexpr std::array stateLines{
    StateLine{UIDocumentState::closed, "Document has been closed."},
    StateLine{UIDocumentState::editingDisabled, "Document's editing is disabled."},
    StateLine{UIDocumentState::inConflict, "A docuent conflict was detected and must be resolved."},
    StateLine{UIDocumentState::savingError, "Error: Document saving error."},
};

void printState(std::string_view line)
{
    directPrint(std::string("MIDIDocument::updateDocumentState() : ").append(line));
}

} // namespace

MIDIDocument::MIDIDocument(const std::filesystem::path& fileURL) : UIDocument(fileURL) {}

std::shared_ptr<MIDIDocument> MIDIDocument::make()
{
    auto folder = std::make_unique<PrivateFolder>();
    const auto document = make(folder->path() / newName);
    document->folder = std::move(folder);
    document->data = document->generateMIDIFile();
    return document;
}

std::shared_ptr<MIDIDocument> MIDIDocument::make(const std::filesystem::path& fileURL)
{
    const std::shared_ptr<MIDIDocument> document(new MIDIDocument(fileURL));
    document->docStateObserver = defaultNotificationCenter().addObserver(
        UIDocumentStateChangedNotification, static_cast<UIDocument*>(document.get()),
        [observer = std::weak_ptr(document)](const void* /*object*/) {
            if (const auto listener = observer.lock()) {
                listener->updateDocumentState();
            }
        });
    return document;
}

std::vector<std::shared_ptr<AUMIDIEventEx>> MIDIDocument::getEvents()
{
    return fileEvents;
}

double MIDIDocument::getBeatCount()
{
    const auto browser = browserViewController.lock();
    return circleBeats(browser ? browser->playingBeats().value_or(0.0) : 0.0);
}

// MARK: State

void MIDIDocument::updateDocumentState()
{
    const int state = documentState();
    if (state == UIDocumentState::normal) {
        printState("Document entered normal state.");
    }
    for (const auto& [bit, line] : stateLines) {
        if ((state & bit) == 0) {
            continue;
        }
        printState(line);
        if (bit == UIDocumentState::inConflict) {
            resolveDocumentConflict();
        }
    }
    handleDocStateForTransfers();
}

void MIDIDocument::handleDocStateForTransfers()
{
    const bool isAvailable = (documentState() & UIDocumentState::progressAvailable) != 0;
    if (isAvailable && !transfering) {
        directPrint("MIDIDocument::handleDocStateForTransfers() : A transfer is in progress.");
    }
    transfering = isAvailable;
}

void MIDIDocument::resolveDocumentConflict()
{
    if (const auto removed = NSFileVersion::removeOtherVersionsOfItemAtURL(fileURL()); !removed) {
        directPrint(removed.error());
        return;
    }
    const auto versions = NSFileVersion::unresolvedConflictVersionsOfItemAtURL(fileURL());
    if (!versions) {
        return;
    }
    for (const auto& version : *versions) {
        version->setResolved(true);
    }
}

void MIDIDocument::handleError(const std::string& error, bool /*userInteractionPermitted*/)
{
    directPrint("MIDIDocument::handleError() : Error: ", error);
}

} // namespace volvelle
