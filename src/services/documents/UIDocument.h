#pragma once

#include "base/Result.h"
#include "services/documents/DocumentContents.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace volvelle {

// The bits of a document's state; none of them is normal.
struct UIDocumentState {
    static constexpr int normal = 0;
    static constexpr int closed = 1;
    static constexpr int inConflict = 2;
    static constexpr int savingError = 4;
    static constexpr int editingDisabled = 8;
    static constexpr int progressAvailable = 16;
};

enum class UIDocumentChangeKind { done = 0, undone = 1, redone = 2, cleared = 3 };

enum class UIDocumentSaveOperation {
    forCreating = 0,   // never takes the place of a file
    forOverwriting = 1 // does
};

// Posted by a document, with the document as its object, after its state has changed.
inline constexpr std::string_view UIDocumentStateChangedNotification = "UIDocumentStateChangedNotification";

// A document on a file. It starts closed, is open after opening or the save that creates its file, and closed
// after closing. What a derived class holds becomes the file by contents() and comes from it by load().
//
// A file is never half written, and what another program put in its place since it was read or written is
// never lost: a save first keeps that as a version (NSFileVersion), and fails where it cannot. The document
// is in conflict while it posts that such versions stand unresolved; what the observers leave unresolved
// they are told again at the next opening. What a process left that was killed in a save is taken up by the
// next opening or save in that folder (Leftovers).
//
// Held by std::shared_ptr. Operations call their completion before they return; an empty one is not called.
// [main]
class UIDocument : public std::enable_shared_from_this<UIDocument> {
public:
    using Completion = std::function<void(bool)>;

    explicit UIDocument(std::filesystem::path fileURL);
    virtual ~UIDocument();
    UIDocument(const UIDocument&) = delete;
    UIDocument& operator=(const UIDocument&) = delete;

    const std::filesystem::path& fileURL() const { return location; }

    // The media type by the file's name, "audio/midi"; without a value for other names.
    std::optional<std::string> fileType() const;

    int documentState() const { return state; }

    // The sentence about the last failure of opening or saving, empty after a success.
    const std::string& lastError() const { return lastFailure; }

    // Reads the file. A document that is open stays as it is; one that fails stays closed.
    virtual void openWithCompletionHandler(const Completion& completion);

    // Saves unsaved changes, and closes. Where the save fails the document stays open with its changes, to be
    // closed again or saved elsewhere. A document that is closed stays so.
    virtual void closeWithCompletionHandler(const Completion& completion);

    // Writes the contents to `url`, which becomes the document's location; nothing changes where that fails
    // but the saving-error bit.
    virtual void saveToURL(const std::filesystem::path& url, UIDocumentSaveOperation operation,
                           const Completion& completion);

    // Cleared forgets the changes; all others are an unsaved change, which an open document saves from the
    // main queue or in closing, whichever comes first.
    virtual void updateChangeCount(UIDocumentChangeKind change);

    virtual bool hasUnsavedChanges() const { return isChanged; }

    // What is to be written; nothing to write without a value, and the save fails.
    virtual std::optional<DocumentContents> contents(const std::string& forType) = 0;

    virtual Result<> load(const DocumentContents& fromContents, const std::optional<std::string>& ofType) = 0;

    // Reads the file and loads it; a folder is contents without bytes.
    virtual Result<> read(const std::filesystem::path& from);

    // Told about each failure of opening and saving. Does nothing.
    virtual void handleError(const std::string& error, bool userInteractionPermitted);

protected:
    // Posts where it changes.
    void setDocumentState(int value);

private:
    // What tells one state of a file from another without reading it.
    struct FileStamp {
        dev_t device = 0;
        ino_t inode = 0;
        std::int64_t size = 0;     // bytes
        std::int64_t modified = 0; // nanoseconds
        std::int64_t changed = 0;  // nanoseconds; nobody can set it back
        bool operator==(const FileStamp&) const = default;
    };

    // A file as it was read, written or kept last.
    struct FileContent {
        FileStamp stamp;
        std::vector<std::uint8_t> bytes;
    };

    static std::optional<FileStamp> stampOf(const std::filesystem::path& file);
    Result<> write(const std::filesystem::path& url, UIDocumentSaveOperation operation);
    void remember(std::vector<std::uint8_t> written);
    Result<> keepOther(); // what another program put in the file's place
    Result<> keepReplaced(const std::filesystem::path& replaced); // the same, after that was looked at
    void enter(int next);                                         // by way of a conflict, where there is one

    std::filesystem::path location;
    int state = UIDocumentState::closed;
    bool isChanged = false;
    std::string lastFailure;
    std::optional<FileContent> known; // of the file at `location`
};

} // namespace volvelle
