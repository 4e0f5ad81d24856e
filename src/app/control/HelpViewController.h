#pragma once

#include "app/control/ScreenControls.h"
#include "app/control/UIViewController.h"
#include "app/control/WebView.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace volvelle {

// The help: "showHelp" shows the manual, "showDocument" the file at `documentURL`, "showInfo" the maker's
// site, any other identifier nothing. Made by make(). [main]
class HelpViewController : public UIViewController, public WebViewDelegate {
public:
    using Layout = std::function<void(HelpViewController& screen)>;

    // `site` is the maker's site, empty for none.
    static std::shared_ptr<HelpViewController> make(Layout layout, std::string site);

    ~HelpViewController() override;
    HelpViewController(const HelpViewController&) = delete;
    HelpViewController& operator=(const HelpViewController&) = delete;

    std::string identifier = "showHelp";
    std::optional<std::filesystem::path> documentURL;
    std::weak_ptr<WebView> webView;
    std::shared_ptr<UIButton> buttonExit;

    virtual void onButtonExit();

    // All are told on the console. A response is shown where its path has no ending, "PDF" or "HTML"; a link
    // never gets a new window.
    NavigationPolicy webViewDecidePolicyForAction(const std::string& url) override;
    NavigationPolicy webViewDecidePolicyForResponse(const std::string& url) override;
    bool webViewCreateWebView(const std::string& url) override;

    virtual void loadHelpHtml(); // nothing calls it but tests

private:
    virtual void loadHelpPdf(); // a missing manual is a fatal stop
    virtual void loadDocument();
    virtual void navigateWeb();

public:
    virtual void prepareInfo(const std::string& which);

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;

protected:
    HelpViewController(Layout layout, std::string site);
    void loadView() override;

private:
    Layout layout;
    std::string site;
};

} // namespace volvelle
