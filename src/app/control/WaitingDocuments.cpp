#include "app/control/DocumentBrowserViewController.h"
#include "app/control/LocalizedName.h"
#include "base/Console.h"
#include "base/Text.h"

#include <utility>

// Files that come while a document is up, and what is told about the program.
namespace volvelle {

void DocumentBrowserViewController::refuse(UIOpenURLContext context)
{
    safeprint("DocumentBrowserViewController::presentDocument() : Warning: There is already a view "
              "controller presenting. Canceling.");
    waiting.push_back(std::move(context));
    tellChange();
}

std::string DocumentBrowserViewController::waitingLine() const
{
    switch (waiting.size()) {
    case 0:
        return "";
    case 1:
        return concat("'", shownName(waiting.front().url), "' waits to be opened.");
    default:
        return concat(counted(waiting.size(), "idea", "ideas"), " wait to be opened.");
    }
}

void DocumentBrowserViewController::importOrWait(const std::filesystem::path& file)
{
    if (isOccupied()) {
        refuse({file, false});
    } else {
        importDocument(file);
    }
}

void DocumentBrowserViewController::openWaitingDocument()
{
    if (waiting.empty() || !documentViewController || !documentViewController->isUp()) {
        openFirstWaiting();
        return;
    }
    stopSequencer();
    documentViewController->dismiss(false, [root = std::weak_ptr(self())] {
        if (const auto there = root.lock()) {
            there->openFirstWaiting();
        }
    });
}

void DocumentBrowserViewController::openFirstWaiting()
{
    if (isOccupied() || waiting.empty()) {
        return;
    }
    const UIOpenURLContext next = waiting.front();
    waiting.erase(waiting.begin());
    tellChange();
    if (next.openInPlace) {
        pick({next.url});
    } else {
        importDocument(next.url);
    }
}

void DocumentBrowserViewController::forgetWaitingDocuments()
{
    waiting.clear();
    tellChange();
}

void DocumentBrowserViewController::tellQuietly(std::string line)
{
    if (line != quiet) {
        quiet = std::move(line);
        tellChange();
    }
}

void DocumentBrowserViewController::showAbout()
{
    showMessage("Volvelle", VOLVELLE_VERSION " makes musical ideas as MIDI files.\n\n"
                                             "The program is under the MIT licence, its phrases under CC0; "
                                             "each sound bank has a licence of its own.");
}

} // namespace volvelle
