#include "app/screens/DiscPainter.h"
#include "app/screens/DiscImage.h"
#include "tests/app/circle/FakeSequence.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace volvelle {
namespace {

struct DiscPainterTest : testing::Test {
    DiscPainterTest()
    {
        circle.makeColors();
        circle.delegate = &sequence;
        sequence.add({0x93, 60, 127}, 2.0, 12.0);
        content.chords = {{0.0, "Am7"}, {8.0, "F"}};
    }

    QImage image(Theme theme = Theme::dark, int side = 604, double ratio = 1.0)
    {
        return discImage(content, circle, side, ratio, theme);
    }

    test::FakeSequence sequence;
    MIDICircleViewBase circle;
    DiscContent content;
};

QRgb at(const QImage& image, double x, double y)
{
    return image.pixel(static_cast<int>(image.width() * x), static_cast<int>(image.height() * y));
}

void expectNear(QRgb found, const QColor& wanted)
{
    EXPECT_NEAR(qRed(found), wanted.red(), 4);
    EXPECT_NEAR(qGreen(found), wanted.green(), 4);
    EXPECT_NEAR(qBlue(found), wanted.blue(), 4);
}

TEST_F(DiscPainterTest, IsAsLargeAsAsked)
{
    EXPECT_EQ(image(Theme::dark, 100, 2.0).size(), QSize(200, 200));
    EXPECT_EQ(image(Theme::light, 0).size(), QSize(1, 1));
}

TEST_F(DiscPainterTest, HasInkRimAndHubInTheThemesColours)
{
    for (const Theme theme : {Theme::dark, Theme::light}) {
        const Tokens& tokens = Tokens::of(theme);
        const QImage disc = image(theme);
        EXPECT_EQ(at(disc, 0.0, 0.0), 0U);
        EXPECT_EQ(at(disc, 0.5 + 270.0 / 604, 0.52), tokens.rim.rgba());
        EXPECT_EQ(at(disc, 0.5 + 102.0 / 604, 0.53), tokens.disc.rgba());
        EXPECT_EQ(at(disc, 0.45, 0.45), tokens.rim.rgba());
    }
}

TEST_F(DiscPainterTest, HasItsNotesWhereTheCanvasIs)
{
    const QColor note = QColor::fromHsvF(3 / 16.0F, 0.5F, 0.8F);
    expectNear(at(image(), 0.5, 0.5 + 168.0 / 604), note);
    content.isSmall = true;
    expectNear(at(image(Theme::dark, 534), 0.5, 0.5 + 168.0 / 534), note);
}

TEST_F(DiscPainterTest, NotesOfASmallOneAreNeverThick)
{
    content.isSmall = true;
    circle.currentBeat = 2.0;
    const QImage disc = image(Theme::dark, 534);
    EXPECT_EQ(at(disc, 0.5, 0.5 + 172.0 / 534), Tokens::of(Theme::dark).disc.rgba());
    EXPECT_EQ(circle.currentBeat, 2.0);
}

TEST_F(DiscPainterTest, IsFaintAndWithoutTextsInAnEmptyBrowser)
{
    sequence.events.clear();
    sequence.add({0x93, 62, 127}, 0.0, 12.0); // at 172
    const Tokens& tokens = Tokens::of(Theme::dark);
    const QImage disc = faintDiscImage(sequence, 604, 1.0, Theme::dark);
    EXPECT_EQ(faintDiscImage(sequence, 100, 2.0, Theme::dark).size(), QSize(200, 200));
    const auto below = [&disc](double radius) { // to the right, half way down
        const double place = 0.5 + radius * std::numbers::sqrt2 / 2.0 / 604.0;
        return at(disc, place, place);
    };
    const auto faint = [](int ink) { return static_cast<int>(std::lround(ink * 0.83 + 255 * 0.17)); };
    expectNear(below(172.0),
               {faint(tokens.disc.red()), faint(tokens.disc.green()), faint(tokens.disc.blue())});
    EXPECT_EQ(below(176.0), tokens.disc.rgba()) << "thin";
    for (int y = 302 + 15; y < 302 + 75; ++y) {
        for (int x = 302 - 20; x < 302 + 20; ++x) {
            ASSERT_EQ(disc.pixel(x, y), tokens.rim.rgba()) << x << " " << y;
        }
    }
}

TEST_F(DiscPainterTest, StaysWholeAsItMovesAndChanges)
{
    DiscPainter kept;
    const auto paint = [&](DiscPainter& disc) {
        QImage painted(300, 300, QImage::Format_ARGB32_Premultiplied);
        painted.fill(Qt::transparent);
        QPainter painter(&painted);
        disc.paint(painter, content, 300.0, Theme::light);
        painter.end();
        return painted;
    };
    for (int step = 0; step < 40; ++step) {
        content.position = step / 2.0;
        content.isPlaying = step % 5 != 0;
        content.tempo = step < 20 ? 120.0 : 93.5;
        DiscPainter fresh;
        EXPECT_EQ(paint(kept), paint(fresh));
    }
}

TEST_F(DiscPainterTest, PaintsWhatHasNoLength)
{
    content.beats = sequence.beats = 0.0;
    content.isPlaying = true;
    EXPECT_FALSE(image().isNull());
}

} // namespace
} // namespace volvelle
