#include "app/screens/BrowserScreen.h"

#include "app/screens/Appearance.h"
#include "app/screens/Controls.h"
#include "app/screens/SearchField.h"
#include "app/screens/TileDelegate.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QVBoxLayout>

// The browser's header, tiles and footer.
namespace volvelle {

namespace {

constexpr int searchWidth = 264; // pixels
constexpr int controlHeight = 36;
constexpr int textRise = 2; // room below centred text, which lifts it by half
constexpr int footerHeight = 44;

} // namespace

void BrowserScreen::makeHeader()
{
    title = new QLabel("Ideas", this);
    title->setFont(Appearance::font(Appearance::Text::display));
    title->setContentsMargins(0, 0, 0, textRise);
    search = new SearchField(this);
    setTip(search, "Search by name", "Ctrl+F");
    search->setAcceptDrops(false); // files are the window's
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
    tiles = new TileView(middle);
    tiles->setModel(model);
    tiles->setItemDelegate(new TileDelegate(tiles));
    connect(tiles, &QListView::doubleClicked, this, [this] { open(); });
    connect(tiles, &QListView::customContextMenuRequested, this, &BrowserScreen::showMenu);
    connect(tiles->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index) {
                const FolderDocument* document = model->document(index);
                if (!isShowing && document != nullptr) {
                    tellRefusal("");
                    logic->select(document->location);
                }
            });
    connect(model, &TileModel::modelReset, this, [this] { scrolledTo.reset(); });
    // Later, since the list changes, and the editor still is at work.
    connect(
        model, &TileModel::renamed, this,
        [this](const std::filesystem::path& file, const QString& name) { takeName(file, name); },
        Qt::QueuedConnection);
    connect(tiles->itemDelegate(), &QAbstractItemDelegate::closeEditor, this, [this] { tellRefusal(""); });
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
    count = new QLabel(this);
    count->setFont(Appearance::font(Appearance::Text::small));
    count->setProperty("tone", "2");
}

void BrowserScreen::makeLayout()
{
    header = new QHBoxLayout;
    header->setSpacing(12);
    header->addWidget(title, 1);
    header->addWidget(search);
    header->addWidget(importButton);
    header->addWidget(newButton);
    auto* line = new QFrame(this);
    line->setProperty("kind", "hairline");
    line->setFixedHeight(1);
    auto* helpButton = makeButton("Help", ButtonKind::link, "The manual", "F1", this);
    auto* aboutButton = makeButton("About", ButtonKind::link, "About Volvelle", "", this);
    for (QPushButton* button : {helpButton, aboutButton}) {
        button->setFont(Appearance::font(Appearance::Text::small));
    }
    connect(helpButton, &QPushButton::clicked, this, &BrowserScreen::help);
    connect(aboutButton, &QPushButton::clicked, this, &BrowserScreen::about);
    footer = new QHBoxLayout;
    footer->setSpacing(16);
    footer->addWidget(count, 1);
    footer->addWidget(helpButton);
    footer->addWidget(aboutButton);
    auto* foot = new QWidget(this);
    foot->setFixedHeight(footerHeight - 1);
    foot->setLayout(footer);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addLayout(header);
    all->addWidget(middle, 1);
    all->addWidget(line);
    all->addWidget(foot);
    QWidget* const order[] = {search,           importButton,        newButton,  tiles,
                              empty->newButton, empty->importButton, helpButton, aboutButton};
    for (std::size_t i = 1; i < std::size(order); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

} // namespace volvelle
