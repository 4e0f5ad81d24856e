#include "app/screens/MainWindow.h"

#include "app/screens/Appearance.h"
#include "app/screens/BrowserScreen.h"
#include "app/screens/DocumentScreen.h"
#include "app/screens/FadeOut.h"
#include "app/screens/FileAddress.h"
#include "app/screens/HelpScreen.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

constexpr QSize leastSize{720, 540};
constexpr QSize usualSize{1280, 800};

QList<QUrl> filesOf(const QMimeData& data)
{
    QList<QUrl> files = data.urls();
    files.removeIf([](const QUrl& url) { return !url.isLocalFile(); });
    return files;
}

} // namespace

class MainWindow::Host : public ScreenHost {
public:
    explicit Host(MainWindow& of) : window(&of) {}

    void show(const std::shared_ptr<UIViewController>& screen, bool animated,
              std::function<void()> done) override
    {
        if (window) {
            window->showScreen(screen, animated);
        }
        if (done) {
            done();
        }
    }

    void hide(const std::shared_ptr<UIViewController>& screen, bool animated,
              std::function<void()> done) override
    {
        if (window) {
            window->hideScreen(screen, animated);
        }
        if (done) {
            done();
        }
    }

    void showAlert(const UIAlertController& alert) override
    {
        if (window) {
            window->showAlert(alert);
        }
    }

private:
    QPointer<MainWindow> window;
};

class MainWindow::Maker : public UIStoryboard {
public:
    explicit Maker(MainWindow& of) : window(&of) {}

    std::shared_ptr<UIViewController> instantiateViewController(const std::string& identifier) override
    {
        return window ? window->make(identifier) : nullptr;
    }

private:
    QPointer<MainWindow> window;
};

MainWindow::MainWindow(std::string site)
    : helpSite(std::move(site)),
      stack(new QStackedWidget(this)),
      ring(new FocusRing(this)),
      bar(new MessageBar(this)),
      screenHost(std::make_shared<Host>(*this)),
      screenMaker(std::make_shared<Maker>(*this))
{
    setWindowTitle("Volvelle");
    setAcceptDrops(true);
    makeLayout();
    setMinimumSize(leastSize);
    resize(usualSize);
}

MainWindow::~MainWindow() = default;

void MainWindow::makeLayout()
{
    auto* all = new QWidget(this);
    auto* layout = new QVBoxLayout(all);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(stack, 1);
    layout->addWidget(bar);
    setCentralWidget(all);
    connect(bar, &MessageBar::acted, this, [this] { browserScreen->actOnNotice(); });
    connect(bar, &MessageBar::closed, this, [this] { browserScreen->dropNotice(); });
}

void MainWindow::showNotice()
{
    const auto notice = browserScreen->notice();
    if (notice) {
        bar->tell(notice->line, notice->action);
        return;
    }
    const bool hadFocus = bar->isAncestorOf(focusWidget());
    bar->hide();
    if (hadFocus) {
        takeFocus();
    }
}

void MainWindow::setRoot(const std::shared_ptr<DocumentBrowserViewController>& root, Thumbnails& thumbnails)
{
    rootScreen = root;
    browserScreen = new BrowserScreen(root, thumbnails, stack);
    connect(browserScreen, &BrowserScreen::noticeChanged, this, &MainWindow::showNotice);
    stack->addWidget(browserScreen);
    stack->setCurrentWidget(browserScreen);
    browserScreen->takeFocus();
}

DocumentScreen* MainWindow::document() const
{
    return shown.empty() ? nullptr : qobject_cast<DocumentScreen*>(shown.front());
}

std::shared_ptr<UIViewController> MainWindow::make(const std::string& identifier)
{
    if (identifier == "MIDIDocumentViewController") {
        return MIDIDocumentViewController::make([this](MIDIDocumentViewController& screen) {
            auto* layout = new DocumentScreen(screen, stack);
            connect(layout, &DocumentScreen::playingChanged, this, &MainWindow::playingChanged);
            keep(screen, layout);
        });
    }
    if (identifier == "showHelp" || identifier == "showInfo") {
        return HelpViewController::make(
            [this](HelpViewController& screen) { keep(screen, new HelpScreen(screen, stack)); }, helpSite);
    }
    return nullptr;
}

// Layouts of screens that never came up go with the next one that is made.
void MainWindow::keep(UIViewController& screen, QWidget* widget)
{
    std::erase_if(layouts, [](const auto& entry) {
        const Layout& layout = entry.second;
        if (layout.screen.expired() && layout.widget) {
            layout.widget->deleteLater();
        }
        return layout.screen.expired();
    });
    layouts[&screen] = {screen.weak_from_this(), widget};
}

