#include "app/screens/BrowserScreen.h"

#include "app/screens/Appearance.h"
#include "app/screens/FileAddress.h"
#include "app/screens/TileDelegate.h"

#include <QAction>
#include <QFileDialog>
#include <QKeyEvent>
#include <QUrl>
#include <QWindow>

#include <utility>

namespace volvelle {

BrowserScreen::BrowserScreen(std::shared_ptr<DocumentBrowserViewController> browser, Thumbnails& thumbnails,
                             QWidget* parent)
    : QWidget(parent), logic(std::move(browser)), model(new TileModel(thumbnails, this))
{
    makeHeader();
    makeTiles();
    makeFooter();
    makeLayout();
    addAction("Open", "open:", QKeySequence(), &BrowserScreen::open);
    addAction("Rename", "rename:", QKeySequence(Qt::Key_F2), &BrowserScreen::rename);
    addAction("Duplicate", "duplicate:", QKeySequence(Qt::CTRL | Qt::Key_D), &BrowserScreen::duplicate);
    addAction("Delete", "delete:", QKeySequence::Delete, &BrowserScreen::moveToTrash);
    addAction("Show in File Manager", "open:", QKeySequence(), &BrowserScreen::revealSelection);
    addAction("Bring Back", "undo:", QKeySequence::Undo, &BrowserScreen::undo);
    logic->onBrowserChanged = [this] { showBrowser(); };
    logic->onSelectionSought = [this] { tiles->scrollTo(tiles->currentIndex()); };
    connect(&Appearance::shared(), &Appearance::changed, this, [this] { tiles->viewport()->update(); });
    showBrowser();
}

BrowserScreen::~BrowserScreen()
{
    logic->onBrowserChanged = {};
    logic->onSelectionSought = {};
}

void BrowserScreen::addAction(const QString& text, const QString& selector, const QKeySequence& key,
                              void (BrowserScreen::*action)())
{
    auto* added = new QAction(text, this);
    added->setShortcut(key);
    added->setShortcutContext(Qt::WidgetShortcut);
    added->setAutoRepeat(false);
    tiles->addAction(added);
    connect(added, &QAction::triggered, this, action);
    actions.emplace_back(added, selector);
}

void BrowserScreen::showMenu(const QPoint& at)
{
    menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const auto& [action, selector] : actions) {
        action->setEnabled(logic->canPerformAction(selector.toStdString()));
        menu->addAction(action);
    }
    connect(menu, &QMenu::aboutToHide, this, [this] {
        for (const auto& [action, selector] : actions) {
            action->setEnabled(true);
        }
    });
    menu->popup(tiles->viewport()->mapToGlobal(at));
}

// What is typed there is dropped: the file may be open by now.
void BrowserScreen::closeMenuAndEditor()
{
    if (menu) {
        menu->close();
    }
    if (QLineEdit* const field = nameField()) {
        Q_EMIT tiles->itemDelegate()->closeEditor(field, QAbstractItemDelegate::RevertModelCache);
    }
}

void BrowserScreen::showBrowser()
{
    isShowing = true;
    model->show(logic->documents());
    showPage();
    if (search->text() != QString::fromStdString(logic->searchText())) {
        search->setText(QString::fromStdString(logic->searchText()));
    }
    count->setText(QString::fromStdString(logic->countLine()));
    showSelection();
    isShowing = false;
    Q_EMIT noticeChanged();
}

void BrowserScreen::showPage()
{
    const bool isEmpty = logic->allDocuments().empty();
    const QString hitLine = QString::fromStdString(logic->emptySearchLine());
    noHit->setText(hitLine);
    QWidget* const page = isEmpty             ? static_cast<QWidget*>(empty)
                          : hitLine.isEmpty() ? static_cast<QWidget*>(tiles)
                                              : noHit;
    const bool hadFocus = isVisible() && isAncestorOf(window()->focusWidget()) && !search->hasFocus();
    const bool isOther = page != middle->currentWidget();
    middle->setCurrentWidget(page);
    for (QWidget* control : {static_cast<QWidget*>(search), static_cast<QWidget*>(importButton),
                             static_cast<QWidget*>(newButton)}) {
        control->setVisible(!isEmpty);
    }
    if (isOther && hadFocus) {
        takeFocus();
    }
}

void BrowserScreen::showSelection()
{
    const auto& selection = logic->selection();
    const QModelIndex selected = selection ? model->indexOf(*selection) : QModelIndex();
    if (selected.isValid()) {
        tiles->setCurrentIndex(selected);
        if (scrolledTo != logic->selection()) {
            tiles->scrollTo(selected);
        }
    } else {
        tiles->selectionModel()->clear();
    }
    scrolledTo = logic->selection();
}

std::optional<BrowserScreen::Notice> BrowserScreen::notice() const
{
    if (!refusal.isEmpty() && isNaming()) {
        return Notice{refusal, ""};
    }
    const QString quiet = QString::fromStdString(logic->quietLine());
    auto offered = offer();
    if (!quiet.isEmpty()) {
        return offered ? Notice{quiet + ' ' + offered->line, offered->action} : Notice{quiet, ""};
    }
    return offered || refusal.isEmpty() ? offered : Notice{refusal, ""};
}

std::optional<BrowserScreen::Notice> BrowserScreen::offer() const
{
    if (!logic->waitingDocuments().empty()) {
        return Notice{QString::fromStdString(logic->waitingLine()), "Open now"};
    }
    if (!trashed.isEmpty()) {
        return Notice{QString("'%1' was moved to the trash.").arg(trashed), "Undo"};
    }
    return std::nullopt;
}

