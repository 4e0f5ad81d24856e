#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

class UIViewController;

// One window's life as the system sees it. [main]
struct UISceneSession {
    std::optional<std::map<std::string, std::string>> userInfo;
};

// What commands the player from outside: media keys, a panel of the desktop. [main]
class RemoteControl {
public:
    virtual ~RemoteControl() = default;

    virtual void begin() = 0;
    virtual void end() = 0;
};

// A window; its screens begin with the root. [main]
struct UIWindow {
    std::shared_ptr<UIViewController> rootViewController;
};

// The application as the system sees it. [main]
class UIApplication {
public:
    // The one of the process.
    static UIApplication& sharedApplication();

    // In the order in which they were opened.
    std::vector<std::shared_ptr<UISceneSession>> openSessions;

    // Null for none.
    std::shared_ptr<RemoteControl> remoteControl;

    void beginReceivingRemoteControlEvents() const;
    void endReceivingRemoteControlEvents() const;
};

} // namespace volvelle
