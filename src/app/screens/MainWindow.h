#pragma once

#include "app/control/DocumentBrowserViewController.h"
#include "app/control/ScreenHost.h"
#include "app/control/UIStoryboard.h"
#include "app/screens/FocusRing.h"
#include "app/screens/MessageBar.h"
#include "app/screens/Thumbnails.h"

#include <QMainWindow>
#include <QPointer>
#include <QStackedWidget>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace volvelle {

class BrowserScreen;
class DocumentScreen;

// The window: shows one screen at a time, makes their layouts, and shows alerts. Keys: F1 help, Ctrl+Q quits.
// Files that are dropped on it are imported. [main]
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(std::string helpSite);
    ~MainWindow() override;

    // Shows the browser, whose logic is the root screen.
    void setRoot(const std::shared_ptr<DocumentBrowserViewController>& root, Thumbnails& thumbnails);

    // The window as host and maker of screens; they live as long as it does.
    const std::shared_ptr<ScreenHost>& host() const { return screenHost; }

    const std::shared_ptr<UIStoryboard>& storyboard() const { return screenMaker; }

    BrowserScreen* browser() const { return browserScreen; }

    // The layout of the document that is up; null for none.
    DocumentScreen* document() const;

    // To the front, out of the dock, with the keyboard.
    void bringToFront();

    // Asks where to save a file.
    void askForPlace(const std::filesystem::path& proposal,
                     const std::function<void(std::optional<std::filesystem::path>)>& chosen);

Q_SIGNALS:
    // Another screen is shown.
    void screenChanged();
    // The music of the document that is up began or ended.
    void playingChanged();
    // The user closes the window: the application is to end.
    void closing();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    class Host;
    class Maker;

    struct Layout {
        std::weak_ptr<UIViewController> screen;
        QPointer<QWidget> widget;
    };

    void makeLayout();
    void keep(UIViewController& screen, QWidget* widget);
    void showNotice();
    void showScreen(const std::shared_ptr<UIViewController>& screen, bool animated);
    void hideScreen(const std::shared_ptr<UIViewController>& screen, bool animated);
    void showAlert(const UIAlertController& alert);
    std::shared_ptr<UIViewController> make(const std::string& identifier);
    void switchTo(QWidget* widget, bool animated);
    void takeFocus();

    const std::string helpSite;
    QStackedWidget* stack;
    FocusRing* ring;
    BrowserScreen* browserScreen = nullptr;
    MessageBar* bar;
    std::shared_ptr<DocumentBrowserViewController> rootScreen;
    std::map<const UIViewController*, Layout> layouts; // of screens that were made
    std::vector<QPointer<QWidget>> shown;              // above the browser, the topmost last
    std::shared_ptr<ScreenHost> screenHost;
    std::shared_ptr<UIStoryboard> screenMaker;
};

} // namespace volvelle
