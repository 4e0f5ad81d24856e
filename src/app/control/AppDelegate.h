#pragma once

#include "app/control/UIApplication.h"

#include <memory>

namespace volvelle {

// The application's start and end: its audio session and its remote control. [main]
class AppDelegate {
public:
    virtual ~AppDelegate() = default;

    std::shared_ptr<UIWindow> window;

    // Always true; a step that fails is told on the console and leaves out those after it.
    virtual bool applicationDidFinishLaunching();

    virtual void applicationWillTerminate();

    // The root screen watches these by itself.
    virtual void applicationWillResignActive() {}

    virtual void applicationDidEnterBackground() {}

    virtual void applicationWillEnterForeground() {}

    virtual void applicationDidBecomeActive() {}
};

} // namespace volvelle
