#include "app/screens/BrowserScreen.h"

#include "app/screens/Appearance.h"
#include "app/screens/Controls.h"
#include "app/screens/TileDelegate.h"

#include <QAction>
#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QUrl>
#include <QVBoxLayout>

#include <utility>

namespace volvelle {

namespace {

constexpr int searchWidth = 264; // pixels
constexpr int controlHeight = 36;
constexpr int footerHeight = 44;

std::filesystem::path pathOf(const QString& file)
{
    return QFile::encodeName(file).toStdString();
}

QStringList filesOf(const QMimeData& data)
{
    QStringList files;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile()) {
            files << url.toLocalFile();
        }
    }
    return files;
}

} // namespace

BrowserScreen::BrowserScreen(std::shared_ptr<DocumentBrowserViewController> browser, Thumbnails& thumbnails,
                             QWidget* parent)
    : QWidget(parent), logic(std::move(browser)), model(new TileModel(thumbnails, this))
{
    setAcceptDrops(true);
    makeHeader();
    makeTiles();
    makeFooter();
    makeLayout();
    addAction("Open", "open:", QKeySequence(), &BrowserScreen::open);
    addAction("Rename", "rename:", QKeySequence(Qt::Key_F2), &BrowserScreen::rename);
    addAction("Duplicate", "duplicate:", QKeySequence(Qt::CTRL | Qt::Key_D), &BrowserScreen::duplicate);
    addAction("Delete", "delete:", QKeySequence::Delete, &BrowserScreen::moveToTrash);
    addAction("Show in File Manager", "open:", QKeySequence(), &BrowserScreen::reveal);
    addAction("Bring Back", "undo:", QKeySequence::Undo, &BrowserScreen::undo);
    logic->onBrowserChanged = [this] { showBrowser(); };
    connect(&Appearance::shared(), &Appearance::changed, this, [this] { tiles->viewport()->update(); });
    showBrowser();
}

BrowserScreen::~BrowserScreen()
{
    logic->onBrowserChanged = {};
}

void BrowserScreen::makeHeader()
{
    title = new QLabel("Ideas", this);
    title->setFont(Appearance::font(Appearance::Text::display));
    search = new QLineEdit(this);
    search->setPlaceholderText("Search");
    search->setAccessibleName("Search");
    search->setToolTip(tipWithKey("Search by name", "Ctrl+F"));
    search->setFixedSize(searchWidth, controlHeight);
    importButton = makeButton("Import", ButtonKind::secondary, "Copy MIDI files here", "Ctrl+O", this);
    newButton = makeButton("New", ButtonKind::primary, "A new idea", "Ctrl+N", this);
    for (QPushButton* button : {importButton, newButton}) {
        button->setFixedSize(80, controlHeight);
        button->setStyleSheet("padding: 0 8px;");
    }
    connect(search, &QLineEdit::textChanged, this,
            [this](const QString& text) { logic->setSearchText(text.toStdString()); });
    connect(importButton, &QPushButton::clicked, this, &BrowserScreen::import);
    connect(newButton, &QPushButton::clicked, this, [this] { logic->createDocument(); });
}

void BrowserScreen::makeTiles()
{
    middle = new QStackedWidget(this);
    tiles = new QListView(middle);
    tiles->setViewMode(QListView::IconMode);
    tiles->setModel(model);
    tiles->setItemDelegate(new TileDelegate(tiles));
    tiles->setUniformItemSizes(true);
    tiles->setResizeMode(QListView::Adjust);
    tiles->setMovement(QListView::Static);
    tiles->setSelectionMode(QAbstractItemView::SingleSelection);
    tiles->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tiles->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    tiles->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tiles->verticalScrollBar()->setSingleStep(40);
    tiles->setMouseTracking(true);
    tiles->setContextMenuPolicy(Qt::CustomContextMenu);
    tiles->setAccessibleName("Ideas");
    tiles->setProperty("ownFocusRing", true);
    connect(tiles, &QListView::doubleClicked, this, [this] { open(); });
    connect(tiles, &QListView::customContextMenuRequested, this, &BrowserScreen::showMenu);
    connect(tiles->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index) {
                const FolderDocument* document = model->document(index);
                if (!isShowing && document != nullptr) {
                    logic->select(document->location);
                }
            });
    connect(model, &TileModel::renamed, this,
            [this](const QString& name) { logic->renameSelection(name.toStdString()); });
    empty = new EmptyBrowser(middle);
    connect(empty->newButton, &QPushButton::clicked, this, [this] { logic->createDocument(); });
    connect(empty->importButton, &QPushButton::clicked, this, &BrowserScreen::import);
    noHit = new QLabel(middle);
    noHit->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    noHit->setProperty("tone", "2");
    noHit->setContentsMargins(40, 64, 40, 0);
    middle->addWidget(tiles);
    middle->addWidget(empty);
    middle->addWidget(noHit);
}

void BrowserScreen::makeFooter()
{
    bar = new MessageBar(this);
    connect(bar, &MessageBar::acted, this, [this] { logic->openWaitingDocument(); });
    connect(bar, &MessageBar::closed, this, [this] { logic->forgetWaitingDocuments(); });
    count = new QLabel(this);
    count->setFont(Appearance::font(Appearance::Text::small));
    count->setProperty("tone", "2");
}

