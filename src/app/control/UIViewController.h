#pragma once

#include "app/control/ScreenHost.h"
#include "app/control/UIAlertController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace volvelle {

// The logic of a screen. What is seen of it is a layout, which loadView() connects, and a host shows it.
//
// A screen appears when it is presented and disappears when it is dismissed, once each; that its window is
// minimised or lies behind another changes nothing. Held by std::shared_ptr: by who presents it, as long as
// it is up. [main]
class UIViewController : public std::enable_shared_from_this<UIViewController> {
public:
    using Completion = std::function<void()>;

    virtual ~UIViewController() = default;

    std::optional<std::string> title;
    std::weak_ptr<ScreenHost> host; // none: screens come and go unseen

    // Has the view made and viewDidLoad() called, the first time.
    void loadViewIfNeeded();

    // Shows `screen` above this one, which must have nothing above it; `completion` once it is up.
    void present(const std::shared_ptr<UIViewController>& screen, bool animated, Completion completion);

    // Takes this screen away, with what was presented above it; `completion` once it is gone. Does nothing
    // for a screen that is not up, but for the completion.
    void dismiss(bool animated, Completion completion);

    // Shows an alert, and does not wait for it.
    void present(const UIAlertController& alert);

    const std::shared_ptr<UIViewController>& presentedViewController() const { return presented; }

    bool isUp() const { return !presenting.expired(); }

    virtual void viewDidLoad() {}

    virtual void viewWillAppear(bool /*animated*/) {}

    virtual void viewDidDisappear(bool /*animated*/) {}

    // Before the layout takes another size.
    virtual void viewWillLayoutSubviews() {}

protected:
    // Connects the layout.
    virtual void loadView() {}

private:
    bool isViewLoaded = false;
    std::shared_ptr<UIViewController> presented;
    std::weak_ptr<UIViewController> presenting;
};

} // namespace volvelle
