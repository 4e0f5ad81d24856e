#include "app/control/UIDocumentBrowserViewController.h"

#include "app/control/DocumentCheck.h"
#include "app/control/LocalizedName.h"
#include "base/PlainText.h"
#include "base/Text.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

} // namespace

void UIDocumentBrowserViewController::showFolder(fs::path path, std::shared_ptr<TrashCan> trash)
{
    folder = std::make_unique<DocumentFolder>(std::move(path), std::move(trash));
    refresh();
}

std::string UIDocumentBrowserViewController::folderName() const
{
    if (!folder) {
        return "";
    }
    const fs::path& path = folder->path();
    const std::string parent = path.parent_path().filename().string();
    return plainLine(utf8Text(concat(parent, parent.empty() ? "" : " / ", path.filename().string())));
}

void UIDocumentBrowserViewController::refresh()
{
    const auto before = selected ? indexOf(*selected) : std::nullopt;
    all = folder ? folder->documents() : std::vector<FolderDocument>();
    filter();
    if (before && !selected && !found.empty()) {
        selected = found[std::min(*before, found.size() - 1)].location;
    }
    selectFirstHit();
    tellChange();
}

void UIDocumentBrowserViewController::refreshAndSelect(const fs::path& file)
{
    if (folder && folder->contains(file)) {
        show(file);
    } else {
        refresh();
    }
}

void UIDocumentBrowserViewController::filter()
{
    const std::string wanted = smallLetters(search);
    found.clear();
    std::ranges::copy_if(all, std::back_inserter(found), [&wanted](const FolderDocument& document) {
        return smallLetters(document.name).find(wanted) != std::string::npos;
    });
    if (selected && !indexOf(*selected)) {
        selected.reset();
    }
}

void UIDocumentBrowserViewController::selectFirstHit()
{
    if (!search.empty() && !selected && !found.empty()) {
        selected = found.front().location;
    }
}

void UIDocumentBrowserViewController::setSearchText(std::string text)
{
    search = std::move(text);
    filter();
    selectFirstHit();
    tellChange();
}

void UIDocumentBrowserViewController::select(const std::optional<fs::path>& file)
{
    selected = file && indexOf(*file) ? file : std::nullopt;
    tellChange();
}

std::string UIDocumentBrowserViewController::countLine() const
{
    if (all.empty()) {
        return concat(folderName(), " is empty");
    }
    const std::string some = search.empty() ? "" : concat(found.size(), " of ");
    return concat(some, counted(all.size(), "idea", "ideas"), " in ", folderName());
}

std::string UIDocumentBrowserViewController::emptySearchLine() const
{
    return found.empty() && !all.empty() ? concat("No idea is called \"", search, "\".") : "";
}

void UIDocumentBrowserViewController::createDocument()
{
    const auto delegate = browserDelegate.lock();
    if (!allowsDocumentCreation || !folder || !delegate || isOccupied()) {
        return;
    }
    if (const auto checked = checkCreation(); !checked) {
        showMessage("File Error", checked.error());
        return;
    }
    delegate->documentBrowserDidRequestDocumentCreation(
        [this](const std::optional<fs::path>& location, UIDocumentBrowserImportMode mode) {
            if (!location || mode == UIDocumentBrowserImportMode::none) {
                showMessage("File Error", "The new idea could not be written.");
                return;
            }
            const auto place = mode == UIDocumentBrowserImportMode::move ? folder->takeMove(*location)
                                                                         : folder->takeCopy(*location);
            if (!place) {
                showMessage("File Error", place.error());
                return;
            }
            show(*place);
            pick({*place});
        });
}

void UIDocumentBrowserViewController::importDocument(const fs::path& file)
{
    const auto delegate = browserDelegate.lock();
    if (!folder || !delegate || isOccupied()) {
        return;
    }
    if (folder->contains(file)) {
        show(file);
        pick({folder->path() / file.filename()});
        return;
    }
    const auto place = takeDocument(file);
    if (!place) {
        delegate->documentBrowserFailedToImportDocument(file, place.error());
        return;
    }
    show(*place);
    delegate->documentBrowserDidImportDocument(file, *place);
}

