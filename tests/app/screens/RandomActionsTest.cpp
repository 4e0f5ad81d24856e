#include "tests/app/screens/ScreensFixture.h"

#include <QApplication>
#include <QFileDialog>
#include <QPointer>

#include <random>

namespace volvelle::test {
namespace {

// All under the sanitizers' compiler.
#ifdef __clang__
constexpr int actions = 2000;
#else
constexpr int actions = 500;
#endif

struct RandomActions : Screens {
    int draw(int lower, int upper) { return std::uniform_int_distribution(lower, upper)(draws); }

    // The dialog of Import holds buttons that lead into the folders of this computer.
    bool leaveImport() const
    {
        QPointer<QFileDialog> dialog = window->findChild<QFileDialog*>();
        if (dialog) {
            QTest::keyClick(dialog.data(), Qt::Key_Escape);
        }
        return dialog != nullptr;
    }

    void pressSomething()
    {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (qobject_cast<QFileDialog*>(dialog) != nullptr) {
            return;
        }
        const auto buttons = (dialog != nullptr ? dialog : window.get())->findChildren<QAbstractButton*>();
        if (buttons.isEmpty()) {
            return;
        }
        QAbstractButton* const one = buttons[draw(0, static_cast<int>(buttons.size()) - 1)];
        if (one->isVisible() && one->text() != "Import") { // which shows the system's dialogue
            QTest::mouseClick(one, Qt::LeftButton);
        }
    }

    void hitAKey()
    {
        static constexpr std::pair<Qt::Key, Qt::KeyboardModifiers::Int> keys[] = {
            {Qt::Key_G, 0},
            {Qt::Key_Space, 0},
            {Qt::Key_Escape, 0},
            {Qt::Key_Return, 0},
            {Qt::Key_Tab, 0},
            {Qt::Key_Right, 0},
            {Qt::Key_Down, 0},
            {Qt::Key_F1, 0},
            {Qt::Key_F2, 0},
            {Qt::Key_Delete, 0},
            {Qt::Key_A, 0},
            {Qt::Key_N, Qt::ControlModifier},
            {Qt::Key_D, Qt::ControlModifier},
            {Qt::Key_F, Qt::ControlModifier},
            {Qt::Key_O, Qt::ControlModifier},
            {Qt::Key_S, Qt::ControlModifier},
            {Qt::Key_Z, Qt::ControlModifier}};
        const auto [key, modifiers] = keys[draw(0, static_cast<int>(std::size(keys)) - 1)];
        if (qobject_cast<QFileDialog*>(QApplication::activeModalWidget()) != nullptr) {
            return;
        }
        QWidget* const focused = QApplication::focusWidget();
        QTest::keyClick(focused != nullptr ? focused : window.get(), key,
                        Qt::KeyboardModifiers::fromInt(modifiers));
    }

    void clickSomewhere()
    {
        if (QApplication::activeModalWidget() != nullptr) {
            return;
        }
        const QPoint at(draw(0, window->width() - 1), draw(60, window->height() - 1));
        QWidget* const target = window->childAt(at);
        const auto* pressed = qobject_cast<QAbstractButton*>(target);
        if (target == nullptr || (pressed != nullptr && pressed->text() == "Import")) {
            return;
        }
        if (draw(0, 2) == 0) {
            QTest::mouseDClick(target, Qt::LeftButton, {}, target->mapFrom(window.get(), at));
        } else {
            QTest::mouseClick(target, Qt::LeftButton, {}, target->mapFrom(window.get(), at));
        }
    }

    void actFromOutside()
    {
        switch (draw(0, 5)) {
        case 0:
            root->refresh();
            break;
        case 1:
            root->importOrWait(outside);
            break;
        case 2:
            window->resize(draw(400, 1600), draw(300, 1000));
            break;
        case 4:
            if (browser().isVisible() && QApplication::activeModalWidget() == nullptr) {
                QTest::keyClick(&browser(), Qt::Key_O, Qt::ControlModifier);
            }
            break;
        case 3:
            root->onBackground();
            root->onForeground();
            break;
        default:
            window->showMinimized();
            window->bringToFront();
            break;
        }
    }

    void act()
    {
        if (draw(0, 1) == 0 && leaveImport()) {
            ++imports;
            settle();
            return;
        }
        switch (draw(0, 9)) {
        case 0:
        case 1:
        case 2:
            pressSomething();
            break;
        case 3:
        case 4:
        case 5:
            hitAKey();
            break;
        case 6:
        case 7:
            clickSomewhere();
            break;
        case 8:
            actFromOutside();
            break;
        default:
            goOn(0.1 * draw(1, 30));
            break;
        }
        settle();
    }

    std::filesystem::path outside;
    std::mt19937 draws{20};
    int imports = 0;
};

TEST_F(RandomActions, LeaveAWindowThatCanBeUsed)
{
    for (int i = 0; i < 20; ++i) {
        writeIdea("Idea " + std::to_string(i) + ".mid", i);
    }
    home.write("Documents/Volvelle/Bad.mid", "none");
    outside = home.path / "Outside.mid";
    std::filesystem::copy_file(writeIdea("Slow tide.mid"), outside);
    open();
    for (int i = 0; i < actions; ++i) {
        act();
        console.take();
        const bool isUp = root->documentViewController && root->documentViewController->isUp();
        ASSERT_EQ(document() != nullptr, isUp) << i;
        ASSERT_TRUE(isUp || !isPlaying()) << i;
        ASSERT_TRUE(root->isPresenting == isUp || QApplication::activeModalWidget() != nullptr) << i;
    }
    EXPECT_GT(imports, 0);
}

} // namespace
} // namespace volvelle::test
