#pragma once

#include "app/control/DocumentBrowserViewController.h"
#include "app/screens/EmptyBrowser.h"
#include "app/screens/Thumbnails.h"
#include "app/screens/TileModel.h"
#include "app/screens/TileView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QWidget>

#include <filesystem>
#include <functional>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace volvelle {

// The layout of the browser: a header, the tiles, a footer. Keys: Ctrl+N new, Ctrl+O import, Ctrl+F search,
// Return opens, F2 renames, Ctrl+D duplicates, Delete moves to the trash, Ctrl+Z brings back, F1 help, Ctrl+Q
// quits. [main]
class BrowserScreen : public QWidget {
    Q_OBJECT

public:
    // One line that the window tells below the screens, with what can be done about it.
    struct Notice {
        QString line;
        QString action; // empty for none
    };

    BrowserScreen(std::shared_ptr<DocumentBrowserViewController> browser, Thumbnails& thumbnails,
                  QWidget* parent = nullptr);
    ~BrowserScreen() override;

    // The keyboard's focus to the tiles, with the selected one in view, or to New where there are none.
    void takeFocus();

    // Why a name was refused, as long as it is being edited; else the logic's quiet line, until the browser
    // comes again, and with it documents that wait, else what was moved to the trash last and not left since;
    // else why a name was refused that is edited no more; no value for none of them.
    std::optional<Notice> notice() const;
    void actOnNotice();
    void dropNotice();

    // Shows a file in the desktop's file manager.
    std::function<void(const std::filesystem::path& file)> reveal = [](const auto&) {};

    // Shows what is there now.
    void refresh();

public Q_SLOTS:
    void import();
    void about();
    void help();

Q_SIGNALS:
    // Perhaps another notice().
    void noticeChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void makeHeader();
    void makeTiles();
    void makeFooter();
    void makeLayout();
    void addAction(const QString& text, const QString& selector, const QKeySequence& key,
                   void (BrowserScreen::*action)());
    void showMenu(const QPoint& at);
    void closeMenuAndEditor();
    void showBrowser();
    void showPage();
    void showSelection();
    void followScreen();
    void open();
    void rename();
    void takeName(const std::filesystem::path& file, const QString& name);
    QLineEdit* nameField() const; // null while no name is edited

    bool isNaming() const { return nameField() != nullptr; }

    std::optional<Notice> offer() const; // the part of the notice with something to do
    void tellRefusal(const QString& line);
    void duplicate();
    void moveToTrash();
    void undo();
    void revealSelection();

    const std::shared_ptr<DocumentBrowserViewController> logic;
    QHBoxLayout* header = nullptr;
    QHBoxLayout* footer = nullptr;
    QLabel* title = nullptr;
    QLineEdit* search = nullptr;
    QPushButton* importButton = nullptr;
    QPushButton* newButton = nullptr;
    QStackedWidget* middle = nullptr;
    TileView* tiles = nullptr;
    EmptyBrowser* empty = nullptr;
    QLabel* noHit = nullptr;
    QLabel* count = nullptr;
    TileModel* model = nullptr;
    QPointer<QMenu> menu;                              // that is open
    std::vector<std::pair<QAction*, QString>> actions; // with their selectors
    std::optional<std::filesystem::path> scrolledTo;   // the selection that was brought into view last
    QString refusal;                                   // of the last name; empty for none
    QString trashed;                                   // what was moved to the trash; empty for nothing
    int margin = -1;                                   // pixels left of the tiles
    bool isShowing = false;                            // what the logic has, so that it is not told it again
};

} // namespace volvelle
