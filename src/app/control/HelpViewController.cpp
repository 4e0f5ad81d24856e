#include "app/control/HelpViewController.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/MainQueue.h"
#include "base/Paths.h"
#include "base/Text.h"
#include "services/files/SafeFile.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

std::optional<fs::path> resource(const std::string& name)
{
    for (const fs::path& folder : resourcesFolders()) {
        std::error_code error;
        if (fs::is_regular_file(folder / name, error)) {
            return folder / name;
        }
    }
    return std::nullopt;
}

// What follows the last point of the last name in the path of a location, in capitals.
std::string pathExtension(const std::string& url)
{
    const std::string path = url.substr(0, url.find_first_of("?#"));
    const std::size_t scheme = path.find("://");
    const std::size_t host = scheme == std::string::npos ? 0 : scheme + 3;
    const std::size_t start = path.find('/', host);
    if (start == std::string::npos) {
        return "";
    }
    std::string extension = fs::path(path.substr(start)).extension().string();
    extension.erase(0, 1);
    std::ranges::transform(extension, extension.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return extension;
}

} // namespace

std::shared_ptr<HelpViewController> HelpViewController::make(Layout layout, std::string site)
{
    return std::shared_ptr<HelpViewController>(new HelpViewController(std::move(layout), std::move(site)));
}

HelpViewController::HelpViewController(Layout layout, std::string site)
    : layout(std::move(layout)), site(std::move(site))
{
}

HelpViewController::~HelpViewController()
{
    if (const auto view = webView.lock()) {
        view->setDelegate(nullptr);
    }
}

void HelpViewController::loadView()
{
    if (layout) {
        layout(*this);
    }
}

void HelpViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    if (const auto view = webView.lock()) {
        view->setDelegate(this);
    }
}

void HelpViewController::viewWillAppear(bool animated)
{
    UIViewController::viewWillAppear(animated);
    void (HelpViewController::*task)() = nullptr;
    if (identifier == "showDocument") {
        task = &HelpViewController::loadDocument;
    } else if (identifier == "showHelp") {
        task = &HelpViewController::loadHelpPdf;
    } else if (identifier == "showInfo") {
        task = &HelpViewController::navigateWeb;
    }
    if (task != nullptr) {
        mainQueue().post([self = std::static_pointer_cast<HelpViewController>(shared_from_this()), task] {
            ((*self).*task)();
        });
    }
}

void HelpViewController::loadDocument()
{
    const auto view = webView.lock();
    if (view && documentURL) {
        view->loadRequest(*documentURL);
    }
}

void HelpViewController::loadHelpPdf()
{
    const fs::path manual = required(resource("manual.pdf"));
    if (const auto view = webView.lock()) {
        view->loadRequest(manual);
    }
}

void HelpViewController::navigateWeb()
{
    const auto view = webView.lock();
    if (view && !site.empty()) {
        view->loadSite(site);
    }
}

void HelpViewController::loadHelpHtml()
{
    const fs::path help = resource("help.html").value_or("help.html");
    std::vector<std::uint8_t> bytes;
    if (const OSStatus status = readFile(help, bytes); status != noErr) {
        directPrint("'", help.string(), "' could not be read. Status: ", status);
        return;
    }
    if (const auto view = webView.lock()) {
        view->loadHTMLString(std::string(bytes.begin(), bytes.end()), help);
    }
}

void HelpViewController::onButtonExit()
{
    dismiss(true, [] {});
}

NavigationPolicy HelpViewController::webViewDecidePolicyForAction(const std::string& url)
{
    directPrint("navigationAction: ", url);
    return NavigationPolicy::allow;
}

NavigationPolicy HelpViewController::webViewDecidePolicyForResponse(const std::string& url)
{
    directPrint("navigationResponse: ", url);
    const std::string extension = pathExtension(url);
    const bool isShown = extension.empty() || extension == "PDF" || extension == "HTML";
    return isShown ? NavigationPolicy::allow : NavigationPolicy::cancel;
}

bool HelpViewController::webViewCreateWebView(const std::string& url)
{
    directPrint("createWebViewWith:", url);
    return false;
}

void HelpViewController::prepareInfo(const std::string& which)
{
    identifier = which;
}

} // namespace volvelle
