#include "app/screens/CirclePainter.h"
#include "app/circle/GraphicsContext.h"
#include "app/screens/ArcChoice.h"
#include "app/screens/ArcPainting.h"
#include "tests/app/circle/FakeSequence.h"
#include "tests/app/screens/ImageDifference.h"

#include <gtest/gtest.h>

#include <numbers>
#include <random>
#include <thread>

namespace volvelle {
namespace {

using test::greatestDifference;

constexpr double pi = std::numbers::pi;

QImage ground(QSize size, double ratio)
{
    QImage image(size * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(0x0C0F13);
    return image;
}

struct CirclePainterTest : testing::Test {
    CirclePainterTest()
    {
        circle.makeColors();
        circle.delegate = &sequence;
    }

    void addNotes(int count, int lowest, int highest)
    {
        std::mt19937 draws(7);
        const auto draw = [&](int from, int to) { return std::uniform_int_distribution(from, to)(draws); };
        for (int i = 0; i < count; ++i) {
            const auto status = static_cast<std::uint8_t>(0x90 + draw(0, 15));
            sequence.add({status, static_cast<std::uint8_t>(draw(lowest, highest)),
                          static_cast<std::uint8_t>(draw(1, 127))},
                         draw(0, 63) / 4.0, draw(0, 9) == 0 ? draw(0, 80) / 4.0 : draw(0, 4) / 4.0);
        }
    }

    CircleDrawing drawn()
    {
        GraphicsContext context;
        const GraphicsContext::Current current(context);
        circle.drawSymbolMain(frame, resizing);
        return context.drawing;
    }

    QImage paintedFromNothing(const CircleDrawing& drawing) const
    {
        QImage image = ground(size, ratio);
        QPainter painter(&image);
        painter.translate(offset);
        CirclePainter::paint(painter, drawing);
        return image;
    }

    // Holds the kept picture against one from nothing.
    void compare()
    {
        QImage kept = ground(size, ratio);
        {
            QPainter painter(&kept);
            painter.translate(offset);
            cached.paint(painter, circle, frame, resizing);
        }
        EXPECT_LE(greatestDifference(kept, paintedFromNothing(drawn())), allowed);
        EXPECT_GT(greatestDifference(kept, ground(size, ratio)), 4);
    }

    void compareAround(double step)
    {
        for (circle.currentBeat = -1.0; circle.currentBeat < 17.0; circle.currentBeat += step) {
            SCOPED_TRACE(circle.currentBeat);
            compare();
        }
    }

    test::FakeSequence sequence;
    MIDICircleViewBase circle;
    CirclePainter cached;
    CGRect frame{0, 0, 200, 200};
    ResizingBehavior resizing = ResizingBehavior::fitInside;
    QSize size{200, 200};
    QPointF offset;
    double ratio = 1.0;
    int allowed = 4;
};

TEST_F(CirclePainterTest, TheKeptPictureIsTheOneFromNothingAllAround)
{
    addNotes(300, 0, 103);
    compareAround(0.4);
}

TEST_F(CirclePainterTest, NotesPastTheRimAreTheSameToo)
{
    addNotes(100, 100, 127);
    compareAround(0.7);
}

TEST_F(CirclePainterTest, EveryResizingIsTheSame)
{
    addNotes(150, 0, 127);
    size = {300, 220};
    for (const CGRect& place : {CGRect{0, 0, 300, 220}, CGRect{20.5, 10.25, 260, 120}}) {
        frame = place;
        for (int raw = 0; raw < 4; ++raw) {
            resizing = *ResizingBehavior::fromRawValue(raw);
            SCOPED_TRACE(raw);
            compareAround(2.3);
        }
    }
}

TEST_F(CirclePainterTest, EveryPixelRatioAndOffsetIsTheSame)
{
    addNotes(150, 0, 127);
    for (const double value : {1.0, 1.25, 1.5, 2.0}) {
        ratio = value;
        // Corners are rounded to 64ths of a pixel, here and there to the other side.
        allowed = value == 1.25 ? 8 : 4;
        for (const QPointF place : {QPointF(0, 0), QPointF(7, 3), QPointF(0.3, 0.6)}) {
            offset = place;
            SCOPED_TRACE(value);
            compareAround(5.3);
        }
    }
}

TEST_F(CirclePainterTest, ChangesInPlaceAreSeen)
{
    addNotes(100, 20, 110);
    compare();
    circle.currentBeat = 3.0;
    sequence.events[7]->duration = 9.0;
    compare();
    sequence.events[9]->pEvent()->data[1] = 70;
    compare();
    sequence.events.pop_back();
    compare();
    sequence.beats = 24.0;
    compare();
    circle.colorChannel = {0.2, 0.9, 0.3, 1.0};
    circle.makeColors();
    compare();
    frame = {0, 0, 180, 180};
    compare();
    circle.progressionValue = 0.1;
    compare();
    circle.delegate = nullptr;
    compare();
}

TEST_F(CirclePainterTest, ATurnedPainterIsServedFromNothing)
{
    addNotes(50, 20, 110);
    QImage image = ground(size, ratio);
    QPainter painter(&image);
    painter.rotate(30.0);
    cached.paint(painter, circle, frame, resizing);
    painter.end();
    EXPECT_GT(greatestDifference(image, ground(size, ratio)), 4);
}

TEST_F(CirclePainterTest, ABeatCountOfNothingPaintsTheHandAlone)
{
    addNotes(20, 20, 127);
    sequence.beats = 0.0;
    compare();
}

TEST_F(CirclePainterTest, ThousandsOfNotesHeldAllAroundAreThinnedOut)
{
    for (int i = 0; i < 5'000; ++i) {
        sequence.add({0x90, static_cast<std::uint8_t>(90 + i % 13), 1}, i % 16, 16.0);
    }
    allowed = 32; // of thousands that lie over each other
    compare();
    circle.currentBeat = 3.0;
    compare();
    CircleDrawing drawing = drawn();
    const QImage all = paintedFromNothing(drawing);
    const std::vector<bool> chosen = chooseArcs(drawing, ratio);
    std::vector<CircleArc> kept;
    for (std::size_t i = 0; i < drawing.arcs.size(); ++i) {
        if (chosen[i]) {
            kept.push_back(drawing.arcs[i]);
        }
    }
    EXPECT_LT(kept.size(), drawing.arcs.size());
    drawing.arcs = kept;
    EXPECT_EQ(paintedFromNothing(drawing), all);
}

TEST_F(CirclePainterTest, IsPaintedOnTwoThreadsAtOnce)
{
    addNotes(100, 20, 110);

    struct Second : CirclePainterTest {
        void TestBody() override {}
    };

    Second second;
    second.addNotes(100, 20, 110);
    std::thread other([&second] {
        for (int i = 0; i < 20; ++i) {
            second.compare();
        }
    });
    for (int i = 0; i < 20; ++i) {
        compare();
    }
    other.join();
}

TEST(CirclePainterClippedOutline, StaysInsideItsClips)
{
    const CircleClip clip{{{0, 0}, {512, 0}, {512, 512}, {0, 512}}};
    const CircleArc arc{{256, 256}, 302, -pi / 2, pi, 10.0, UIColor::redColor(), 1.0, {clip}};
    const QPainterPath path = clippedOutline(arc);
    const double corner = 302.0 / std::numbers::sqrt2;
    EXPECT_TRUE(path.contains(QPointF(256 + corner, 256 + corner)));
    EXPECT_TRUE(path.contains(QPointF(256 + corner, 256 - corner)));
    EXPECT_FALSE(path.contains(QPointF(256 - corner, 256 - corner)));
    EXPECT_TRUE(QRectF(-1e-6, -1e-6, 512.001, 512.001).contains(path.boundingRect()));
}

} // namespace
} // namespace volvelle
