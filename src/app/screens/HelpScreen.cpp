#include "app/screens/HelpScreen.h"

#include "app/screens/Controls.h"

#include <QDesktopServices>
#include <QFile>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPdfDocument>
#include <QPdfView>
#include <QStackedWidget>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace volvelle {

PageView::PageView(QWidget* parent)
    : pages(new QStackedWidget(parent)),
      document(new QPdfDocument(pages)),
      pdf(new QPdfView(pages)),
      text(new QTextBrowser(pages))
{
    pdf->setDocument(document);
    pdf->setPageMode(QPdfView::PageMode::MultiPage);
    pdf->setZoomMode(QPdfView::ZoomMode::FitToWidth);
    pdf->setAccessibleName("Manual");
    text->setOpenLinks(false);
    text->setAccessibleName("Help");
    pages->addWidget(text);
    pages->addWidget(pdf);
    pages->setFocusProxy(text);
    QObject::connect(text, &QTextBrowser::anchorClicked, pages, [this](const QUrl& url) { show(url); });
}

PageView::~PageView() = default;

QWidget* PageView::widget() const
{
    return pages;
}

bool PageView::isAllowed(const QUrl& url) const
{
    const std::string location = url.toString().toStdString();
    return delegate == nullptr ||
           (delegate->webViewDecidePolicyForAction(location) == NavigationPolicy::allow &&
            delegate->webViewDecidePolicyForResponse(location) == NavigationPolicy::allow);
}

void PageView::show(const QUrl& url)
{
    if (!pages || !isAllowed(url)) {
        return;
    }
    if (!url.isLocalFile() && !url.isRelative()) {
        QDesktopServices::openUrl(url);
    } else if (url.path().endsWith(".pdf", Qt::CaseInsensitive)) {
        document->load(url.toLocalFile());
        turnTo(pdf);
    } else {
        text->setSource(url);
        turnTo(text);
    }
}

void PageView::turnTo(QWidget* page)
{
    const bool hadFocus = pages->focusProxy()->hasFocus();
    pages->setCurrentWidget(page);
    pages->setFocusProxy(page);
    if (hadFocus) {
        page->setFocus(Qt::OtherFocusReason);
    }
}

void PageView::loadRequest(const std::filesystem::path& file)
{
    show(QUrl::fromLocalFile(QFile::decodeName(file.c_str())));
}

void PageView::loadSite(const std::string& url)
{
    show(QUrl(QString::fromStdString(url)));
}

void PageView::loadHTMLString(const std::string& html, const std::filesystem::path& base)
{
    if (pages) {
        text->setSearchPaths({QFile::decodeName(base.parent_path().c_str())});
        text->setHtml(QString::fromStdString(html));
        turnTo(text);
    }
}

HelpScreen::HelpScreen(HelpViewController& screen, QWidget* parent)
    : QWidget(parent),
      logic(std::static_pointer_cast<HelpViewController>(screen.shared_from_this())),
      view(std::make_shared<PageView>(this))
{
    auto* exit = makeButton("Done", ButtonKind::quiet, "Close the help", "Esc", this);
    exit->setMinimumWidth(120);
    screen.webView = view;
    screen.buttonExit = std::make_shared<ScreenButton>(
        exit, [](QWidget& button, bool isHidden) { button.setVisible(!isHidden); });
    connect(exit, &QPushButton::clicked, this, [this] {
        if (const auto there = logic.lock()) {
            there->onButtonExit();
        }
    });
    auto* foot = new QHBoxLayout;
    foot->setContentsMargins(40, 8, 40, 12);
    foot->addStretch(1);
    foot->addWidget(exit);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(view->widget(), 1);
    all->addLayout(foot);
    setFocusProxy(view->widget());
}

void HelpScreen::keyPressEvent(QKeyEvent* event)
{
    const auto there = logic.lock();
    if (there && event->key() == Qt::Key_Escape && !event->isAutoRepeat()) {
        there->onButtonExit();
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace volvelle