void MainWindow::showScreen(const std::shared_ptr<UIViewController>& screen, bool animated)
{
    const auto found = layouts.find(screen.get());
    if (found == layouts.end() || !found->second.widget) {
        return;
    }
    QWidget* widget = found->second.widget;
    shown.emplace_back(widget);
    stack->addWidget(widget);
    switchTo(widget, animated);
}

void MainWindow::hideScreen(const std::shared_ptr<UIViewController>& screen, bool animated)
{
    const auto found = layouts.find(screen.get());
    if (found == layouts.end()) {
        return;
    }
    const QPointer<QWidget> widget = found->second.widget;
    layouts.erase(found);
    std::erase(shown, widget);
    switchTo(shown.empty() ? browserScreen : shown.back().data(), animated);
    if (widget) {
        stack->removeWidget(widget);
        widget->deleteLater();
    }
}

void MainWindow::switchTo(QWidget* widget, bool animated)
{
    const bool fades = animated && !Appearance::reducesMotion() && isVisible();
    const QPixmap before = fades ? stack->grab() : QPixmap();
    stack->setCurrentWidget(widget);
    if (fades) {
        new FadeOut(stack, before);
    }
    takeFocus();
    ring->raise();
    showNotice();
    Q_EMIT screenChanged();
}

void MainWindow::takeFocus()
{
    if (stack->currentWidget() == browserScreen) {
        browserScreen->takeFocus();
    } else {
        stack->currentWidget()->setFocus(Qt::OtherFocusReason);
    }
}

void MainWindow::showAlert(const UIAlertController& alert)
{
    auto* box = new QMessageBox(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(QString::fromStdString(alert.title));
    box->setTextFormat(Qt::PlainText);
    box->setText(QString::fromStdString(alert.title));
    box->setInformativeText(QString::fromStdString(alert.message));
    for (const UIAlertAction& action : alert.actions) {
        auto* button = box->addButton(QString::fromStdString(action.title), QMessageBox::ActionRole);
        if (&action == &alert.actions.front()) {
            box->setDefaultButton(button);
            box->setEscapeButton(button);
        }
    }
    connect(box, &QMessageBox::finished, this, [actions = alert.actions, box] {
        const auto index = static_cast<std::size_t>(box->buttons().indexOf(box->clickedButton()));
        if (!actions.empty()) {
            const auto& handler = actions[index < actions.size() ? index : 0].handler;
            if (handler) {
                handler();
            }
        }
    });
    box->open();
}

void MainWindow::askForPlace(const std::filesystem::path& proposal,
                             const std::function<void(std::optional<std::filesystem::path>)>& chosen)
{
    auto* dialog = new QFileDialog(this, "Save As", QFile::decodeName(proposalOf(proposal).c_str()),
                                   "MIDI files (*.mid)");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix("mid");
    dialog->setSupportedSchemes({"file"});
    connect(dialog, &QFileDialog::finished, this, [dialog, chosen, proposal](int result) {
        const auto answer = fileOf(dialog->selectedUrls().value(0));
        if (result == QDialog::Accepted && answer) {
            chosen(meantBy(*answer, proposal));
        } else {
            chosen(std::nullopt);
        }
    });
    dialog->open();
}

void MainWindow::bringToFront()
{
    setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    show();
    QWidget* const front =
        QApplication::activeModalWidget() != nullptr ? QApplication::activeModalWidget() : this;
    front->raise();
    front->activateWindow();
}

void MainWindow::keyPressEvent(QKeyEvent* event)
{
    const bool isHelp = !shown.empty() && qobject_cast<HelpScreen*>(shown.back()) != nullptr;
    if (event->modifiers() == Qt::ControlModifier && event->key() == Qt::Key_Q) {
        close();
    } else if (event->key() == Qt::Key_F1 && !event->isAutoRepeat() && !isHelp) {
        browserScreen->help();
    } else {
        QMainWindow::keyPressEvent(event);
    }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!filesOf(*event->mimeData()).empty()) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    for (const QUrl& url : filesOf(*event->mimeData())) {
        if (const auto file = fileOf(url)) {
            rootScreen->importOrWait(*file);
        } else {
            rootScreen->showMessage("File Error", file.error());
        }
    }
}

// What did not paint itself in a window that was minimised does so now.
void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && !isMinimized()) {
        stack->update();
    }
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    Q_EMIT closing();
    event->accept();
}

} // namespace volvelle