void BrowserScreen::makeLayout()
{
    auto* header = new QHBoxLayout;
    header->setContentsMargins(40, 36, 40, 24);
    header->setSpacing(12);
    header->addWidget(title, 1);
    header->addWidget(search);
    header->addWidget(importButton);
    header->addWidget(newButton);
    auto* line = new QFrame(this);
    line->setProperty("kind", "hairline");
    line->setFixedHeight(1);
    auto* help = makeButton("Help", ButtonKind::link, "The manual", "F1", this);
    auto* aboutButton = makeButton("About", ButtonKind::link, "About Volvelle", "", this);
    for (QPushButton* button : {help, aboutButton}) {
        button->setFont(Appearance::font(Appearance::Text::small));
    }
    connect(help, &QPushButton::clicked, this, [this] { logic->showHelp(); });
    connect(aboutButton, &QPushButton::clicked, this, &BrowserScreen::about);
    auto* footer = new QHBoxLayout;
    footer->setContentsMargins(40, 0, 36, 0);
    footer->setSpacing(16);
    footer->addWidget(count, 1);
    footer->addWidget(help);
    footer->addWidget(aboutButton);
    auto* foot = new QWidget(this);
    foot->setFixedHeight(footerHeight - 1);
    foot->setLayout(footer);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addLayout(header);
    all->addWidget(middle, 1);
    all->addWidget(bar);
    all->addWidget(line);
    all->addWidget(foot);
    QWidget* const order[] = {search, importButton, newButton, tiles, empty->newButton, empty->importButton,
                              help, aboutButton};
    for (std::size_t i = 1; i < std::size(order); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

void BrowserScreen::addAction(const QString& text, const QString& selector, const QKeySequence& key,
                              void (BrowserScreen::*action)())
{
    auto* added = new QAction(text, this);
    added->setShortcut(key);
    added->setShortcutContext(Qt::WidgetShortcut);
    tiles->addAction(added);
    connect(added, &QAction::triggered, this, action);
    actions.emplace_back(added, selector);
}

void BrowserScreen::showMenu(const QPoint& at)
{
    auto* menu = new QMenu(this);
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

void BrowserScreen::showBrowser()
{
    isShowing = true;
    model->setPixelRatio(devicePixelRatioF());
    model->show(logic->documents());
    const bool isEmpty = logic->allDocuments().empty();
    const QString hitLine = QString::fromStdString(logic->emptySearchLine());
    noHit->setText(hitLine);
    middle->setCurrentWidget(isEmpty ? static_cast<QWidget*>(empty)
                                     : (hitLine.isEmpty() ? static_cast<QWidget*>(tiles) : noHit));
    for (QWidget* control : {static_cast<QWidget*>(search), static_cast<QWidget*>(importButton),
                             static_cast<QWidget*>(newButton)}) {
        control->setVisible(!isEmpty);
    }
    if (search->text() != QString::fromStdString(logic->searchText())) {
        search->setText(QString::fromStdString(logic->searchText()));
    }
    count->setText(QString::fromStdString(logic->countLine()));
    showSelection();
    showBar();
    isShowing = false;
}

void BrowserScreen::showSelection()
{
    const QModelIndex selected = logic->selection() ? model->indexOf(*logic->selection()) : QModelIndex();
    if (selected.isValid()) {
        tiles->setCurrentIndex(selected);
        tiles->scrollTo(selected);
    } else {
        tiles->selectionModel()->clear();
    }
}

void BrowserScreen::showBar()
{
    const auto waiting = logic->waitingDocuments();
    if (waiting.empty()) {
        bar->hide();
    } else {
        bar->tell(QString::fromStdString(logic->waitingLine()), "Open now");
    }
}

void BrowserScreen::takeFocus()
{
    if (logic->allDocuments().empty()) {
        empty->newButton->setFocus(Qt::OtherFocusReason);
    } else {
        tiles->setFocus(Qt::OtherFocusReason);
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

void BrowserScreen::duplicate()
{
    logic->duplicateSelection();
}

void BrowserScreen::moveToTrash()
{
    logic->moveSelectionToTrash();
}

void BrowserScreen::undo()
{
    logic->undo();
}

void BrowserScreen::reveal()
{
    if (const auto& file = logic->selection()) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFile::decodeName(file->parent_path().c_str())));
    }
}

void BrowserScreen::import()
{
    auto* dialog =
        new QFileDialog(this, "Import", QString(), "MIDI files (*.mid *.midi *.MID);;All files (*)");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& file) { logic->importDocument(pathOf(file)); });
    dialog->open();
}

void BrowserScreen::about()
{
    logic->showAbout();
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
    } else if (event->matches(QKeySequence::HelpContents)) {
        logic->showHelp();
    } else if (event->matches(QKeySequence::Undo)) {
        undo();
    } else if (isReturn) {
        open();
    } else if (event->key() == Qt::Key_Escape && search->hasFocus()) {
        search->clear();
        takeFocus();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void BrowserScreen::dragEnterEvent(QDragEnterEvent* event)
{
    if (!filesOf(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void BrowserScreen::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    const QStringList files = filesOf(*event->mimeData());
    for (const QString& file : files) {
        logic->importOrWait(pathOf(file));
    }
}

void BrowserScreen::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const int margin = width() >= 1100 ? 28 : 12;
    tiles->setStyleSheet(
        QString("QListView { padding: 0 0 0 %1px; }").arg(margin - TileDelegate::gapAcross / 2));
}

} // namespace volvelle
