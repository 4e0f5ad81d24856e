#include "app/screens/Appearance.h"
#include "app/screens/EmptyBrowser.h"
#include "app/screens/FileAddress.h"
#include "app/screens/TileDelegate.h"
#include "app/screens/TileModel.h"
#include "tests/app/screens/ScreensFixture.h"

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollBar>

namespace volvelle::test {
namespace {

using Names = std::vector<std::string>;

struct BrowserScreenTest : Screens {
    void writeThree() const
    {
        writeIdea("Slow tide.mid", 30);
        writeIdea("Copper.mid", 20);
        writeIdea("Hallway.mid", 10);
    }

    void type(const QString& text) const
    {
        QTest::keyClicks(QApplication::focusWidget(), text);
        settle();
    }

    QLineEdit& search() const { return *browser().findChild<QLineEdit*>(); }

    void drop(const QList<QUrl>& urls) const
    {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({100, 100}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event({100, 100}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &event);
        settle();
    }
};

TEST_F(BrowserScreenTest, ShowsTheNewestFirst)
{
    writeThree();
    open();
    EXPECT_EQ(names(), (Names{"Hallway", "Copper", "Slow tide"}));
}

TEST_F(BrowserScreenTest, OpensWithReturnWhatTheArrowsSelect)
{
    writeThree();
    open();
    EXPECT_EQ(selected(), "Hallway");
    key(Qt::Key_Right);
    EXPECT_EQ(selected(), "Copper");
    key(Qt::Key_Return);
    ASSERT_NE(document(), nullptr);
    EXPECT_EQ(root->documentViewController->title, "Copper");
}

TEST_F(BrowserScreenTest, OpensWithADoubleClick)
{
    writeThree();
    open();
    const QPoint tile = tiles().visualRect(tiles().model()->index(2, 0)).center();
    QTest::mouseClick(tiles().viewport(), Qt::LeftButton, {}, tile);
    EXPECT_EQ(selected(), "Slow tide");
    QTest::mouseDClick(tiles().viewport(), Qt::LeftButton, {}, tile);
    settle();
    ASSERT_NE(document(), nullptr);
    EXPECT_EQ(root->documentViewController->title, "Slow tide");
}

TEST_F(BrowserScreenTest, SelectsTheDocumentThatWasLeftAndOpensItAgain)
{
    writeThree();
    open();
    for (const Qt::Key leave : {Qt::Key_Escape, Qt::Key_S}) {
        root->pick({folder / "Slow tide.mid"});
        settle();
        ASSERT_NE(document(), nullptr);
        key(leave, leave == Qt::Key_S ? Qt::ControlModifier : Qt::NoModifier);
        ASSERT_EQ(document(), nullptr);
        root->select(folder / "Slow tide.mid");
        EXPECT_TRUE(tiles().viewport()->rect().contains(tiles().visualRect(tiles().currentIndex())));
        key(Qt::Key_Return);
        ASSERT_NE(document(), nullptr);
        EXPECT_EQ(root->documentViewController->title, "Slow tide");
        key(Qt::Key_Escape);
    }
}

TEST_F(BrowserScreenTest, MakesANewIdeaThatSounds)
{
    writeIdea("New MIDI Idea.mid", 5);
    open();
    key(Qt::Key_N, Qt::ControlModifier);
    ASSERT_NE(document(), nullptr);
    EXPECT_EQ(root->documentViewController->title, "New MIDI Idea 2");
    EXPECT_TRUE(isPlaying());
    key(Qt::Key_Escape);
    EXPECT_EQ(selected(), "New MIDI Idea 2");
}

TEST_F(BrowserScreenTest, RenamesWithF2)
{
    writeThree();
    open();
    key(Qt::Key_F2);
    type("Late");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    settle();
    EXPECT_EQ(names(), (Names{"Late", "Copper", "Slow tide"}));
    EXPECT_EQ(selected(), "Late");
    EXPECT_EQ(document(), nullptr);
}

TEST_F(BrowserScreenTest, KeepsWhatIsTypedWhileTheListChanges)
{
    writeThree();
    open();
    key(Qt::Key_F2);
    type("La");
    writeIdea("Ninefold.mid");
    root->refresh();
    settle();
    auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->text(), "La");
    QTest::keyClick(editor, Qt::Key_Return);
    settle();
    EXPECT_EQ(names(), (Names{"Ninefold", "La", "Copper", "Slow tide"}));
}

TEST_F(BrowserScreenTest, KeepsTheOldNameWithEscape)
{
    writeThree();
    open();
    key(Qt::Key_F2);
    type("Late");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(names(), (Names{"Hallway", "Copper", "Slow tide"}));
    EXPECT_TRUE(tiles().hasFocus());
}

TEST_F(BrowserScreenTest, DuplicatesWithCtrlD)
{
    writeThree();
    open();
    key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(selected(), "Hallway 2");
    EXPECT_EQ(names().size(), 4U);
}

TEST_F(BrowserScreenTest, TellsWhatWentToTheTrashAndBringsItBack)
{
    writeThree();
    open();
    key(Qt::Key_Delete);
    EXPECT_EQ(names(), (Names{"Copper", "Slow tide"}));
    EXPECT_EQ(notice(), "'Hallway' was moved to the trash.");
    press("Undo");
    EXPECT_EQ(names(), (Names{"Hallway", "Copper", "Slow tide"}));
    EXPECT_EQ(selected(), "Hallway");
    EXPECT_EQ(notice(), "");
    EXPECT_TRUE(tiles().hasFocus());
}

TEST_F(BrowserScreenTest, BringsTheLastOneBackByKeyWhereNoneIsLeft)
{
    writeIdea("Only.mid");
    open();
    key(Qt::Key_Delete);
    EXPECT_EQ(names(), Names());
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(names(), Names{"Only"});
    EXPECT_TRUE(tiles().hasFocus());
    EXPECT_EQ(notice(), "");
}

TEST_F(BrowserScreenTest, ForgetsTheTrashLineWithADocument)
{
    writeThree();
    open();
    key(Qt::Key_Delete);
    key(Qt::Key_Return);
    ASSERT_NE(document(), nullptr);
    EXPECT_EQ(notice(), "");
    key(Qt::Key_Escape);
    EXPECT_EQ(notice(), "");
}

TEST_F(BrowserScreenTest, LetsAHeldKeyDeleteOnce)
{
    writeThree();
    open();
    for (const QAction* action : tiles().actions()) {
        EXPECT_FALSE(action->autoRepeat()) << action->text().toStdString();
    }
}

TEST_F(BrowserScreenTest, SearchesByName)
{
    writeThree();
    open();
    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(search().hasFocus());
    type("copp");
    EXPECT_EQ(names(), Names{"Copper"});
    type("x");
    EXPECT_EQ(names(), Names());
    EXPECT_TRUE(search().hasFocus());
    key(Qt::Key_Escape);
    EXPECT_EQ(names().size(), 3U);
    EXPECT_TRUE(tiles().hasFocus());
}

TEST_F(BrowserScreenTest, PressesTheButtonThatHasTheFocusWithReturn)
{
    writeThree();
    open();
    button(browser(), "New")->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Return);
    ASSERT_NE(document(), nullptr);
    EXPECT_EQ(root->documentViewController->title, "New MIDI Idea");
}

TEST_F(BrowserScreenTest, CopiesWhatIsDroppedAndLetsTheRestWait)
{
    open();
    const auto one = home.path / "elsewhere/One.mid";
    const auto other = home.path / "elsewhere/Other.mid";
    std::filesystem::create_directories(one.parent_path());
    std::filesystem::copy_file(writeIdea("Slow tide.mid"), one);
    std::filesystem::copy_file(one, other);
    drop({QUrl::fromLocalFile(QString::fromStdString(one.string())),
          QUrl::fromLocalFile(QString::fromStdString(other.string())), QUrl("https://maker.example/x.mid")});
    ASSERT_NE(document(), nullptr);
    EXPECT_EQ(root->documentViewController->title, "One");
    EXPECT_EQ(notice(), "'Other' waits to be opened.");
    press("Open now");
    EXPECT_EQ(root->documentViewController->title, "Other");
    EXPECT_EQ(notice(), "");
    EXPECT_TRUE(document()->disc()->hasFocus());
}

TEST_F(BrowserScreenTest, TakesADropOfANameOfOtherBytes)
{
    open();
    std::filesystem::copy_file(writeIdea("Slow tide.mid"), home.path / "a\xE9.mid");
    drop({QUrl(addressOf(home.path / "a\xE9.mid"))});
    EXPECT_TRUE(std::filesystem::exists(folder / "a\xE9.mid"));
}

TEST_F(BrowserScreenTest, RefusesADropOfWhatIsNoFileHere)
{
    const auto one = home.path / "a.mid";
    std::filesystem::copy_file(writeIdea("Slow tide.mid"), one);
    open();
    const std::string place = one.string();
    for (const auto& [address, line] : std::vector<std::pair<std::string, std::string>>{
             {"file://server" + place, "'file://server" + place + "' is not on this computer."},
             {"file://" + place + "%00.mid", "'file://" + place + "%00.mid' names no file."}}) {
        drop({QUrl(QString::fromStdString(address))});
        EXPECT_EQ(alert(), "File Error: File Error " + line);
        press("OK");
        EXPECT_EQ(names(), Names{"Slow tide"});
    }
    drop({QUrl(QString::fromStdString("file://LOCALHOST" + place))});
    EXPECT_EQ(alert(), "");
    EXPECT_TRUE(std::filesystem::exists(folder / "a.mid"));
}

TEST_F(BrowserScreenTest, ShowsTheFileThatIsSelectedInTheFileManager)
{
    writeThree();
    open();
    std::vector<std::filesystem::path> shown;
    browser().reveal = [&shown](const auto& file) { shown.push_back(file); };
    for (QAction* action : tiles().actions()) {
        if (action->text() == "Show in File Manager") {
            action->trigger();
            root->select(std::nullopt);
            action->trigger();
        }
    }
    EXPECT_EQ(shown, std::vector<std::filesystem::path>{folder / "Hallway.mid"});
}

TEST_F(BrowserScreenTest, ShowsWhatToDoWhereThereIsNothing)
{
    open();
    const auto* empty = browser().findChild<EmptyBrowser*>();
    EXPECT_TRUE(empty->isVisible());
    EXPECT_FALSE(search().isVisible());
    EXPECT_TRUE(empty->newButton->hasFocus());
    key(Qt::Key_Return);
    EXPECT_NE(document(), nullptr);
}

TEST_F(BrowserScreenTest, KeepsTheButtonsOfAnEmptyFolderInSightInTheLeastWindow)
{
    open();
    window->resize(1, 1);
    settle();
    EXPECT_EQ(window->size(), QSize(720, 540));
    const auto* empty = browser().findChild<EmptyBrowser*>();
    for (const QWidget* control : {empty->newButton, empty->importButton}) {
        EXPECT_TRUE(empty->rect().contains(control->geometry())) << control->geometry().bottom();
    }
}

TEST_F(BrowserScreenTest, DoesNotScrollWhenTheFolderChanges)
{
    for (int i = 0; i < 60; ++i) {
        writeIdea("Idea " + std::to_string(i) + ".mid", i + 10);
    }
    open();
    QScrollBar& bar = *tiles().verticalScrollBar();
    bar.setValue(bar.maximum());
    const int before = bar.value();
    EXPECT_GT(before, 0);
    writeIdea("Late.mid", 100);
    root->refresh();
    settle();
    EXPECT_EQ(names().size(), 61U);
    EXPECT_EQ(bar.value(), before);
    root->refresh();
    settle();
    EXPECT_EQ(bar.value(), before);
}

TEST_F(BrowserScreenTest, PaintsTwoThousandTilesWithoutLookingAtTheirFiles)
{
    std::vector<FolderDocument> documents;
    for (int i = 0; i < 2000; ++i) {
        const std::string name = "Idea " + std::to_string(i);
        documents.push_back({folder / (name + ".mid"), name, 1000 + i, 60});
    }
    TileModel model(thumbnails, nullptr);
    model.show(documents);
    for (int row = 0; row < model.rowCount(); ++row) {
        EXPECT_TRUE(model.data(model.index(row), TileModel::discRole).isNull());
    }
    documents.erase(documents.begin() + 7);
    std::rotate(documents.begin(), documents.begin() + 30, documents.begin() + 31);
    const QPersistentModelIndex kept = model.index(500);
    model.show(documents);
    EXPECT_EQ(kept.row(), 499);
    EXPECT_EQ(model.document(model.index(0))->name, "Idea 31");
    EXPECT_EQ(model.rowCount(), 1999);
}

TEST_F(BrowserScreenTest, NamesItsControlsForScreenReaders)
{
    writeThree();
    open();
    for (const QWidget* control : browser().findChildren<QWidget*>()) {
        if (control->focusPolicy() != Qt::NoFocus && control->isVisible() && control != tiles().viewport() &&
            qobject_cast<const QScrollBar*>(control) == nullptr) {
            EXPECT_FALSE(control->accessibleName().isEmpty()) << control->metaObject()->className();
        }
    }
    EXPECT_EQ(tiles().model()->index(0, 0).data(Qt::AccessibleTextRole).toString(), "Hallway");
}

TEST_F(BrowserScreenTest, HasAsManyColumnsAsFit)
{
    for (int i = 0; i < 30; ++i) {
        writeIdea("Idea " + std::to_string(i) + ".mid");
    }
    open();
    for (const auto& [size, columns, margin] :
         std::vector<std::tuple<QSize, int, int>>{{{1280, 800}, 5, 40},
                                                  {{1090, 700}, 4, 20},
                                                  {{1000, 700}, 4, 20},
                                                  {{999, 700}, 3, 20},
                                                  {{800, 600}, 3, 20},
                                                  {{720, 540}, 2, 20}}) {
        SCOPED_TRACE(size.width());
        window->resize(size);
        settle();
        const QModelIndex first = tiles().model()->index(0, 0);
        const int top = tiles().visualRect(first).top();
        int row = 0;
        while (tiles().visualRect(tiles().model()->index(row, 0)).top() == top) {
            ++row;
        }
        EXPECT_EQ(row, columns);
        const QRect tile = tiles().visualRect(first);
        const int left = tiles().viewport()->mapTo(window.get(), tile.topLeft()).x();
        EXPECT_EQ(left + TileDelegate::gapAcross / 2 + TileDelegate::padding, margin);
        QAbstractButton* const newButton = button(browser(), "New");
        EXPECT_EQ(newButton->mapTo(window.get(), QPoint(newButton->width(), 0)).x(), size.width() - margin);
    }
}

} // namespace
} // namespace volvelle::test
