#include "app/screens/Appearance.h"
#include "app/screens/FadeOut.h"
#include "tests/app/screens/ScreensFixture.h"

#include <QApplication>
#include <QProxyStyle>
#include <QPushButton>
#include <QSignalSpy>

#include <algorithm>
#include <cmath>

namespace volvelle::test {
namespace {

// A desktop that wants nothing to move, or all.
class MotionStyle : public QProxyStyle {
public:
    explicit MotionStyle(int duration) : QProxyStyle("Fusion"), milliseconds(duration) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override
    {
        return hint == SH_Widget_Animation_Duration ? milliseconds
                                                    : QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    const int milliseconds;
};

struct DocumentScreenTest : Screens {
    DocumentScreenTest()
    {
        file = writeIdea("Slow tide.mid");
        open();
        root->pick({file});
        settle();
    }

    QAbstractButton* seen(const char* name) const { return button(*document(), name); }

    // The buttons that are seen, in the order of the Tab key.
    std::vector<std::string> buttons() const
    {
        std::vector<std::string> result;
        for (const char* name : {"Generate", "Play", "Save", "Done"}) {
            if (seen(name) != nullptr) {
                result.emplace_back(name);
            }
        }
        return result;
    }

    // The pictures that fade.
    std::vector<FadeOut*> fades() const
    {
        std::vector<FadeOut*> result;
        for (QWidget* child : window->findChildren<QWidget*>()) {
            if (auto* fade = dynamic_cast<FadeOut*>(child)) {
                result.push_back(fade);
            }
        }
        return result;
    }