Result<fs::path> UIDocumentBrowserViewController::takeDocument(const fs::path& file) const
{
    if (auto check = checkDocument(file); !check) {
        return failure(check.error());
    }
    return folder->takeCopy(file);
}

void UIDocumentBrowserViewController::pick(const std::vector<fs::path>& files)
{
    const auto delegate = browserDelegate.lock();
    if (!delegate) {
        return;
    }
    if (!files.empty() && !isOccupied()) {
        if (const auto check = checkDocument(files.front(), indexOf(files.front()).has_value()); !check) {
            showMessage("File Error", check.error());
            refresh();
            return;
        }
    }
    const bool onlyOne = !allowsPickingMultipleItems && files.size() > 1;
    delegate->documentBrowserDidPickDocuments(onlyOne ? std::vector{files.front()} : files);
}

void UIDocumentBrowserViewController::pickSelection()
{
    if (selected) {
        pick({*selected});
    }
}

void UIDocumentBrowserViewController::revealDocument(
    const fs::path& file, bool importIfNeeded,
    const std::function<void(const Result<fs::path>& place)>& completion)
{
    Result<fs::path> place = file;
    if (folder && importIfNeeded && !folder->contains(file)) {
        place = takeDocument(file);
    }
    if (place && folder && folder->contains(*place)) {
        show(*place);
    }
    completion(place);
}

Result<> UIDocumentBrowserViewController::renameSelection(const std::string& name)
{
    const fs::path* const file = changeableFile();
    if (file == nullptr) {
        return {};
    }
    const auto place = folder->rename(*file, name);
    if (!place) {
        refresh();
        return failure(place.error());
    }
    show(*place);
    return {};
}

void UIDocumentBrowserViewController::duplicateSelection()
{
    const fs::path* const file = changeableFile();
    if (file == nullptr) {
        return;
    }
    if (const auto place = folder->duplicate(*file)) {
        show(*place);
    } else {
        showMessage("File Error", place.error());
        refresh();
    }
}

void UIDocumentBrowserViewController::moveSelectionToTrash()
{
    const fs::path* const file = changeableFile();
    if (file == nullptr) {
        return;
    }
    if (const auto gone = folder->moveToTrash(*file); !gone) {
        showMessage("File Error", gone.error());
    }
    refresh();
}

void UIDocumentBrowserViewController::undo()
{
    if (!canUndo()) {
        return;
    }
    if (const auto place = folder->restore()) {
        show(*place);
    } else {
        showMessage("File Error", place.error());
        refresh();
    }
}

bool UIDocumentBrowserViewController::canUndo() const
{
    return folder && folder->canRestore() && !isCovered();
}

bool UIDocumentBrowserViewController::canPerformAction(std::string_view selector)
{
    if (selector == "undo:") {
        return canUndo();
    }
    if (selector == "rename:" || selector == "duplicate:" || selector == "delete:") {
        return changeableFile() != nullptr;
    }
    return selector != "open:" || selected.has_value();
}

void UIDocumentBrowserViewController::show(const fs::path& spelling)
{
    const fs::path file = folder->path() / spelling.filename();
    all = folder->documents();
    filter();
    if (!indexOf(file)) {
        search.clear();
        filter();
    }
    selected = indexOf(file) ? std::optional(file) : std::nullopt;
    tellChange();
    if (selected && onSelectionSought) {
        onSelectionSought();
    }
}

void UIDocumentBrowserViewController::tellChange() const
{
    if (onBrowserChanged) {
        onBrowserChanged();
    }
}

std::optional<std::size_t> UIDocumentBrowserViewController::indexOf(const fs::path& file) const
{
    const auto at = std::ranges::find(found, file, &FolderDocument::location);
    return at == found.end() ? std::nullopt
                             : std::optional(static_cast<std::size_t>(std::distance(found.begin(), at)));
}

} // namespace volvelle
