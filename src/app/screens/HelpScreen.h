#pragma once

#include "app/control/HelpViewController.h"

#include <QPointer>
#include <QUrl>
#include <QWidget>

#include <memory>

class QPdfDocument;
class QPdfView;
class QStackedWidget;
class QTextBrowser;

namespace volvelle {

// Shows PDF files and pages of text by itself, sites in the system's browser. [main]
class PageView : public WebView {
public:
    explicit PageView(QWidget* parent);
    ~PageView() override;

    QWidget* widget() const;

    void setDelegate(WebViewDelegate* value) override { delegate = value; }

    void loadRequest(const std::filesystem::path& file) override;
    void loadSite(const std::string& url) override;
    void loadHTMLString(const std::string& html, const std::filesystem::path& base) override;

private:
    bool isAllowed(const QUrl& url) const;
    void show(const QUrl& url);
    void turnTo(QWidget* page);

    WebViewDelegate* delegate = nullptr;
    QPointer<QStackedWidget> pages;
    QPdfDocument* document;
    QPdfView* pdf;
    QTextBrowser* text;
};

// The layout of the help: its pages, and Done. [main]
class HelpScreen : public QWidget {
    Q_OBJECT

public:
    explicit HelpScreen(HelpViewController& screen, QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    std::weak_ptr<HelpViewController> logic;
    std::shared_ptr<PageView> view;
};

} // namespace volvelle
