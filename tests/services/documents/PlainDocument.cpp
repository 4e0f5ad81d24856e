#include "tests/services/documents/PlainDocument.h"

#include <new>
#include <utility>

namespace volvelle::test {

namespace {

UIDocument::Completion noteIn(std::string& told)
{
    told = "-";
    return [&told](bool success) { told = success ? "yes" : "no"; };
}

} // namespace

std::optional<DocumentContents> PlainDocument::contents(const std::string& forType)
{
    calls.push_back("contents " + forType);
    if (isTooLarge) {
        throw std::bad_alloc();
    }
    if (!words) {
        return std::nullopt;
    }
    return DocumentContents{std::vector<std::uint8_t>(words->begin(), words->end()), {}};
}

Result<> PlainDocument::load(const DocumentContents& fromContents, const std::optional<std::string>& ofType)
{
    words.reset();
    if (isTooLarge) {
        throw std::bad_alloc();
    }
    if (fromContents.bytes) {
        words.emplace(fromContents.bytes->begin(), fromContents.bytes->end());
    }
    calls.push_back("load " + words.value_or(fromContents.name) + " " + ofType.value_or("?"));
    if (loadFailure) {
        return failure(*loadFailure);
    }
    return {};
}

void PlainDocument::handleError(const std::string& error, bool userInteractionPermitted)
{
    UIDocument::handleError(error, userInteractionPermitted);
    calls.push_back("error " + error);
}

std::string PlainDocument::open()
{
    std::string told;
    openWithCompletionHandler(noteIn(told));
    return told;
}

std::string PlainDocument::close()
{
    std::string told;
    closeWithCompletionHandler(noteIn(told));
    return told;
}

std::string PlainDocument::save(const std::filesystem::path& url, UIDocumentSaveOperation operation)
{
    std::string told;
    saveToURL(url, operation, noteIn(told));
    return told;
}

std::vector<std::string> PlainDocument::takeCalls()
{
    return std::exchange(calls, {});
}

StateListener::StateListener(const UIDocument& document)
    : token(defaultNotificationCenter().addObserver(
          UIDocumentStateChangedNotification, &document,
          [this, &document](const void* /*object*/) { states.push_back(document.documentState()); }))
{
}

std::vector<int> StateListener::take()
{
    return std::exchange(states, {});
}

} // namespace volvelle::test