void BrowserScreen::actOnNotice()
{
    if (!logic->waitingDocuments().empty()) {
        logic->openWaitingDocument();
    } else if (!trashed.isEmpty()) {
        undo();
    }
}

void BrowserScreen::dropNotice()
{
    const bool hasOther =
        !logic->quietLine().empty() || !logic->waitingDocuments().empty() || !trashed.isEmpty();
    if (!refusal.isEmpty() && (isNaming() || !hasOther)) {
        tellRefusal("");
    } else if (!logic->quietLine().empty()) {
        logic->tellQuietly("");
    } else if (!logic->waitingDocuments().empty()) {
        logic->forgetWaitingDocuments();
    } else {
        trashed.clear();
        Q_EMIT noticeChanged();
    }
}

void BrowserScreen::takeFocus()
{
    if (logic->allDocuments().empty()) {
        empty->newButton->setFocus(Qt::OtherFocusReason);
    } else if (middle->currentWidget() == noHit) {
        search->setFocus(Qt::OtherFocusReason);
    } else {
        tiles->setFocus(Qt::OtherFocusReason);
        tiles->scrollTo(tiles->currentIndex());
    }
}

void BrowserScreen::refresh()
{
    logic->refresh();
}

void BrowserScreen::open()
{
    logic->pickSelection();
}

void BrowserScreen::rename()
{
    if (logic->canPerformAction("rename:")) {
        tiles->edit(tiles->currentIndex());
    }
}

QLineEdit* BrowserScreen::nameField() const
{
    return qobject_cast<QLineEdit*>(tiles->indexWidget(tiles->currentIndex()));
}

// What is refused stays in its field, unless the user went on somewhere else.
void BrowserScreen::takeName(const std::filesystem::path& file, const QString& name)
{
    logic->select(file);
    const Result<> renamed = logic->renameSelection(name.toStdString());
    if (renamed || !isVisible()) {
        return;
    }
    tellRefusal(QString::fromStdString(renamed.error()));
    const QModelIndex tile = model->indexOf(file);
    if (tiles->hasFocus() && tile.isValid()) {
        tiles->edit(tile);
        Q_EMIT noticeChanged();
        if (auto* field = qobject_cast<QLineEdit*>(tiles->indexWidget(tile))) {
            field->setText(name);
            field->setModified(true);
        }
    }
}

void BrowserScreen::tellRefusal(const QString& line)
{
    if (std::exchange(refusal, line) != line) {
        Q_EMIT noticeChanged();
    }
}

void BrowserScreen::duplicate()
{
    logic->duplicateSelection();
}

void BrowserScreen::moveToTrash()
{
    const QModelIndex current = tiles->currentIndex();
    const FolderDocument* document = model->document(current);
    if (document == nullptr) {
        return;
    }
    const FolderDocument before = *document;
    logic->moveSelectionToTrash();
    if (!model->indexOf(before.location).isValid()) {
        trashed = QString::fromStdString(before.name);
        logic->tellQuietly("");
        Q_EMIT noticeChanged();
    }
}

void BrowserScreen::undo()
{
    trashed.clear();
    logic->undo();
    Q_EMIT noticeChanged();
}

void BrowserScreen::revealSelection()
{
    if (const auto& file = logic->selection()) {
        reveal(*file);
    }
}

void BrowserScreen::import()
{
    auto* dialog =
        new QFileDialog(this, "Import", QString(), "MIDI files (*.mid *.midi *.MID);;All files (*)");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setSupportedSchemes({"file"});
    // Its signals tell addresses only where it is the desktop's own dialog.
    connect(dialog, &QFileDialog::accepted, this, [this, dialog] {
        if (const auto file = fileOf(dialog->selectedUrls().value(0))) {
            logic->importOrWait(*file);
        } else {
            logic->showMessage("File Error", file.error());
        }
    });
    dialog->open();
}

void BrowserScreen::about()
{
    logic->showAbout();
}

void BrowserScreen::help()
{
    logic->showHelp();
}

void BrowserScreen::keyPressEvent(QKeyEvent* event)
{
    if (event->isAutoRepeat()) {
        return;
    }
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->matches(QKeySequence::New)) {
        logic->createDocument();
    } else if (event->matches(QKeySequence::Open)) {
        import();
    } else if (event->matches(QKeySequence::Find)) {
        search->setFocus(Qt::ShortcutFocusReason);
        search->selectAll();
    } else if (event->matches(QKeySequence::Undo)) {
        undo();
    } else if (isReturn) {
        // That of a name's field is for the name.
        if (!isNaming()) {
            open();
        }
    } else if (event->key() == Qt::Key_Down && search->hasFocus()) {
        takeFocus();
    } else if (event->key() == Qt::Key_Escape && search->hasFocus()) {
        search->clear();
        takeFocus();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void BrowserScreen::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const int wanted = Appearance::margin(width());
    if (std::exchange(margin, wanted) != wanted) {
        header->setContentsMargins(margin, 36, margin, 24 - TileDelegate::gapDown / 2);
        footer->setContentsMargins(margin, 0, margin - 2, 0);
        tiles->setMargin(margin - TileDelegate::padding - TileDelegate::gapAcross / 2);
    }
}

void BrowserScreen::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (QWindow* const handle = window()->windowHandle()) {
        connect(handle, &QWindow::screenChanged, this, &BrowserScreen::followScreen, Qt::UniqueConnection);
    }
    followScreen();
    if (!event->spontaneous()) {
        logic->tellQuietly("");
    }
}

void BrowserScreen::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous()) {
        closeMenuAndEditor();
        trashed.clear();
        refusal.clear();
    }
}

void BrowserScreen::followScreen()
{
    model->setPixelRatio(devicePixelRatioF());
}

} // namespace volvelle
