#pragma once

#include "app/control/UIApplication.h"
#include "app/control/UIOpenURLContext.h"

#include <memory>
#include <string_view>
#include <vector>

namespace volvelle {

// A window's scene: opens what is handed in, at its start and later. [main]
class BrowserSceneDelegate {
public:
    static constexpr std::string_view documentBrowserIdentifierKey = "browser";

    virtual ~BrowserSceneDelegate() = default;

    std::shared_ptr<UIWindow> window;

    // The session of the browser; null for none. A session without information is a fatal stop.
    static std::shared_ptr<UISceneSession> browserSceneSession();

    // Each opens the first of the files.
    virtual void sceneWillConnectTo(const std::shared_ptr<UISceneSession>& session,
                                    const std::vector<UIOpenURLContext>& contexts);
    virtual void sceneOpenURLContexts(const std::vector<UIOpenURLContext>& contexts);

private:
    void openURLContext(const UIOpenURLContext& context) const;
};

} // namespace volvelle
