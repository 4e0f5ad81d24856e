#include "tests/app/screens/ScreensFixture.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>

namespace volvelle::test {
namespace {

// What is open over the browser while documents come, and the dialog for Import.
struct BrowserCoverTest : Screens {
    BrowserCoverTest()
    {
        writeIdea("Slow tide.mid", 30);
        writeIdea("Copper.mid", 20);
        std::filesystem::copy_file(folder / "Copper.mid", other);
        open();
    }

    QFileDialog* dialog() const { return window->findChild<QFileDialog*>(); }

    void choose(const std::filesystem::path& file) const
    {
        dialog()->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(file.string()));
        static_cast<QDialog*>(dialog())->accept();
        settle();
    }

    const std::filesystem::path other = home.path / "Other.mid";
};

TEST_F(BrowserCoverTest, ImportsWhatIsChosenAfterCtrlO)
{
    key(Qt::Key_O, Qt::ControlModifier);
    ASSERT_NE(dialog(), nullptr);
    EXPECT_EQ(QApplication::activeModalWidget(), dialog());
    choose(other);
    EXPECT_EQ(dialog(), nullptr);
    ASSERT_NE(document(), nullptr);
    EXPECT_EQ(root->documentViewController->document()->fileURL(), folder / "Other.mid");
    EXPECT_TRUE(std::filesystem::exists(other));
}

TEST_F(BrowserCoverTest, ImportsNothingWhereTheDialogIsLeft)
{
    key(Qt::Key_O, Qt::ControlModifier);
    ASSERT_NE(dialog(), nullptr);
    QTest::keyClick(dialog(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_EQ(document(), nullptr);
    EXPECT_EQ(names().size(), 2U);
}

TEST_F(BrowserCoverTest, LetsWhatIsChosenWaitWhereADocumentCameMeanwhile)
{
    key(Qt::Key_O, Qt::ControlModifier);
    ASSERT_NE(dialog(), nullptr);
    root->presentDocument(folder / "Slow tide.mid");
    settle();
    choose(other);
    EXPECT_EQ(root->documentViewController->title, "Slow tide");
    EXPECT_EQ(notice(), "'Other' waits to be opened.");
    press("Open now");
    EXPECT_EQ(root->documentViewController->document()->fileURL(), folder / "Other.mid");
}

TEST_F(BrowserCoverTest, TellsWhatWaitsBesideWhatCannotBeOpened)
{
    root->presentDocument(folder / "Slow tide.mid");
    root->tellQuietly("'nosuch' does not exist.");
    root->importOrWait(other);
    settle();
    EXPECT_EQ(notice(), "'nosuch' does not exist. 'Other' waits to be opened.");
    press("Open now");
    EXPECT_EQ(root->documentViewController->title, "Other");
    EXPECT_EQ(notice(), "");
}

TEST_F(BrowserCoverTest, KeepsWhatWaitsWhereWhatCannotBeOpenedIsClosed)
{
    root->presentDocument(folder / "Slow tide.mid");
    root->importOrWait(other);
    root->tellQuietly("'nosuch' does not exist.");
    settle();
    press("Close");
    EXPECT_EQ(notice(), "'Other' waits to be opened.");
    press("Close");
    EXPECT_EQ(notice(), "");
}

TEST_F(BrowserCoverTest, KeepsTheWayBackFromTheTrashBesideWhatCannotBeOpened)
{
    root->select(folder / "Copper.mid");
    key(Qt::Key_Delete);
    root->tellQuietly("'nosuch' does not exist.");
    EXPECT_EQ(notice(), "'nosuch' does not exist. 'Copper' was moved to the trash.");
    press("Undo");
    EXPECT_TRUE(std::filesystem::exists(folder / "Copper.mid"));
    EXPECT_EQ(notice(), "'nosuch' does not exist.");
}

TEST_F(BrowserCoverTest, ClosesItsMenuWhenADocumentComes)
{
    root->select(folder / "Copper.mid");
    Q_EMIT tiles().customContextMenuRequested(QPoint(20, 20));
    settle();
    const QPointer<QWidget> menu = QApplication::activePopupWidget();
    ASSERT_NE(menu, nullptr);
    root->presentDocument(folder / "Copper.mid");
    settle();
    EXPECT_TRUE(menu == nullptr || !menu->isVisible());
    for (QAction* action : tiles().actions()) {
        action->trigger();
    }
    settle();
    EXPECT_EQ(names(), (std::vector<std::string>{"Copper", "Slow tide"}));
    EXPECT_TRUE(std::filesystem::exists(folder / "Copper.mid"));
    EXPECT_EQ(alert(), "");
}

TEST_F(BrowserCoverTest, DropsANameThatIsBeingTypedWhenADocumentComes)
{
    key(Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), "Late");
    root->presentDocument(folder / "Copper.mid");
    settle();
    EXPECT_EQ(tiles().findChild<QLineEdit*>(), nullptr);
    EXPECT_EQ(names(), (std::vector<std::string>{"Copper", "Slow tide"}));
    key(Qt::Key_Escape);
    EXPECT_EQ(notice(), "");
    EXPECT_EQ(names(), (std::vector<std::string>{"Copper", "Slow tide"}));
}

TEST_F(BrowserCoverTest, OpensTheFirstHitOfASearchWithReturn)
{
    key(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), "tide");
    settle();
    EXPECT_EQ(selected(), "Slow tide");
    key(Qt::Key_Return);
    ASSERT_NE(document(), nullptr);
    EXPECT_EQ(root->documentViewController->title, "Slow tide");
}

TEST_F(BrowserCoverTest, GoesFromTheSearchToTheTilesWithDown)
{
    key(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), "o");
    key(Qt::Key_Down);
    EXPECT_TRUE(tiles().hasFocus());
    EXPECT_EQ(selected(), "Copper");
    key(Qt::Key_Right);
    EXPECT_EQ(selected(), "Slow tide");
}

TEST_F(BrowserCoverTest, TellsQuietlyWhatCannotBeOpened)
{
    root->tellQuietly("'nope' does not exist.");
    EXPECT_EQ(notice(), "'nope' does not exist.");
    press("Close");
    EXPECT_EQ(notice(), "");
    root->tellQuietly("'nope' does not exist.");
    key(Qt::Key_Delete);
    EXPECT_EQ(notice(), "'Copper' was moved to the trash.");
    root->tellQuietly("'nope' does not exist.");
    key(Qt::Key_Return);
    ASSERT_NE(document(), nullptr);
    EXPECT_EQ(notice(), "'nope' does not exist.");
    key(Qt::Key_Escape);
    EXPECT_EQ(notice(), "");
}

} // namespace
} // namespace volvelle::test
