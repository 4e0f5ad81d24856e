#include "services/documents/UIDocument.h"

#include "base/MainQueue.h"
#include "base/MainThread.h"
#include "base/NotificationCenter.h"
#include "base/Text.h"
#include "services/documents/Leftovers.h"
#include "services/documents/NSFileVersion.h"
#include "services/files/FileFailure.h"
#include "services/files/FileNames.h"
#include "services/files/SafeFile.h"

#include <new>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

void complete(const UIDocument::Completion& completion, bool success)
{
    if (completion) {
        completion(success);
    }
}

std::optional<std::string> typeOf(const fs::path& file)
{
    return isMIDIFileName(file) ? std::optional<std::string>("audio/midi") : std::nullopt;
}

bool isOneFile(const fs::path& one, const fs::path& other)
{
    std::error_code error;
    return one == other || fs::equivalent(one, other, error);
}

// Where the file stands that a link leads to.
fs::path realFolderOf(const fs::path& file)
{
    std::error_code error;
    const fs::path real = fs::weakly_canonical(file, error);
    return folderOf(error ? file : real);
}

Failure readFailure(const fs::path& file, OSStatus status)
{
    return failure(concat("'", file.string(), "' could not be read",
                          status == fileNotFoundErr ? ": it does not exist." : "."));
}

// Why the work failed, empty where it did not.
template <class Work>
std::string withinMemory(const fs::path& file, std::string_view deed, Work work)
try {
    return work().error();
} catch (const std::bad_alloc&) {
    return concat("'", file.string(), "' could not be ", deed, ": it is too large.");
}

} // namespace

UIDocument::UIDocument(fs::path fileURL) : location(std::move(fileURL)) {}

UIDocument::~UIDocument() = default;

std::optional<std::string> UIDocument::fileType() const
{
    return typeOf(location);
}

// MARK: Opening and closing

void UIDocument::openWithCompletionHandler(const Completion& completion)
{
    assertMainThread();
    if ((state & UIDocumentState::closed) == 0) {
        complete(completion, true);
        return;
    }
    known.reset();
    lastFailure = withinMemory(location, "read", [this] {
        keepLeftovers(realFolderOf(location));
        return read(location);
    });
    if (!lastFailure.empty()) {
        handleError(lastFailure, true);
        complete(completion, false);
        return;
    }
    isChanged = false;
    enter(state & ~(UIDocumentState::closed | UIDocumentState::savingError));
    complete(completion, true);
}

Result<> UIDocument::read(const fs::path& from)
{
    std::error_code unknown;
    const fs::file_status found = fs::status(from, unknown);
    if (fs::is_other(found)) {
        return failure(concat("'", from.string(), "' could not be read: it is no file."));
    }
    if (fs::is_directory(found)) {
        return load({std::nullopt, concat("the folder '", from.string(), "'")}, typeOf(from));
    }
    const auto stamp = stampOf(from);
    DocumentContents contents;
    if (const OSStatus status = readFile(from, contents.bytes.emplace()); status != noErr) {
        return readFailure(from, status);
    }
    Result<> result = load(contents, typeOf(from));
    if (result && stamp && from == location) {
        known = FileContent{*stamp, std::move(*contents.bytes)};
    }
    return result;
}

void UIDocument::closeWithCompletionHandler(const Completion& completion)
{
    assertMainThread();
    bool isSaved = true;
    if ((state & UIDocumentState::closed) == 0 && hasUnsavedChanges()) {
        saveToURL(location, UIDocumentSaveOperation::forOverwriting,
                  [&isSaved](bool success) { isSaved = success; });
    }
    if (isSaved) {
        setDocumentState(UIDocumentState::closed);
    }
    complete(completion, isSaved);
}

// MARK: Saving

void UIDocument::updateChangeCount(UIDocumentChangeKind change)
{
    assertMainThread();
    isChanged = change != UIDocumentChangeKind::cleared;
    if (!isChanged) {
        return;
    }
    mainQueue().post([self = shared_from_this()] {
        if ((self->state & UIDocumentState::closed) == 0 && self->hasUnsavedChanges()) {
            self->saveToURL(self->location, UIDocumentSaveOperation::forOverwriting, {});
        }
    });
}

