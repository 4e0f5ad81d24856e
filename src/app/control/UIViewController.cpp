#include "app/control/UIViewController.h"

#include "base/FatalStop.h"
#include "base/MainThread.h"

#include <utility>

namespace volvelle {

void UIViewController::loadViewIfNeeded()
{
    if (!isViewLoaded) {
        isViewLoaded = true;
        loadView();
        viewDidLoad();
    }
}

void UIViewController::present(const std::shared_ptr<UIViewController>& screen, bool animated,
                               Completion completion)
{
    assertMainThread();
    if (presented) {
        fatalStop("UIViewController::present() : Error: There is a screen above this one already.");
    }
    presented = screen;
    screen->presenting = weak_from_this();
    screen->host = host;
    screen->loadViewIfNeeded();
    screen->viewWillAppear(animated);
    if (const auto shownBy = host.lock()) {
        shownBy->show(screen, animated, std::move(completion));
    } else if (completion) {
        completion();
    }
}

void UIViewController::dismiss(bool animated, Completion completion)
{
    assertMainThread();
    const auto below = presenting.lock();
    if (!below) {
        if (completion) {
            completion();
        }
        return;
    }
    if (presented) {
        presented->dismiss(false, {});
    }
    const auto self = shared_from_this();
    presenting.reset();
    below->presented.reset();
    auto gone = [self, animated, completion = std::move(completion)] {
        self->viewDidDisappear(animated);
        if (completion) {
            completion();
        }
    };
    if (const auto shownBy = host.lock()) {
        shownBy->hide(self, animated, std::move(gone));
    } else {
        gone();
    }
}

void UIViewController::present(const UIAlertController& alert)
{
    if (const auto shownBy = host.lock()) {
        shownBy->showAlert(alert);
    }
}

} // namespace volvelle
