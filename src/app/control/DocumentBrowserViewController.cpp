#include "app/control/DocumentBrowserViewController.h"

#include "app/control/HelpViewController.h"
#include "app/control/LocalizedName.h"
#include "base/Checked.h"
#include "base/Console.h"
#include "base/Paths.h"
#include "base/PlainText.h"
#include "base/Text.h"
#include "phrases/PhraseLibrary.h"
#include "services/documents/NSFileVersion.h"
#include "services/files/SafeFile.h"

#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view exampleName = "New MIDI Idea.mid";

Result<> copyExample(const fs::path& from, const fs::path& folder)
{
    std::vector<std::uint8_t> bytes;
    std::error_code error;
    if (folder.empty()) {
        return failure("There is no folder for it.");
    }
    if (readFile(from, bytes) != noErr) {
        return failure("The file could not be read.");
    }
    fs::create_directories(folder, error);
    if (const int failed = putFile(folder / exampleName, bytes, false); failed != 0) {
        return failure(std::generic_category().message(failed));
    }
    return {};
}

bool hasUnresolvedVersions(const fs::path& file)
{
    const auto versions = NSFileVersion::unresolvedConflictVersionsOfItemAtURL(file);
    return versions && !versions->empty();
}

std::string keptVersionsLine(const fs::path& file)
{
    return concat("Another version of '", shownName(file), "' is kept in '",
                  shownPath(NSFileVersion::keptVersionsOfItemAtURL(file)), "'.");
}

} // namespace

std::shared_ptr<DocumentBrowserViewController> DocumentBrowserViewController::make(BrowserServices services)
{
    return std::shared_ptr<DocumentBrowserViewController>(
        new DocumentBrowserViewController(std::move(services)));
}

DocumentBrowserViewController::DocumentBrowserViewController(BrowserServices services)
    : services(std::move(services))
{
}

DocumentBrowserViewController::~DocumentBrowserViewController()
{
    stopEngine();
}

std::shared_ptr<DocumentBrowserViewController> DocumentBrowserViewController::self()
{
    return std::static_pointer_cast<DocumentBrowserViewController>(shared_from_this());
}

void DocumentBrowserViewController::viewDidLoad()
{
    UIDocumentBrowserViewController::viewDidLoad();
    provideDefaultDocuments();
    browserViewController = self();
    browserDelegate = self();
    allowsDocumentCreation = true;
    allowsPickingMultipleItems = false;
    showFolder(documentsPath, services.trash);
    initializeEngine();
    setupNotifications();
}

void DocumentBrowserViewController::getDirectories()
{
    safeprint("viewController:getDirectories() : Initialization, enumerating the apps accessible folders.");
    if (const auto resources = resourcesFolder()) {
        resourcesPath = *resources;
        safeprint("viewController:getDirectories() : The app's resources path is: ", resourcesPath.string());
    } else {
        safeprint("ViewController::getDirectories() : Resources folder is nil.");
    }
    if (const auto documents = documentsFolder()) {
        documentsPath = *documents;
        safeprint("viewController:getDirectories() : The app's documents path is: ", documentsPath.string());
    } else {
        safeprint("viewController:getDirectories() : Documents directory is nil.");
    }
}

void DocumentBrowserViewController::provideDefaultDocuments()
{
    getDirectories();
    const fs::path example = resourcesPath / exampleName;
    const fs::path place = documentsPath / exampleName;
    std::error_code error;
    if (resourcesPath.empty() || !fs::exists(example, error)) {
        safeprint("DocumentBrowserViewController::provideDefaultDocuments(): ERROR: Missing resource file "
                  "'New MIDI Idea.mid'.");
        return;
    }
    if (!documentsPath.empty() && fs::exists(place, error)) {
        safeprint("DocumentBrowserViewController::provideDefaultDocuments(): The default document '",
                  place.string(), "' already existed.");
        return;
    }
    if (const auto copied = copyExample(example, documentsPath); !copied) {
        safeprint("DocumentBrowserViewController::provideDefaultDocuments(): ERROR: Could not "
                  "provide example file: ",
                  copied.error());
    }
}

Result<> DocumentBrowserViewController::checkCreation() const
{
    return checkPhraseLibrary();
}

void DocumentBrowserViewController::documentBrowserDidRequestDocumentCreation(const CreationHandler& handler)
{
    safeprint("DocumentBrowserViewController::documentBrowser() : Creating a new Document.");
    const auto document = MIDIDocument::make();
    document->saveToURL(
        document->fileURL(), UIDocumentSaveOperation::forCreating, [&document, &handler](bool isSaved) {
            if (!isSaved) {
                safeprint("DocumentBrowserViewController::documentBrowser() : Error: Unable to create a new "
                          "document.");
                handler(std::nullopt, UIDocumentBrowserImportMode::none);
                return;
            }
            document->closeWithCompletionHandler([&document, &handler](bool isClosed) {
                if (!isClosed) {
                    safeprint("DocumentBrowserViewController::documentBrowser() : Error: Unable to close new "
                              "document.");
                    handler(std::nullopt, UIDocumentBrowserImportMode::none);
                    return;
                }
                handler(document->fileURL(), UIDocumentBrowserImportMode::move);
            });
        });
}

