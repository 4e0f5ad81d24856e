#pragma once

#include "app/control/DocumentFolder.h"
#include "app/control/UIViewController.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace volvelle {

class UIDocumentBrowserViewController;

enum class UIDocumentBrowserImportMode { none = 0, copy = 1, move = 2 };

// What a browser asks and tells. [main]
class UIDocumentBrowserViewControllerDelegate {
public:
    // Takes a new document, which stands anywhere; no location for none.
    using CreationHandler =
        std::function<void(std::optional<std::filesystem::path> location, UIDocumentBrowserImportMode mode)>;

    virtual ~UIDocumentBrowserViewControllerDelegate() = default;

    virtual void documentBrowserDidRequestDocumentCreation(const CreationHandler& handler) = 0;
    virtual void documentBrowserDidImportDocument(const std::filesystem::path& source,
                                                  const std::filesystem::path& destination) = 0;
    virtual void documentBrowserFailedToImportDocument(const std::filesystem::path& url,
                                                       const std::string& error) = 0;
    virtual void documentBrowserDidPickDocuments(const std::vector<std::filesystem::path>& urls) = 0;
};

// The browser of a folder of documents: what it lists, what is selected and searched for, and what is done
// with the files. It opens none itself: its delegate is told what was picked. What fails is told by
// showMessage(), and loses nothing. [main]
class UIDocumentBrowserViewController : public UIViewController {
public:
    std::weak_ptr<UIDocumentBrowserViewControllerDelegate> browserDelegate;
    bool allowsDocumentCreation = false;
    bool allowsPickingMultipleItems = false;

    // After the list, the search or the selection has changed; may be empty.
    std::function<void()> onBrowserChanged;

    // After that, where the selection is to be brought into view wherever it stands now; may be empty.
    std::function<void()> onSelectionSought;

    // MARK: What is shown

    // The folder that is shown, with the trash for its files. Before it is set the list is empty.
    void showFolder(std::filesystem::path path, std::shared_ptr<TrashCan> trash);

    // Where it leads to: the last two names of its path, "Documents / Volvelle".
    std::string folderName() const;

    // Reads the folder anew. The selection stays with its file; where that is gone, with its place in the
    // list.
    void refresh();

    // The same, and selects a file that stands here; a search that hides it ends.
    void refreshAndSelect(const std::filesystem::path& file);

    // All documents, and those whose names hold what is searched for, in any case of letters A to Z.
    const std::vector<FolderDocument>& allDocuments() const { return all; }

    const std::vector<FolderDocument>& documents() const { return found; }

    const std::string& searchText() const { return search; }

    // Where the selection is not among what is found, the first of that is selected.
    void setSearchText(std::string text);

    // The file that is selected, which is one of documents().
    const std::optional<std::filesystem::path>& selection() const { return selected; }

    // A file that is not in the list selects nothing.
    void select(const std::optional<std::filesystem::path>& file);

    // "15 ideas in Documents / Volvelle", "1 idea in ...", "Documents / Volvelle is empty"; with a search "3
    // of 15 ideas in ...".
    std::string countLine() const;

    // The line in place of the tiles where a search finds nothing, else empty.
    std::string emptySearchLine() const;

    // MARK: What is done

    // A new document: the delegate makes it, it is moved here and opened.
    void createDocument();

    // Copies a file here, shows it and tells the delegate. One of this folder is picked instead. What is no
    // MIDI file is refused.
    void importDocument(const std::filesystem::path& file);

    // Tells the delegate; what cannot be opened is told the user instead.
    void pick(const std::vector<std::filesystem::path>& files);
    void pickSelection();

    // Makes a file shown and selected, as far as it stands here; one from elsewhere is copied here first
    // where `importIfNeeded`, else stays where it is. `completion` gets where it stands, or a sentence.
    void revealDocument(const std::filesystem::path& file, bool importIfNeeded,
                        const std::function<void(const Result<std::filesystem::path>& place)>& completion);

    // Each for the selected document; nothing where none is, or while a document stands above the browser.
    // Why a name is refused is for the caller to tell.
    Result<> renameSelection(const std::string& name);
    void duplicateSelection();
    void moveSelectionToTrash();

    // Brings back what was moved to the trash last, and selects it; nothing while a document stands above.
    void undo();
    bool canUndo() const;

    // Whether a command of the browser's makes sense now: "open:", "rename:", "duplicate:", "delete:" and
    // "undo:"; true for all others.
    virtual bool canPerformAction(std::string_view selector);

    // Tells the user about something, with an OK button.
    virtual void showMessage(const std::string& caption, const std::string& message) = 0;

    // True while something stands above the browser that must not be disturbed.
    virtual bool isOccupied() const = 0;

    // True while a document stands above the browser, whose files stay as they are then.
    virtual bool isCovered() const = 0;

protected:
    // What a new document needs before it can be made; a failure is told the user in its place.
    virtual Result<> checkCreation() const { return {}; }

    // Calls onBrowserChanged.
    void tellChange() const;

private:
    void filter();
    void selectFirstHit();
    void show(const std::filesystem::path& spelling);
    Result<std::filesystem::path> takeDocument(const std::filesystem::path& file) const;
    std::optional<std::size_t> indexOf(const std::filesystem::path& file) const;

    // Null where nothing is selected, or what is must stay as it is.
    const std::filesystem::path* changeableFile() const
    {
        return folder && selected && !isCovered() ? &*selected : nullptr;
    }

    std::unique_ptr<DocumentFolder> folder;
    std::vector<FolderDocument> all;
    std::vector<FolderDocument> found;
    std::string search;
    std::optional<std::filesystem::path> selected;
};

} // namespace volvelle
