#pragma once

#include <functional>
#include <memory>

namespace volvelle {

class UIViewController;
struct UIAlertController;

// What shows the screens: a window, or a test. [main]
class ScreenHost {
public:
    virtual ~ScreenHost() = default;

    // Brings the layout of a screen to the front; calls `shown` once it is up, at once or later.
    virtual void show(const std::shared_ptr<UIViewController>& screen, bool animated,
                      std::function<void()> shown) = 0;

    // Takes it away; calls `hidden` once it is gone, at once or later.
    virtual void hide(const std::shared_ptr<UIViewController>& screen, bool animated,
                      std::function<void()> hidden) = 0;

    // Shows an alert and returns; the handler of the button that is pressed is called later.
    virtual void showAlert(const UIAlertController& alert) = 0;
};

} // namespace volvelle
