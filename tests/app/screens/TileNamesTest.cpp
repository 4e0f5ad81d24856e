#include "app/screens/TileModel.h"
#include "tests/app/screens/ScreensFixture.h"

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>

namespace volvelle::test {
namespace {

using Names = std::vector<std::string>;

struct TileNamesTest : Screens {
    void writeThree() const
    {
        writeIdea("Slow tide.mid", 30);
        writeIdea("Copper.mid", 20);
        writeIdea("Hallway.mid", 10);
    }

    static void type(const QString& text)
    {
        QTest::keyClicks(QApplication::focusWidget(), text);
        settle();
    }

    void rename(const QString& name) const
    {
        key(Qt::Key_F2);
        type(name);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        settle();
    }
};

TEST_F(TileNamesTest, LeavesTheOldNameSelectedWhenThePictureOfItsTileComes)
{
    writeThree();
    open();
    key(Qt::Key_F2);
    auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(field, nullptr);
    Q_EMIT thumbnails.made(folder / "Hallway.mid");
    EXPECT_EQ(field->selectedText(), "Hallway");
}

TEST_F(TileNamesTest, KeepsANameThatIsRefusedInItsField)
{
    writeThree();
    open();
    for (const auto& [name, line] :
         std::vector<std::pair<QString, std::string>>{{"Copper", "There is already an idea called 'Copper'."},
                                                      {"a/b", "A name cannot hold a slash."},
                                                      {QString(252, 'x'), "The name is too long."}}) {
        rename(name);
        auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        ASSERT_NE(field, nullptr) << line;
        EXPECT_EQ(field->text(), name);
        EXPECT_EQ(notice(), line);
        EXPECT_EQ(button(*window, ""), nullptr);
        EXPECT_EQ(alert(), "");
        QTest::keyClick(field, Qt::Key_Escape);
        settle();
        EXPECT_EQ(notice(), "");
        EXPECT_EQ(names(), (Names{"Hallway", "Copper", "Slow tide"}));
    }
}

TEST_F(TileNamesTest, TakesTheNextNameAfterOneThatWasRefused)
{
    writeThree();
    open();
    rename("Copper");
    QTest::keyClicks(QApplication::focusWidget(), " again");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    settle();
    EXPECT_EQ(names(), (Names{"Copper again", "Copper", "Slow tide"}));
    EXPECT_EQ(notice(), "");
    EXPECT_TRUE(tiles().hasFocus());
}

TEST_F(TileNamesTest, KeepsANameThatIsRefusedWhereAnotherTileIsClicked)
{
    writeThree();
    open();
    key(Qt::Key_F2);
    type("Copper");
    QTest::mouseClick(tiles().viewport(), Qt::LeftButton, {},
                      tiles().visualRect(tiles().model()->index(2, 0)).center());
    settle();
    auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->text(), "Copper");
    EXPECT_EQ(selected(), "Hallway");
    press("Close");
    EXPECT_EQ(notice(), "");
    EXPECT_TRUE(field->hasFocus());
    EXPECT_EQ(names(), (Names{"Hallway", "Copper", "Slow tide"}));
}

TEST_F(TileNamesTest, LeavesTheOldNameWhereTheUserGoesOnElsewhere)
{
    writeThree();
    open();
    rename("Copper");
    QLineEdit& search = *browser().findChild<QLineEdit*>(); // the first one
    QTest::mouseClick(&search, Qt::LeftButton);
    settle();
    EXPECT_TRUE(search.hasFocus());
    EXPECT_EQ(notice(), "There is already an idea called 'Copper'.");
    type("Slow");
    EXPECT_EQ(search.text(), "Slow");
    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(std::filesystem::exists(folder / "Hallway.mid"));
}

TEST_F(TileNamesTest, ARefusalGoesWithTheScreenAndHidesNoOtherNotice)
{
    writeThree();
    open();
    rename("Copper");
    press("New");
    ASSERT_NE(document(), nullptr);
    EXPECT_EQ(notice(), "");
    key(Qt::Key_Escape);
    EXPECT_EQ(notice(), "");
    key(Qt::Key_Delete);
    EXPECT_NE(notice().find("was moved to the trash."), std::string::npos) << notice();
    key(Qt::Key_F2);
    type("Copper");
    browser().findChild<QLineEdit*>()->setFocus();
    settle();
    EXPECT_NE(notice().find("was moved to the trash."), std::string::npos) << notice();
}

TEST_F(TileNamesTest, TellsThatAFileIsGoneThatIsRenamed)
{
    writeThree();
    open();
    key(Qt::Key_F2);
    std::filesystem::remove(folder / "Hallway.mid");
    type("Late");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    settle();
    EXPECT_EQ(names(), (Names{"Copper", "Slow tide"}));
    EXPECT_EQ(notice(), "'Hallway' is not there any more.");
}

TEST_F(TileNamesTest, TakesANameWhoseFieldOutlivedOtherTiles)
{
    writeThree();
    open();
    key(Qt::Key_F2);
    type("Late");
    std::filesystem::remove(folder / "Copper.mid");
    root->refresh();
    settle();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    settle();
    EXPECT_EQ(document(), nullptr);
    EXPECT_EQ(names(), (Names{"Late", "Slow tide"}));
    EXPECT_EQ(selected(), "Late");
    key(Qt::Key_Return);
    EXPECT_NE(document(), nullptr);
}

TEST_F(TileNamesTest, TakesANameWhoseFieldOutlivedItsPlace)
{
    writeThree();
    open();
    key(Qt::Key_F2);
    type("Late");
    writeIdea("Newer.mid");
    std::filesystem::remove(folder / "Slow tide.mid");
    root->refresh();
    settle();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Enter);
    settle();
    EXPECT_EQ(document(), nullptr);
    EXPECT_EQ(names(), (Names{"Newer", "Late", "Copper"}));
    EXPECT_EQ(selected(), "Late");
}

TEST_F(TileNamesTest, ShowsOpensAndRenamesANameOfOtherBytes)
{
    writeIdea("a\xE9.mid");
    open();
    EXPECT_EQ(names(), Names{"aé"});
    const QModelIndex tile = tiles().model()->index(0, 0);
    QSignalSpy changed(tiles().model(), &QAbstractItemModel::dataChanged);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !tile.data(TileModel::discRole).isNull(); }, 30'000));
    EXPECT_EQ(changed.count(), 1);
    key(Qt::Key_Return);
    ASSERT_NE(document(), nullptr);
    EXPECT_EQ(root->documentViewController->title, "aé");
    key(Qt::Key_Escape);
    key(Qt::Key_F2);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    settle();
    EXPECT_TRUE(std::filesystem::exists(folder / "a\xE9.mid"));
    rename("b");
    EXPECT_TRUE(std::filesystem::exists(folder / "b.mid"));
}

} // namespace
} // namespace volvelle::test
