#include "app/screens/MainWindow.h"

#include "app/screens/Appearance.h"
#include "app/screens/BrowserScreen.h"
#include "app/screens/DocumentScreen.h"
#include "app/screens/FadeOut.h"
#include "app/screens/HelpScreen.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace volvelle {

namespace {

constexpr QSize leastSize{720, 540};
constexpr QSize usualSize{1280, 800};

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
      screenHost(std::make_shared<Host>(*this)),
      screenMaker(std::make_shared<Maker>(*this))
{
    setWindowTitle("Volvelle");
    setCentralWidget(stack);
    setMinimumSize(leastSize);
    resize(usualSize);
}

MainWindow::~MainWindow() = default;

void MainWindow::setRoot(const std::shared_ptr<DocumentBrowserViewController>& root, Thumbnails& thumbnails)
{
    browserScreen = new BrowserScreen(root, thumbnails, stack);
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
            layouts[&screen] = new DocumentScreen(screen, stack);
        });
    }
    if (identifier == "showHelp" || identifier == "showInfo") {
        return HelpViewController::make(
            [this](HelpViewController& screen) { layouts[&screen] = new HelpScreen(screen, stack); },
            helpSite);
    }
    return nullptr;
}

void MainWindow::showScreen(const std::shared_ptr<UIViewController>& screen, bool animated)
{
    const auto found = layouts.find(screen.get());
    if (found == layouts.end() || !found->second) {
        return;
    }
    QWidget* widget = found->second;
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
    const QPointer<QWidget> widget = found->second;
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
    if (animated && !Appearance::reducesMotion() && isVisible()) {
        new FadeOut(stack, stack->grab());
    }
    stack->setCurrentWidget(widget);
    if (widget == browserScreen) {
        browserScreen->takeFocus();
    } else {
        widget->setFocus(Qt::OtherFocusReason);
    }
    ring->raise();
    Q_EMIT screenChanged();
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
        box->setDefaultButton(button);
        box->setEscapeButton(button);
        connect(button, &QPushButton::clicked, this, [handler = action.handler, box] {
            box->hide();
            if (handler) {
                handler();
            }
        });
    }
    box->open();
}

void MainWindow::askForPlace(const std::filesystem::path& proposal,
                             const std::function<void(std::optional<std::filesystem::path>)>& chosen)
{
    auto* dialog =
        new QFileDialog(this, "Save As", QFile::decodeName(proposal.c_str()), "MIDI files (*.mid)");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix("mid");
    connect(dialog, &QFileDialog::finished, this, [dialog, chosen](int result) {
        const QStringList files = dialog->selectedFiles();
        if (result == QDialog::Accepted && !files.isEmpty()) {
            chosen(std::filesystem::path(QFile::encodeName(files.front()).toStdString()));
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
    raise();
    activateWindow();
}

void MainWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Quit)) {
        close();
    } else {
        QMainWindow::keyPressEvent(event);
    }
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    Q_EMIT closing();
    event->accept();
}

} // namespace volvelle
