#include "app/screens/FadeOut.h"
#include "app/screens/FocusRing.h"
#include "app/screens/HelpScreen.h"
#include "app/screens/LineLabel.h"
#include "tests/app/screens/ScreensFixture.h"

#include <QAccessible>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPdfView>
#include <QSignalSpy>

#include <utility>

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

TEST_F(WindowTest, CutsALongLineInItsMiddleAndKeepsItsButtonsInSight)
{
    writeIdea("The <b>longest &amp; slowest tide " + std::string(200, 'x') + " of all.mid");
    root->refresh();
    window->resize(800, 600);
    settle();
    key(Qt::Key_Down);
    key(Qt::Key_Delete);
    auto& bar = *window->findChild<MessageBar*>();
    ASSERT_TRUE(bar.isVisible());
    EXPECT_EQ(window->width(), 800);
    for (const char* name : {"Undo", "Close"}) {
        const QAbstractButton* const shown = button(bar, name);
        ASSERT_NE(shown, nullptr);
        EXPECT_LE(shown->geometry().right(), bar.width() - 20) << name;
        EXPECT_GE(shown->width(), shown->sizeHint().width()) << name;
    }
    const auto* const line = bar.findChild<LineLabel*>();
    ASSERT_NE(line, nullptr);
    EXPECT_LE(line->geometry().right(), button(bar, "Undo")->geometry().left());
    EXPECT_TRUE(line->shownText().startsWith("'The <b>longest &amp; slow"))
        << line->shownText().toStdString();
    EXPECT_TRUE(line->shownText().endsWith(" of all' was moved to the trash."));
    EXPECT_TRUE(line->shownText().contains(QChar(0x2026)));
    EXPECT_TRUE(line->toolTip().contains(QString(200, 'x')));
    EXPECT_TRUE(Qt::mightBeRichText(line->toolTip()));
    EXPECT_TRUE(line->toolTip().contains("&lt;b&gt;longest &amp;amp; slowest"));
    EXPECT_TRUE(QString::fromStdString(notice()).contains(QString(200, 'x')));
    window->resize(1280, 800);
    root->onBrowserChanged();
    settle();
    EXPECT_EQ(window->width(), 1280);
}

TEST_F(WindowTest, ShowsAShortLineWholeAndWithoutATip)
{
    writeIdea("Slow tide.mid");
    root->refresh();
    settle();
    key(Qt::Key_Down);
    key(Qt::Key_Delete);
    const auto* const line = window->findChild<MessageBar*>()->findChild<LineLabel*>();
    EXPECT_EQ(line->shownText(), "'Slow tide' was moved to the trash.");
    EXPECT_EQ(line->toolTip(), "");
}

TEST_F(WindowTest, ALineIsTextForScreenReadersAndCutAnewWhereItsLettersGrow)
{
    writeIdea("Slow tide.mid");
    root->refresh();
    settle();
    key(Qt::Key_Down);
    key(Qt::Key_Delete);
    auto* const line = window->findChild<MessageBar*>()->findChild<LineLabel*>();
    const QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(line);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->role(), QAccessible::StaticText);
    EXPECT_EQ(read->text(QAccessible::Name), "'Slow tide' was moved to the trash.");
    QFont large = line->font();
    large.setPixelSize(200);
    line->setFont(large);
    EXPECT_TRUE(line->toolTip().contains("'Slow tide' was moved to the trash."));
}

// Asks for a place, and answers with what the dialog says then.
struct WindowSaveAsTest : WindowTest {
    QFileDialog& ask(const std::filesystem::path& proposal)
    {
        window->askForPlace(proposal,
                            [this](const std::optional<std::filesystem::path>& place) { chosen = place; });
        settle();
        return *window->findChild<QFileDialog*>();
    }

    static void accept(QDialog& dialog)
    {
        dialog.accept();
        settle();
    }

    static std::string shown(const QFileDialog& dialog)
    {
        return dialog.selectedFiles().value(0).toStdString();
    }

    std::optional<std::filesystem::path> chosen;
};

TEST_F(WindowSaveAsTest, ProposesANameOfOtherBytesAsItIsShownAndTakesItBack)
{
    QFileDialog& dialog = ask(folder / "a\xE9.mid");
    EXPECT_EQ(shown(dialog), (folder / "aé.mid").string());
    accept(dialog);
    EXPECT_EQ(chosen, folder / "a\xE9.mid");
}

TEST_F(WindowSaveAsTest, TakesAnotherNameWithAnEndingAsItIsTyped)
{
    QFileDialog& dialog = ask(folder / "a\xE9.mid");
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText("Grün");
    accept(dialog);
    EXPECT_EQ(chosen, folder / "Grün.mid");
}

TEST_F(WindowSaveAsTest, ProposesTheNearestFolderThatHasANameInText)
{
    const auto place = home.path / "Gr\xFCn/below";
    std::filesystem::create_directories(place);
    QFileDialog& dialog = ask(place / "a\xE9.mid");
    EXPECT_EQ(shown(dialog), (home.path / "aé.mid").string());
    accept(dialog);
    EXPECT_EQ(chosen, home.path / "aé.mid");
}

TEST_F(WindowSaveAsTest, TellsThatNoneWasChosen)
{
    chosen = "something";
    ask(folder / "a.mid").reject();
    settle();
    EXPECT_EQ(chosen, std::nullopt);
}

// Counts what is painted of a widget.
struct PaintCounter : QObject {
    bool eventFilter(QObject* /*of*/, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    int count = 0;
};

TEST_F(WindowTest, PaintsNothingWhileItIsNotSeen)
{
    root->createDocument();
    settle();
    for (QWidget* child : window->findChildren<QWidget*>()) {
        if (dynamic_cast<FadeOut*>(child) != nullptr) {
            delete child; // it paints by the clock
            break;
        }
    }
    PaintCounter painted;
    DiscWidget& disc = *document()->disc();
    disc.installEventFilter(&painted);
    goOn(0.3);
    EXPECT_GT(std::exchange(painted.count, 0), 0);
    window->showMinimized();
    settle();
    painted.count = 0;
    goOn(0.3);
    EXPECT_EQ(painted.count, 0) << "minimised";
    window->bringToFront();
    settle();
    EXPECT_GT(std::exchange(painted.count, 0), 0);
    window->hide();
    settle();
    painted.count = 0;
    goOn(0.3);
    EXPECT_EQ(painted.count, 0) << "hidden";
    window->show();
    settle();
    EXPECT_GT(std::exchange(painted.count, 0), 0);
    key(Qt::Key_F1);
    painted.count = 0;
    goOn(0.3);
    EXPECT_EQ(painted.count, 0) << "under another screen";
    EXPECT_TRUE(isPlaying());
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
