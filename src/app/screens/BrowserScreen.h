#pragma once

#include "app/control/DocumentBrowserViewController.h"
#include "app/screens/EmptyBrowser.h"
#include "app/screens/MessageBar.h"
#include "app/screens/Thumbnails.h"
#include "app/screens/TileModel.h"

#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QStackedWidget>
#include <QWidget>

#include <memory>

namespace volvelle {

// The layout of the browser: a header, the tiles, a footer. Keys: Ctrl+N new, Ctrl+O import, Ctrl+F search,
// Return opens, F2 renames, Ctrl+D duplicates, Delete moves to the trash, Ctrl+Z brings back, F1 help, Ctrl+Q
// quits. [main]
class BrowserScreen : public QWidget {
    Q_OBJECT

public:
    BrowserScreen(std::shared_ptr<DocumentBrowserViewController> logic, Thumbnails& thumbnails,
                  QWidget* parent = nullptr);
    ~BrowserScreen() override;

    // The keyboard's focus to the tiles, or to New where there are none.
    void takeFocus();

    // Shows what is there now.
    void refresh();

public Q_SLOTS:
    void import();
    void about();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void makeHeader();
    void makeTiles();
    void makeFooter();
    void makeLayout();
    void addAction(const QString& text, const QString& selector, const QKeySequence& key,
                   void (BrowserScreen::*action)());
    void showMenu(const QPoint& at);
    void showBrowser();
    void showBar();
    void showSelection();
    void open();
    void rename();
    void duplicate();
    void moveToTrash();
    void undo();
    void reveal();

    const std::shared_ptr<DocumentBrowserViewController> logic;
    QLabel* title = nullptr;
    QLineEdit* search = nullptr;
    QPushButton* importButton = nullptr;
    QPushButton* newButton = nullptr;
    QStackedWidget* middle = nullptr;
    QListView* tiles = nullptr;
    EmptyBrowser* empty = nullptr;
    QLabel* noHit = nullptr;
    MessageBar* bar = nullptr;
    QLabel* count = nullptr;
    TileModel* model = nullptr;
    std::vector<std::pair<QAction*, QString>> actions; // with their selectors
    bool isShowing = false;                            // what the logic has, so that it is not told it again
};

} // namespace volvelle
