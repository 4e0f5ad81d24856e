#pragma once

#include "base/NotificationCenter.h"
#include "services/documents/UIDocument.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace volvelle::test {

// A document of plain text, which notes what it is asked and told.
class PlainDocument : public UIDocument {
public:
    using UIDocument::setDocumentState;
    using UIDocument::UIDocument;

    std::optional<std::string> words;
    std::vector<std::string> calls;
    std::optional<std::string> loadFailure;
    bool isTooLarge = false; // there is no memory for it

    std::optional<DocumentContents> contents(const std::string& forType) override;
    Result<> load(const DocumentContents& fromContents, const std::optional<std::string>& ofType) override;
    void handleError(const std::string& error, bool userInteractionPermitted) override;

    // Each answers what the completion was told; "-" where it was not called before the operation returned.
    std::string open();
    std::string close();
    std::string save(const std::filesystem::path& url, UIDocumentSaveOperation operation);

    std::string save() { return save(fileURL(), UIDocumentSaveOperation::forOverwriting); }

    std::vector<std::string> takeCalls();
};

// The states that a document posts, each after its change.
class StateListener {
public:
    explicit StateListener(const UIDocument& document);

    std::vector<int> take();

private:
    std::vector<int> states;
    NotificationCenter::Token token;
};

} // namespace volvelle::test
