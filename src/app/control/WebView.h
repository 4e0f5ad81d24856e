#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace volvelle {

enum class NavigationPolicy { cancel = 0, allow = 1 };

// What a view of pages asks before it goes somewhere; locations are URLs as text. [main]
class WebViewDelegate {
public:
    virtual ~WebViewDelegate() = default;

    virtual NavigationPolicy webViewDecidePolicyForAction(const std::string& url) = 0;
    virtual NavigationPolicy webViewDecidePolicyForResponse(const std::string& url) = 0;

    // Whether a link that asks for a new window gets one.
    virtual bool webViewCreateWebView(const std::string& url) = 0;
};

// Shows a PDF, a page of text, or a location. [main]
class WebView {
public:
    virtual ~WebView() = default;

    // Not owned; null for none.
    virtual void setDelegate(WebViewDelegate* delegate) = 0;

    // A file, or the location of a site.
    virtual void loadRequest(const std::filesystem::path& file) = 0;
    virtual void loadSite(const std::string& url) = 0;
    virtual void loadHTMLString(const std::string& html, const std::filesystem::path& base) = 0;
};

} // namespace volvelle
