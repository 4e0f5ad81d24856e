#include "app/screens/DiscWidget.h"

#include "tests/app/circle/FakeSequence.h"
#include "tests/app/screens/ImageDifference.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPaintEvent>
#include <QScreen>

#include <algorithm>

namespace volvelle {
namespace {

// Counts what is painted of a disc.
class PaintedPixels : public QObject {
public:
    explicit PaintedPixels(QObject& disc) { disc.installEventFilter(this); }

    int take() { return std::exchange(count, 0); }

private:
    bool eventFilter(QObject* /*object*/, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            for (const QRect& rect : static_cast<QPaintEvent*>(event)->region()) {
                count += rect.width() * rect.height();
            }
        }
        return false;
    }

    int count = 0;
};

struct DiscWidgetTest : testing::Test {
    DiscWidgetTest()
    {
        for (int i = 0; i < 32; ++i) {
            sequence.add({0x90, static_cast<std::uint8_t>(40 + i), 100}, i / 2.0, i % 5 == 0 ? 3.0 : 0.5);
        }
        window.resize(600, 560);
        disc.setGeometry(40, 20, side, side);
        disc.circle()->setDelegate(&sequence);
        content.chords = {{0.0, "Am7"}, {4.0, "F"}, {8.0, "Dm"}};
        disc.setContent(content);
        setPlaying(true);
        window.show();
        QApplication::processEvents();
        painted.take();
    }

    // What is on the screen against the disc painted at once, by the widget and by a fresh one.
    int difference()
    {
        const QImage shown = window.screen()->grabWindow(window.winId()).toImage();
        const QRect place(disc.mapTo(&window, QPoint()), disc.size());
        return std::max(test::greatestDifference(shown, window.grab().toImage()),
                        test::greatestDifference(shown.copy(place), pictureOfFreshOne()));
    }

    QImage pictureOfFreshOne()
    {
        QWidget around;
        DiscWidget fresh(&around);
        around.resize(window.size());
        fresh.setGeometry(disc.geometry());
        fresh.setContent(content);
        fresh.setPlaying(isPlaying);
        fresh.circle()->isHidden = disc.circle()->isHidden;
        fresh.circle()->setDelegate(&sequence);
        fresh.circle()->setProgress(disc.circle()->baseClass->currentBeat);
        return around.grab().toImage().copy(fresh.geometry());
    }

    void setPlaying(bool plays)
    {
        isPlaying = plays;
        disc.setPlaying(plays);
    }

    void moveTo(double beats)
    {
        disc.circle()->setProgress(beats);
        QApplication::processEvents();
    }

    static constexpr int side = 500;
    const std::string noMemory = "DiscWidget : Error: There is not enough memory to paint all of the music.";
    test::FakeSequence sequence;
    QWidget window;
    DiscWidget disc{&window};
    PaintedPixels painted{disc};
    DiscContent content;
    bool isPlaying = false;
};

TEST_F(DiscWidgetTest, PaintsWhatMovesAndShowsAllOfIt)
{
    int pixels = 0;
    int steps = 0;
    for (double beats = 0.03; beats < 17.0; beats += 0.21, ++steps) {
        painted.take();
        moveTo(beats);
        pixels += painted.take();
        EXPECT_LE(difference(), 4) << beats;
    }
    EXPECT_GT(pixels, 0);
    EXPECT_LT(pixels / steps, side * side / 3);
}

TEST_F(DiscWidgetTest, FollowsJumps)
{
    for (const double beats : {1.0, 9.0, 0.0, 15.9, -2.0, 3.0, 100.0, 2.0}) {
        moveTo(beats);
        EXPECT_LE(difference(), 4) << beats;
    }
}

TEST_F(DiscWidgetTest, IsPaintedWholeWhereMoreThanThePositionIsNew)
{
    moveTo(1.0);
    painted.take();
    disc.circle()->setNeedsDisplay();
    QApplication::processEvents();
    EXPECT_EQ(painted.take(), side * side);

    sequence.add({0x91, 80, 127}, 6.0, 8.0);
    moveTo(1.01);
    QApplication::processEvents();
    EXPECT_LE(difference(), 4);
    sequence.beats = 32.0;
    moveTo(1.02);
    QApplication::processEvents();
    EXPECT_LE(difference(), 4);
}

TEST_F(DiscWidgetTest, IsPaintedWholeOnceItHasStopped)
{
    moveTo(5.0);
    setPlaying(false);
    QApplication::processEvents();
    sequence.add({0x91, 80, 127}, 6.0, 8.0);
    disc.circle()->setNeedsDisplay();
    QApplication::processEvents();
    EXPECT_LE(difference(), 4);
}

TEST_F(DiscWidgetTest, ShowsTheCircleThatComesOrGoesAsThePositionMoves)
{
    for (const bool isHidden : {true, false}) {
        moveTo(isHidden ? 2.0 : 3.0);
        disc.circle()->isHidden = isHidden;
        moveTo(isHidden ? 2.5 : 3.5);
        EXPECT_LE(difference(), 4) << isHidden;
    }
}

TEST_F(DiscWidgetTest, LeavesOutTheNotesThatFindNoMemory)
{
    test::ConsoleCapture console;
    for (const int answers : {0, 1}) {
        sequence.add({0x91, 80, 127}, 6.0, 8.0);
        sequence.answersUntilFull = answers;
        disc.circle()->setNeedsDisplay();
        QApplication::processEvents();
        EXPECT_EQ(console.take(), std::vector<std::string>{noMemory});
        sequence.questions = 0;
        moveTo(answers + 1.0);
        moveTo(answers + 1.5);
        EXPECT_EQ(sequence.questions, 0);
        sequence.answersUntilFull = -1;
        disc.circle()->setNeedsDisplay();
        QApplication::processEvents();
        EXPECT_LE(difference(), 4);
    }
}

TEST_F(DiscWidgetTest, LeavesOutTheNotesThatFindNoMemoryAsItMoves)
{
    test::ConsoleCapture console;
    for (const int answers : {0, 1}) {
        moveTo(answers);
        sequence.answersUntilFull = answers;
        moveTo(answers + 3.0);
        EXPECT_EQ(console.take(), std::vector<std::string>{noMemory});
        EXPECT_EQ(disc.circle()->baseClass->chosen, nullptr);
        sequence.answersUntilFull = -1;
        disc.setContent(content);
        QApplication::processEvents();
        EXPECT_LE(difference(), 4);
    }
}

TEST_F(DiscWidgetTest, PaintsNothingWhileItsWindowIsAway)
{
    window.hide();
    painted.take();
    moveTo(5.0);
    EXPECT_EQ(painted.take(), 0);
    window.show();
    QApplication::processEvents();
    EXPECT_LE(difference(), 4);
}

} // namespace
} // namespace volvelle
