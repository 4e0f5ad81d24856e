#include "app/screens/FocusRing.h"
#include "app/screens/HelpScreen.h"
#include "tests/app/screens/ScreensFixture.h"

#include <QApplication>
#include <QMessageBox>
#include <QPdfView>
#include <QSignalSpy>

namespace volvelle::test {
namespace {

struct WindowTest : Screens {
    WindowTest() { open(); }

    HelpScreen* help() const { return window->findChild<HelpScreen*>(); }

    void present(const std::vector<UIAlertAction>& actions) const
    {
        root->present(UIAlertController{"Title", "Text", actions});
        settle();
    }
};

TEST_F(WindowTest, ShowsHelpOverADocumentThatPlaysOn)
{
    root->createDocument();
    settle();
    ASSERT_TRUE(isPlaying());
    key(Qt::Key_F1);
    ASSERT_NE(help(), nullptr);
    EXPECT_TRUE(help()->isVisible());
    EXPECT_TRUE(isPlaying());
    EXPECT_NE(qobject_cast<QPdfView*>(QApplication::focusWidget()), nullptr);
    key(Qt::Key_F1);
    EXPECT_EQ(window->findChildren<HelpScreen*>().size(), 1);
    key(Qt::Key_Escape);
    EXPECT_EQ(help(), nullptr);
    EXPECT_TRUE(isPlaying());
    EXPECT_TRUE(document()->disc()->hasFocus());
}

TEST_F(WindowTest, PlaysOnWhileItIsMinimised)
{
    root->createDocument();
    settle();
    window->showMinimized();
    settle();
    window->bringToFront();
    settle();
    EXPECT_TRUE(isPlaying());
    EXPECT_FALSE(window->isMinimized());
    EXPECT_NE(document(), nullptr);
}

TEST_F(WindowTest, ShowsHelpFromTheBrowserAndGoesBack)
{
    key(Qt::Key_F1);
    ASSERT_NE(help(), nullptr);
    press("Done");
    EXPECT_EQ(help(), nullptr);
    EXPECT_TRUE(browser().isVisible());
}

TEST_F(WindowTest, QuitsFromEveryScreen)
{
    QSignalSpy closing(window.get(), &MainWindow::closing);
    key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(closing.count(), 1);
    window->show();
    root->createDocument();
    settle();
    key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(closing.count(), 2);
}

TEST_F(WindowTest, CallsTheButtonOfAnAlertThatIsPressed)
{
    std::vector<int> pressed;
    for (const int which : {0, 1, 2}) {
        present({{"Retry", [&] { pressed.push_back(0); }},
                 {"Save As", [&] { pressed.push_back(1); }},
                 {"OK", [&] { pressed.push_back(2); }}});
        EXPECT_EQ(alert(), "Title: Text");
        press(which == 0 ? "Retry" : which == 1 ? "Save As" : "OK");
        EXPECT_EQ(alert(), "");
    }
    EXPECT_EQ(pressed, (std::vector{0, 1, 2}));
}

TEST_F(WindowTest, TakesTheFirstButtonHoweverAnAlertIsClosed)
{
    int count = 0;
    const std::vector<UIAlertAction> actions{{"Retry", [&] { ++count; }}, {"OK", [] { ADD_FAILURE(); }}};
    present(actions);
    QApplication::activeModalWidget()->close();
    settle();
    EXPECT_EQ(count, 1);
    present(actions);
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(count, 2);
    present(actions);
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return);
    settle();
    EXPECT_EQ(count, 3);
}

TEST_F(WindowTest, StaysUsableAfterAnAlertWasClosedByItsWindow)
{
    root->showAbout();
    settle();
    EXPECT_TRUE(root->isPresenting);
    QApplication::activeModalWidget()->close();
    settle();
    EXPECT_FALSE(root->isPresenting);
}

TEST_F(WindowTest, DropsTheLayoutOfADocumentThatDidNotOpen)
{
    const auto count = [this] { return window->findChildren<DocumentScreen*>().size(); };
    for (int time = 0; time < 5; ++time) {
        root->presentDocument(home.path / "missing.mid");
        settle();
        EXPECT_EQ(document(), nullptr);
        EXPECT_LE(count(), 2);
    }
}

TEST_F(WindowTest, RingsTheControlThatGotTheFocusByKey)
{
    writeIdea("Slow tide.mid");
    root->refresh();
    settle();
    const auto rings = [this] {
        for (const QWidget* child : window->findChildren<QWidget*>()) {
            if (dynamic_cast<const FocusRing*>(child) != nullptr) {
                return child;
            }
        }
        return static_cast<const QWidget*>(nullptr);
    };
    const QWidget* const ring = rings();
    ASSERT_NE(ring, nullptr);
    QAbstractButton* const about = button(browser(), "About");
    const auto around = [&] {
        return QRect(about->mapTo(window.get(), QPoint()), about->size()).adjusted(-4, -4, 4, 4);
    };
    about->setFocus(Qt::OtherFocusReason);
    EXPECT_FALSE(ring->isVisible());
    about->clearFocus();
    about->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(ring->isVisible());
    EXPECT_EQ(ring->geometry(), around());
    window->resize(900, 700);
    settle();
    EXPECT_EQ(ring->geometry(), around());
}

} // namespace
} // namespace volvelle::test