void DocumentBrowserViewController::documentBrowserDidImportDocument(const fs::path& source,
                                                                     const fs::path& destination)
{
    safeprint("DocumentBrowserViewController::documentBrowser() : Imported a document from '",
              source.string(), "' to '", destination.string(), "'.");
    presentDocument(destination);
}

void DocumentBrowserViewController::documentBrowserFailedToImportDocument(const fs::path& url,
                                                                          const std::string& error)
{
    const std::string message = concat("Error: ", error, " Could not open file '", shownPath(url), "'.");
    showAlert("File Error", message, {{"OK", {}}});
}

void DocumentBrowserViewController::documentBrowserDidPickDocuments(const std::vector<fs::path>& urls)
{
    if (urls.empty()) {
        safeprint("DocumentBrowserViewController::documentBrowser() : Error: Picked URL is invaid.");
        return;
    }
    presentDocument(urls.front());
}

void DocumentBrowserViewController::presentDocument(const fs::path& url)
{
    if (isOccupied()) {
        refuse({url, true});
        return;
    }
    const auto screen = std::dynamic_pointer_cast<MIDIDocumentViewController>(
        required(services.storyboard).instantiateViewController("MIDIDocumentViewController"));
    documentViewController = screen;
    required(screen).browser = self();
    screen->loadViewIfNeeded();
    const auto document = MIDIDocument::make(url);
    screen->setDocument(document);
    const bool hasVersions = hasUnresolvedVersions(url);
    document->openWithCompletionHandler([&, this](bool isOpen) {
        if (!isOpen) {
            safeprint("DocumentBrowserViewController::presentDocument() : Error: Document '", url.string(),
                      "' could not be opened.");
            tellQuietly(plainLine(document->lastError()));
            return;
        }
        if (hasVersions && !hasUnresolvedVersions(url)) {
            tellQuietly(keptVersionsLine(url));
        }
        safeprint("DocumentBrowserViewController::presentDocument() : Document opening.");
        isPresenting = true;
        if (const auto above = presentedViewController()) {
            above->dismiss(false, {});
        }
        present(screen, true, [url] {
            safeprint("DocumentBrowserViewController::presentDocument() : Opened document '", url.string(),
                      "'");
        });
    });
}

void DocumentBrowserViewController::showMessage(const std::string& caption, const std::string& message)
{
    safeprint("Message: ", message);
    showAlert(caption, concat(caption, " ", message), {{"OK", {}}});
}

void DocumentBrowserViewController::showAlert(const std::string& alertTitle, const std::string& message,
                                              std::vector<UIAlertAction> actions)
{
    for (UIAlertAction& action : actions) {
        action.handler = [root = std::weak_ptr(self()), handler = std::move(action.handler)] {
            const auto there = root.lock();
            if (!there) {
                return;
            }
            --there->alerts;
            there->isPresenting =
                there->alerts > 0 || (there->documentViewController && there->documentViewController->isUp());
            if (handler) {
                handler();
            }
        };
    }
    ++alerts;
    isPresenting = true;
    present({alertTitle, message, std::move(actions)});
}

void DocumentBrowserViewController::showHelp()
{
    if (!services.helpSite.empty() && services.openURL) {
        services.openURL(services.helpSite);
    }
    performSegue("showHelp");
}

void DocumentBrowserViewController::performSegue(const std::string& identifier)
{
    std::shared_ptr<UIViewController> top = shared_from_this();
    while (top->presentedViewController()) {
        top = top->presentedViewController();
    }
    if (std::dynamic_pointer_cast<HelpViewController>(top)) {
        return;
    }
    const UIStoryboardSegue segue{identifier,
                                  required(services.storyboard).instantiateViewController(identifier)};
    required(segue.destination);
    prepareForSegue(segue);
    top->present(segue.destination, true, {});
}

void DocumentBrowserViewController::prepareForSegue(const UIStoryboardSegue& segue)
{
    if (segue.identifier == "showInfo" || segue.identifier == "showHelp") {
        checkedDowncast<HelpViewController>(required(segue.destination)).prepareInfo(segue.identifier);
    }
}

bool DocumentBrowserViewController::canPerformAction(std::string_view selector)
{
    safeprint(std::string(selector));
    return UIDocumentBrowserViewController::canPerformAction(selector);
}

std::shared_ptr<DocumentBrowserViewController> currentBrowserViewController()
{
    return std::dynamic_pointer_cast<DocumentBrowserViewController>(browserViewController.lock());
}

} // namespace volvelle
