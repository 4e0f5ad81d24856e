#include "app/control/DocumentBrowserViewController.h"
#include "app/control/LocalizedName.h"
#include "base/Checked.h"
#include "base/Console.h"
#include "base/MainQueue.h"
#include "base/PlainText.h"
#include "base/Text.h"

#include "services/documents/NSFileVersion.h"

#include <utility>

// What becomes of a document whose save failed when its screen went.
namespace volvelle {

namespace fs = std::filesystem;

void DocumentBrowserViewController::keepUnsavedDocument(const std::shared_ptr<MIDIDocument>& document)
{
    unsaved = document;
    isUnsavedKept = false;
    mainQueue().post([root = self()] {
        if (root->unsaved && root->unsaved->hasUnsavedChanges()) {
            root->offerUnsaved();
        } else if (root->unsaved) {
            root->closeUnsaved();
        }
    });
}

void DocumentBrowserViewController::offerUnsaved()
{
    std::vector<UIAlertAction> actions{{"Retry", [this] { closeUnsaved(); }}};
    if (askForPlace) {
        actions.push_back({"Save As", [this] { saveUnsavedElsewhere(); }});
    }
    actions.push_back({"OK", [this] { dropUnsaved(); }});
    showAlert("File Error",
              concat("Error: ", plainLine(unsaved->lastError()), " Could not save file '",
                     shownPath(unsaved->fileURL()), "'. With OK, what was not saved is lost."),
              std::move(actions));
}

void DocumentBrowserViewController::dropUnsaved()
{
    if (const auto document = std::exchange(unsaved, nullptr)) {
        document->updateChangeCount(UIDocumentChangeKind::cleared);
        document->closeWithCompletionHandler({});
        refreshAndSelect(document->fileURL());
    }
}

void DocumentBrowserViewController::closeUnsaved()
{
    if (!unsaved) {
        return;
    }
    unsaved->closeWithCompletionHandler([this](bool isClosed) {
        if (isClosed) {
            const auto document = std::exchange(unsaved, nullptr);
            refreshAndSelect(document->fileURL());
        } else {
            offerUnsaved();
        }
    });
}

void DocumentBrowserViewController::prepareForQuestion()
{
    stopSequencer();
    if (unsaved) {
        unsaved->closeWithCompletionHandler(
            [this](bool isClosed) { isUnsavedKept = isClosed || isUnsavedKept || keepUnsavedAsVersion(); });
    }
}

void DocumentBrowserViewController::prepareForEnd()
{
    prepareForQuestion();
    if (isUnsavedKept) {
        unsaved.reset();
    }
}

bool DocumentBrowserViewController::keepUnsavedAsVersion()
{
    const fs::path& file = unsaved->fileURL();
    const auto kept = NSFileVersion::addVersionOfItemAtURL(file, required(unsaved->data));
    if (kept) {
        safeprint("DocumentBrowserViewController::prepareForEnd() : What could not be saved to '",
                  file.string(), "' was kept as a version of it.");
    } else {
        safeprint("DocumentBrowserViewController::prepareForEnd() : Error: ", kept.error());
    }
    return bool(kept);
}

void DocumentBrowserViewController::saveUnsavedElsewhere()
{
    if (!unsaved) {
        return;
    }
    isPresenting = true;
    askForPlace(unsaved->fileURL(), [root = std::weak_ptr(self())](const std::optional<fs::path>& chosen) {
        if (const auto there = root.lock()) {
            there->isPresenting = false;
            there->saveUnsavedTo(chosen);
        }
    });
}

void DocumentBrowserViewController::saveUnsavedTo(const std::optional<fs::path>& chosen)
{
    if (!unsaved) {
        return;
    }
    if (!chosen) {
        offerUnsaved();
        return;
    }
    unsaved->saveToURL(*chosen, UIDocumentSaveOperation::forOverwriting, [this](bool isSaved) {
        if (isSaved) {
            closeUnsaved();
        } else {
            offerUnsaved();
        }
    });
}

} // namespace volvelle
