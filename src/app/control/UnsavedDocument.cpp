#include "app/control/DocumentBrowserViewController.h"
#include "base/Checked.h"
#include "base/MainQueue.h"
#include "base/Text.h"

#include <utility>

// What becomes of a document whose save failed when its screen went.
namespace volvelle {

namespace fs = std::filesystem;

void DocumentBrowserViewController::keepUnsavedDocument(const std::shared_ptr<MIDIDocument>& document)
{
    unsaved = document;
    mainQueue().post([self = std::static_pointer_cast<DocumentBrowserViewController>(shared_from_this())] {
        if (self->unsaved) {
            self->offerUnsaved();
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
    showFileError(concat("Error: ", unsaved->lastError(), " Could not save file '",
                         unsaved->fileURL().string(), "'. With OK, what was not saved is lost."),
                  std::move(actions));
}

void DocumentBrowserViewController::dropUnsaved()
{
    if (const auto document = std::exchange(unsaved, nullptr)) {
        document->updateChangeCount(UIDocumentChangeKind::cleared);
        document->closeWithCompletionHandler({});
    }
}

void DocumentBrowserViewController::closeUnsaved()
{
    required(unsaved).closeWithCompletionHandler([this](bool isClosed) {
        if (isClosed) {
            unsaved.reset();
            refresh();
        } else {
            offerUnsaved();
        }
    });
}

void DocumentBrowserViewController::saveUnsavedElsewhere()
{
    isPresenting = true;
    askForPlace(required(unsaved).fileURL().filename(), [this](const std::optional<fs::path>& chosen) {
        isPresenting = false;
        if (!chosen) {
            offerUnsaved();
            return;
        }
        required(unsaved).saveToURL(*chosen, UIDocumentSaveOperation::forOverwriting, [this](bool isSaved) {
            if (isSaved) {
                closeUnsaved();
            } else {
                offerUnsaved();
            }
        });
    });
}

} // namespace volvelle
