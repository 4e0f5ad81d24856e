#include "app/control/DocumentBrowserViewController.h"
#include "app/control/LocalizedName.h"
#include "base/Text.h"

#include <utility>

// Files that come while a document is up, and what is told about the program.
namespace volvelle {

void DocumentBrowserViewController::keepWaiting(UIOpenURLContext context)
{
    waiting.push_back(std::move(context));
    if (onBrowserChanged) {
        onBrowserChanged();
    }
}

std::string DocumentBrowserViewController::waitingLine() const
{
    switch (waiting.size()) {
    case 0:
        return "";
    case 1:
        return concat("'", shownName(waiting.front().url), "' waits to be opened.");
    default:
        return concat(waiting.size(), " ideas wait to be opened.");
    }
}

void DocumentBrowserViewController::importOrWait(const std::filesystem::path& file)
{
    if (isPresenting) {
        keepWaiting({file, false});
    } else {
        importDocument(file);
    }
}

void DocumentBrowserViewController::openWaitingDocument()
{
    if (waiting.empty()) {
        return;
    }
    const auto open = [this] {
        if (isPresenting || waiting.empty()) {
            return;
        }
        const UIOpenURLContext next = waiting.front();
        waiting.erase(waiting.begin());
        if (next.openInPlace) {
            pick({next.url});
        } else {
            importDocument(next.url);
        }
    };
    if (documentViewController && documentViewController->isUp()) {
        stopSequencer();
        documentViewController->dismiss(false, open);
    } else {
        open();
    }
}

void DocumentBrowserViewController::forgetWaitingDocuments()
{
    waiting.clear();
    if (onBrowserChanged) {
        onBrowserChanged();
    }
}

void DocumentBrowserViewController::showAbout()
{
    showMessage("Volvelle", VOLVELLE_VERSION " makes musical ideas as MIDI files.\n\n"
                                             "The program is under the MIT licence, its phrases under CC0; "
                                             "each sound bank has a licence of its own.");
}

} // namespace volvelle