void UIDocument::saveToURL(const fs::path& url, UIDocumentSaveOperation operation,
                           const Completion& completion)
{
    assertMainThread();
    lastFailure = withinMemory(url, "written", [&] { return write(url, operation); });
    if (!lastFailure.empty()) {
        setDocumentState(state | UIDocumentState::savingError);
        handleError(lastFailure, true);
        complete(completion, false);
        return;
    }
    isChanged = false;
    const int left =
        operation == UIDocumentSaveOperation::forCreating ? UIDocumentState::closed : UIDocumentState::normal;
    enter(state & ~(left | UIDocumentState::savingError));
    complete(completion, true);
}

Result<> UIDocument::write(const fs::path& url, UIDocumentSaveOperation operation)
{
    auto content = contents(typeOf(url).value_or("?"));
    if (!content || !content->bytes) {
        return failure(concat("'", url.string(), "' could not be written: there is nothing to write."));
    }
    std::error_code error;
    if (const auto kind = fs::status(url, error); fs::is_directory(kind)) {
        return failure(writeFailure(url, EISDIR));
    } else if (fs::is_fifo(kind)) {
        return failure(concat("'", url.string(), "' could not be written: it is a pipe."));
    }
    keepLeftovers(realFolderOf(url));
    const bool overwrites = operation == UIDocumentSaveOperation::forOverwriting;
    const bool isOwn = overwrites && isOneFile(url, location);
    Result<> kept = isOwn ? keepOther() : Result<>();
    if (!kept) {
        return kept;
    }
    const NewFile::Keeper keep = [&](const fs::path& replaced) {
        kept = keepReplaced(replaced);
        return bool(kept);
    };
    const int failed = putFile(url, *content->bytes, overwrites, isOwn ? keep : NewFile::Keeper());
    if (failed != 0) {
        return kept ? failure(writeFailure(url, failed)) : kept;
    }
    location = url;
    remember(std::move(*content->bytes));
    return {};
}

void UIDocument::remember(std::vector<std::uint8_t> written)
{
    const auto stamp = stampOf(location);
    std::vector<std::uint8_t> found;
    const bool isOurs = stamp && readFile(location, found) == noErr && found == written;
    known = FileContent{isOurs ? *stamp : FileStamp(), std::move(written)};
}

Result<> UIDocument::keepOther()
{
    const auto stamp = stampOf(location);
    if (!stamp || (known && known->stamp == *stamp)) {
        return {};
    }
    std::vector<std::uint8_t> bytes;
    if (const OSStatus status = readFile(location, bytes); status != noErr) {
        return status == fileNotFoundErr ? Result<>() : readFailure(location, status);
    }
    if (known && known->bytes == bytes) {
        return {};
    }
    Result<> kept = NSFileVersion::addVersionOfItemAtURL(location, bytes);
    if (kept) {
        known = FileContent{*stamp, std::move(bytes)};
    }
    return kept;
}

Result<> UIDocument::keepReplaced(const fs::path& replaced)
{
    std::vector<std::uint8_t> bytes;
    if (!stampOf(replaced) || readFile(replaced, bytes) != noErr) {
        return failure(concat("'", location.string(), "' could not be written: it changed meanwhile."));
    }
    const bool isKnown = known && known->bytes == bytes;
    return isKnown ? Result<>() : NSFileVersion::addVersionOfItemAtURL(location, bytes);
}

std::optional<UIDocument::FileStamp> UIDocument::stampOf(const fs::path& file)
{
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    struct stat found = {};
    if (stat(file.c_str(), &found) != 0 || !S_ISREG(found.st_mode)) {
        return std::nullopt;
    }
    return FileStamp{found.st_dev, found.st_ino, found.st_size,
                     found.st_mtim.tv_sec * nanoseconds + found.st_mtim.tv_nsec,
                     found.st_ctim.tv_sec * nanoseconds + found.st_ctim.tv_nsec};
}

// MARK: State

void UIDocument::enter(int next)
{
    const auto versions = NSFileVersion::unresolvedConflictVersionsOfItemAtURL(location);
    if (versions && !versions->empty()) {
        setDocumentState(next | UIDocumentState::inConflict);
        next = state & ~UIDocumentState::inConflict;
    }
    setDocumentState(next);
}

void UIDocument::setDocumentState(int value)
{
    if (value != state) {
        state = value;
        defaultNotificationCenter().post(UIDocumentStateChangedNotification, this);
    }
}

void UIDocument::handleError(const std::string& /*error*/, bool /*userInteractionPermitted*/) {}

} // namespace volvelle
