#include "tests/app/screens/ScreensFixture.h"

#include <QScrollBar>

namespace volvelle::test {
namespace {

// More ideas than the window has room for, with the list scrolled to its end.
struct BrowserSightTest : Screens {
    BrowserSightTest()
    {
        for (int i = 0; i < 60; ++i) {
            writeIdea("Idea " + std::to_string(i) + ".mid", i + 10);
        }
        open();
    }

    bool isInSight() const
    {
        const QModelIndexList rows = tiles().selectionModel()->selectedIndexes();
        return !rows.isEmpty() && tiles().viewport()->rect().contains(tiles().visualRect(rows.front()));
    }

    // Opens the last idea, which goes to the first place as soon as it is saved.
    void openTheLast() const
    {
        key(Qt::Key_End);
        ASSERT_EQ(selected(), "Idea 59");
        ASSERT_GT(tiles().verticalScrollBar()->value(), 0);
        key(Qt::Key_Return);
        ASSERT_NE(document(), nullptr);
    }
};

TEST_F(BrowserSightTest, AnIdeaThatWasSavedIsInSightWhereItStandsNow)
{
    openTheLast();
    key(Qt::Key_G);
    key(Qt::Key_S, Qt::ControlModifier);
    ASSERT_EQ(document(), nullptr);
    EXPECT_EQ(selected(), "Idea 59");
    EXPECT_EQ(names().front(), "Idea 59");
    EXPECT_TRUE(isInSight());
}

TEST_F(BrowserSightTest, AnIdeaThatWasLeftWithDoneIsInSightWhereItStandsNow)
{
    openTheLast();
    writeIdea("Idea 59.mid");
    key(Qt::Key_Escape);
    ASSERT_EQ(document(), nullptr);
    EXPECT_EQ(selected(), "Idea 59");
    EXPECT_EQ(names().front(), "Idea 59");
    EXPECT_TRUE(isInSight());
}

TEST_F(BrowserSightTest, AnIdeaThatIsAskedForAnewIsInSight)
{
    root->refreshAndSelect(folder / "Idea 59.mid");
    settle();
    EXPECT_TRUE(isInSight());
    tiles().verticalScrollBar()->setValue(0);
    EXPECT_FALSE(isInSight());
    root->refresh();
    settle();
    EXPECT_FALSE(isInSight()) << "the folder alone changed";
    root->refreshAndSelect(folder / "Idea 59.mid");
    settle();
    EXPECT_TRUE(isInSight());
}

} // namespace
} // namespace volvelle::test