    std::filesystem::path file;
    const std::vector<std::string> all{"Generate", "Play", "Save", "Done"};
    const std::vector<std::string> onlyDone{"Done"};
};

TEST_F(DocumentScreenTest, SoundsAtOnceAndIsAtRestInTheEnd)
{
    EXPECT_TRUE(isPlaying());
    EXPECT_EQ(buttons(), onlyDone);
    goOn(0.6);
    EXPECT_GT(document()->disc()->circle()->baseClass->currentBeat, 0.5);
    playToTheEnd();
    goOn(0.3);
    EXPECT_EQ(buttons(), all);
    EXPECT_EQ(document()->disc()->circle()->baseClass->currentBeat, 0.0);
    EXPECT_FALSE(document()->disc()->content().isPlaying);
}

TEST_F(DocumentScreenTest, TellsTheFilesName)
{
    bool isFound = false;
    for (const QWidget* child : document()->findChildren<QWidget*>()) {
        isFound = isFound || child->accessibleName() == "File: Slow tide";
    }
    EXPECT_TRUE(isFound);
}

TEST_F(DocumentScreenTest, GeneratesByKeyAlsoWhileItPlays)
{
    for (int time = 0; time < 2; ++time) {
        const auto before = root->documentViewController->document()->data;
        key(Qt::Key_G);
        EXPECT_NE(root->documentViewController->document()->data, before);
        EXPECT_TRUE(isPlaying());
        EXPECT_EQ(buttons(), onlyDone);
    }
}

TEST_F(DocumentScreenTest, PlaysAndStopsWithTheSpaceBarAndAClick)
{
    key(Qt::Key_Space);
    EXPECT_FALSE(isPlaying());
    EXPECT_EQ(buttons(), all);
    key(Qt::Key_Space);
    EXPECT_TRUE(isPlaying());
    QTest::mouseClick(document()->disc(), Qt::LeftButton);
    settle();
    EXPECT_FALSE(isPlaying());
    QTest::mouseClick(document()->disc(), Qt::LeftButton, {}, {1, 1});
    settle();
    EXPECT_FALSE(isPlaying()) << "beside the disc";
    QTest::mouseClick(document()->disc(), Qt::RightButton);
    settle();
    EXPECT_FALSE(isPlaying());
}

TEST_F(DocumentScreenTest, LeavesTheSpaceBarToTheButtonThatHasTheFocus)
{
    key(Qt::Key_Space);
    key(Qt::Key_Tab);
    ASSERT_TRUE(seen("Generate")->hasFocus());
    const auto before = root->documentViewController->document()->data;
    key(Qt::Key_Space);
    EXPECT_NE(root->documentViewController->document()->data, before);
    EXPECT_TRUE(isPlaying());
}

TEST_F(DocumentScreenTest, GivesTheFocusToTheDiscAndBackToItsButton)
{
    key(Qt::Key_Space);
    for (const char* name : {"Generate", "Play"}) {
        seen(name)->setFocus(Qt::TabFocusReason);
        key(Qt::Key_Return);
        EXPECT_TRUE(isPlaying()) << name;
        EXPECT_TRUE(document()->disc()->hasFocus()) << name;
        key(Qt::Key_Space);
        EXPECT_FALSE(isPlaying()) << name;
        EXPECT_TRUE(seen(name)->hasFocus()) << name;
    }
}

TEST_F(DocumentScreenTest, NeverGivesTheFocusToDoneWhileTheWindowIsNotActive)
{
    key(Qt::Key_Space);
    seen("Save")->setFocus(Qt::TabFocusReason);
    QWidget other;
    other.show();
    other.activateWindow();
    settle();
    root->documentViewController->playOrStop();
    settle();
    EXPECT_EQ(window->focusWidget(), document()->disc());
    root->documentViewController->playOrStop();
    settle();
    EXPECT_EQ(window->focusWidget(), seen("Save"));
}

TEST_F(DocumentScreenTest, DoesNotRepeatAKeyThatIsHeld)
{
    key(Qt::Key_Space);
    ASSERT_FALSE(isPlaying());
    const auto before = root->documentViewController->document()->data;
    for (const Qt::Key held : {Qt::Key_G, Qt::Key_Space, Qt::Key_Escape}) {
        QKeyEvent event(QEvent::KeyPress, held, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(document()->disc(), &event);
        settle();
    }
    ASSERT_NE(document(), nullptr);
    EXPECT_FALSE(isPlaying());
    EXPECT_EQ(root->documentViewController->document()->data, before);
}

TEST_F(DocumentScreenTest, SavesByKeyAlsoWhileItPlays)
{
    key(Qt::Key_G);
    const auto made = root->documentViewController->document()->data;
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(document(), nullptr);
    EXPECT_FALSE(isPlaying());
    root->pick({file});
    settle();
    EXPECT_EQ(root->documentViewController->document()->data, made);
}

TEST_F(DocumentScreenTest, KeepsTheFileWithDone)
{
    const auto before = root->documentViewController->document()->data;
    key(Qt::Key_G);
    press("Done");
    EXPECT_EQ(document(), nullptr);
    root->pick({file});
    settle();
    EXPECT_EQ(root->documentViewController->document()->data, before);
}

TEST_F(DocumentScreenTest, KeepsTheRoomOfHiddenButtons)
{
    const QRect done = seen("Done")->geometry();
    key(Qt::Key_Space);
    EXPECT_EQ(seen("Done")->geometry(), done);
}

TEST_F(DocumentScreenTest, HasANarrowColumnInASmallWindow)
{
    window->resize(800, 600);
    settle();
    EXPECT_EQ(seen("Done")->width(), 192);
    EXPECT_EQ(document()->disc()->size(), QSize(536, 536));
    window->resize(1280, 800);
    settle();
    EXPECT_EQ(seen("Done")->width(), 272);
}

TEST_F(DocumentScreenTest, NamesTheKeysInItsTooltips)
{
    EXPECT_TRUE(document()->disc()->toolTip().contains("Stop"));
    key(Qt::Key_Space);
    EXPECT_TRUE(document()->disc()->toolTip().contains("Play"));
    for (const auto& [name, keys] : {std::pair{"Generate", ">G<"}, std::pair{"Play", ">Space<"},
                                     std::pair{"Save", ">Ctrl+S<"}, std::pair{"Done", ">Esc<"}}) {
        EXPECT_TRUE(seen(name)->toolTip().contains(keys)) << name;
    }
}

TEST_F(DocumentScreenTest, TakesTheDesktopsColoursAlsoInTooltipsAndIcons)
{
    key(Qt::Key_Space);
    const QString tip = seen("Play")->toolTip();
    const QString discTip = document()->disc()->toolTip();
    const QImage icon = seen("Play")->icon().pixmap(16, 16).toImage();
    Appearance::shared().apply(Theme::light);
    EXPECT_NE(seen("Play")->toolTip(), tip);
    EXPECT_NE(document()->disc()->toolTip(), discTip);
    EXPECT_NE(seen("Play")->icon().pixmap(16, 16).toImage(), icon);
    Appearance::shared().apply(Theme::dark);
    EXPECT_EQ(seen("Play")->toolTip(), tip);
}

TEST_F(DocumentScreenTest, KeepsTheTriangleOfPlayApartFromItsText)
{
    key(Qt::Key_Space);
    const QImage play = seen("Play")->grab().toImage();
    std::vector<int> columns; // that hold more than the button's ground
    for (int x = 10; x < play.width() - 10; ++x) {
        bool isMarked = false;
        for (int y = 10; y < play.height() - 10; ++y) {
            isMarked = isMarked || play.pixel(x, y) != play.pixel(10, 10);
        }
        if (isMarked) {
            columns.push_back(x);
        }
    }
    const auto gap = std::ranges::adjacent_find(columns, [](int a, int b) { return b > a + 4; });
    ASSERT_NE(gap, columns.end());
    EXPECT_NEAR(*(gap + 1) - *gap - 1, 9, 1);
}

TEST_F(DocumentScreenTest, SaysWhereTheMusicIsAndWhatItIsAtRest)
{
    goOn(0.3);
    EXPECT_TRUE(document()->disc()->accessibleDescription().startsWith("Bar 1, beat 1"))
        << document()->disc()->accessibleDescription().toStdString();
    playToTheEnd();
    goOn(0.1);
    const QString atRest = document()->disc()->accessibleDescription();
    EXPECT_FALSE(atRest.isEmpty());
    EXPECT_FALSE(atRest.startsWith("Bar"));
}

TEST_F(DocumentScreenTest, MovesFromBeatToBeatWhereMotionIsReduced)
{
    goOn(0.6);
    for (const int duration : {200, 0}) {
        QApplication::setStyle(new MotionStyle(duration));
        document()->disc()->grab();
        const double beat = document()->disc()->circle()->baseClass->currentBeat;
        ASSERT_NE(beat, std::floor(beat));
        EXPECT_EQ(document()->disc()->content().position, duration == 0 ? std::floor(beat) : beat);
    }
}

TEST_F(DocumentScreenTest, FadesOnlyWhereMotionIsWanted)
{
    for (const int duration : {0, 200}) {
        QApplication::setStyle(new MotionStyle(duration));
        qDeleteAll(fades());
        key(Qt::Key_Escape);
        EXPECT_EQ(fades().empty(), duration == 0);
        root->pick({file});
        settle();
    }
}

TEST_F(DocumentScreenTest, ShowsAHandOverADiscThatPlays)
{
    DiscWidget& disc = *document()->disc();
    const auto shape = [&disc] { return disc.cursor().shape(); };
    QTest::mouseMove(&disc, {1, 1});
    EXPECT_EQ(shape(), Qt::ArrowCursor);
    QTest::mouseMove(&disc, disc.rect().center());
    EXPECT_EQ(shape(), Qt::PointingHandCursor);
    key(Qt::Key_Space);
    EXPECT_EQ(shape(), Qt::ArrowCursor);
    QTest::mouseMove(&disc, disc.rect().center() + QPoint(5, 5));
    EXPECT_EQ(shape(), Qt::ArrowCursor);
    key(Qt::Key_Space);
    EXPECT_EQ(shape(), Qt::PointingHandCursor);
}

TEST_F(DocumentScreenTest, ShowsAHandOverADiscThatComesUnderAPointerAtRest)
{
    const DiscWidget& before = *document()->disc();
    const QPoint middle = before.mapToGlobal(before.rect().center());
    const QPoint beside = before.mapToGlobal(QPoint(1, 1));
    for (const bool isOver : {true, false}) {
        key(Qt::Key_Escape);
        ASSERT_EQ(document(), nullptr);
        QCursor::setPos(isOver ? middle : beside);
        settle();
        root->pick({file});
        settle();
        ASSERT_TRUE(isPlaying());
        EXPECT_EQ(document()->disc()->cursor().shape(), isOver ? Qt::PointingHandCursor : Qt::ArrowCursor);
    }
}

TEST_F(DocumentScreenTest, ShowsAHandWhereTheDiscGrowsUnderAPointerAtRest)
{
    const DiscWidget& disc = *document()->disc();
    window->resize(800, 600);
    settle();
    QCursor::setPos(window->mapToGlobal(QPoint(60, 500)));
    settle();
    EXPECT_EQ(disc.cursor().shape(), Qt::ArrowCursor);
    window->resize(1280, 1100);
    settle();
    EXPECT_EQ(disc.cursor().shape(), Qt::PointingHandCursor);
}

TEST_F(DocumentScreenTest, TellsWhenTheMusicBeginsAndEnds)
{
    QSignalSpy told(window.get(), &MainWindow::playingChanged);
    key(Qt::Key_Space);
    EXPECT_EQ(told.count(), 1);
    key(Qt::Key_Space);
    EXPECT_EQ(told.count(), 2);
}

} // namespace
} // namespace volvelle::test
