#include "app/control/BrowserSceneDelegate.h"

#include "app/control/DocumentBrowserViewController.h"
#include "app/control/DocumentCheck.h"
#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"

namespace volvelle {

namespace {

std::string withoutStop(std::string sentence)
{
    if (sentence.ends_with('.')) {
        sentence.pop_back();
    }
    return sentence;
}

} // namespace

std::shared_ptr<UISceneSession> BrowserSceneDelegate::browserSceneSession()
{
    for (const auto& session : UIApplication::sharedApplication().openSessions) {
        if (required(session->userInfo).contains(std::string(documentBrowserIdentifierKey))) {
            return session;
        }
    }
    return nullptr;
}

void BrowserSceneDelegate::sceneWillConnectTo(const std::shared_ptr<UISceneSession>& session,
                                              const std::vector<UIOpenURLContext>& contexts)
{
    session->userInfo = {{std::string(documentBrowserIdentifierKey), "main browser"}};
    sceneOpenURLContexts(contexts);
}

void BrowserSceneDelegate::sceneOpenURLContexts(const std::vector<UIOpenURLContext>& contexts)
{
    if (!contexts.empty()) {
        openURLContext(contexts.front());
    }
}

void BrowserSceneDelegate::openURLContext(const UIOpenURLContext& context) const
{
    const auto browser = std::dynamic_pointer_cast<DocumentBrowserViewController>(
        window ? window->rootViewController : nullptr);
    if (!browser) {
        fatalStop("*** The root view is not a document browser ***");
    }
    if (!context.openInPlace && browser->isOccupied()) {
        browser->importOrWait(context.url);
        return;
    }
    if (context.openInPlace && !browser->isOccupied()) {
        if (const auto check = checkDocument(context.url); !check) {
            browser->tellQuietly(check.error());
            return;
        }
    }
    browser->revealDocument(context.url, !context.openInPlace,
                            [&](const Result<std::filesystem::path>& revealed) {
                                if (!context.openInPlace && !revealed) {
                                    directPrint("Failed to reveal the document at ", context.url.string(),
                                                " : ", withoutStop(revealed.error()), ".");
                                    return;
                                }
                                browser->presentDocument(context.openInPlace ? context.url : *revealed);
                            });
}

} // namespace volvelle
