#include "app/circle/MIDICircleView.h"
#include "app/circle/GraphicsContext.h"
#include "tests/app/circle/FakeSequence.h"
#include "tests/support/Stops.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace volvelle {
namespace {

using test::FakeSequence;

constexpr double pi = std::numbers::pi;
constexpr CGRect canvas = MIDICircleViewBase::canvas;

template <class Draw>
CircleDrawing drawn(Draw draw)
{
    GraphicsContext context;
    const GraphicsContext::Current current(context);
    draw();
    return context.drawing;
}

CircleDrawing mainOf(MIDICircleViewBase& circle, CGRect frame = canvas,
                     ResizingBehavior resizing = ResizingBehavior::fitInside)
{
    return drawn([&] { circle.drawSymbolMain(frame, resizing); });
}

void expectNear(CGPoint found, CGPoint wanted)
{
    EXPECT_NEAR(found.x, wanted.x, 1e-9);
    EXPECT_NEAR(found.y, wanted.y, 1e-9);
}

void expectColor(const UIColor& found, const UIColor& wanted)
{
    EXPECT_NEAR(found.red, wanted.red, 1e-9);
    EXPECT_NEAR(found.green, wanted.green, 1e-9);
    EXPECT_NEAR(found.blue, wanted.blue, 1e-9);
    EXPECT_NEAR(found.alpha, wanted.alpha, 1e-9);
}

void expectArc(const CircleArc& found, const CircleArc& wanted)
{
    expectNear(found.centre, wanted.centre);
    EXPECT_NEAR(found.radius, wanted.radius, 1e-9);
    EXPECT_NEAR(std::remainder(found.startAngle - wanted.startAngle, 2.0 * pi), 0.0, 1e-9);
    EXPECT_NEAR(found.sweep, wanted.sweep, 1e-9);
    EXPECT_NEAR(found.width, wanted.width, 1e-9);
    expectColor(found.color, wanted.color);
    EXPECT_NEAR(found.stretch, wanted.stretch, 1e-9);
    ASSERT_EQ(found.clips.size(), wanted.clips.size());
    for (std::size_t clip = 0; clip < wanted.clips.size(); ++clip) {
        for (std::size_t corner = 0; corner < 4; ++corner) {
            expectNear(found.clips[clip].at(corner), wanted.clips[clip].at(corner));
        }
    }
}

void expectDrawing(const CircleDrawing& found, const CircleDrawing& wanted)
{
    ASSERT_EQ(found.lines.size(), wanted.lines.size());
    for (std::size_t i = 0; i < wanted.lines.size(); ++i) {
        expectNear(found.lines[i].from, wanted.lines[i].from);
        expectNear(found.lines[i].to, wanted.lines[i].to);
        EXPECT_NEAR(found.lines[i].width, wanted.lines[i].width, 1e-9);
        expectColor(found.lines[i].color, wanted.lines[i].color);
    }
    ASSERT_EQ(found.arcs.size(), wanted.arcs.size());
    for (std::size_t i = 0; i < wanted.arcs.size(); ++i) {
        expectArc(found.arcs[i], wanted.arcs[i]);
    }
}

struct MIDICircleViewTest : testing::Test {
    MIDICircleViewTest()
    {
        base.makeColors();
        base.delegate = &sequence;
    }

    std::vector<double> widths()
    {
        std::vector<double> found;
        for (const CircleArc& arc : mainOf(base).arcs) {
            found.push_back(arc.width);
        }
        return found;
    }

    FakeSequence sequence;
    MIDICircleViewBase base;
};

CGRect applied(ResizingBehavior resizing, MIDICircleViewBase& base, CGRect target = {0, 0, 1024, 512})
{
    return resizing.apply(canvas, target, base);
}

TEST_F(MIDICircleViewTest, AnEqualOrEmptyTargetGivesTheRectangleAndLeavesTheScaling)
{
    base.scaling = {3.0, 4.0};
    for (const CGRect& target : {canvas, CGRect{}}) {
        EXPECT_EQ(applied(ResizingBehavior::stretch, base, target), canvas);
    }
    EXPECT_EQ(base.scaling, (CGSize{3.0, 4.0}));
}

TEST_F(MIDICircleViewTest, EachResizingHasItsScalesAndItsPlace)
{
    struct Row {
        ResizingBehavior resizing;
        CGSize scales;
        CGRect place;
    };

    for (const Row& row : {Row{ResizingBehavior::fitInside, {1, 1}, {256, 0, 512, 512}},
                           Row{ResizingBehavior::fillOutside, {2, 2}, {0, -256, 1024, 1024}},
                           Row{ResizingBehavior::stretch, {2, 1}, {0, 0, 1024, 512}},
                           Row{ResizingBehavior::centered, {1, 1}, {256, 0, 512, 512}}}) {
        EXPECT_EQ(applied(row.resizing, base), row.place);
        EXPECT_EQ(base.scaling, row.scales);
        EXPECT_EQ(base.getScalingFactor(), static_cast<float>(row.scales.width));
    }
}

TEST_F(MIDICircleViewTest, ATargetOfNegativeSizeIsTheSamePlace)
{
    EXPECT_EQ(applied(ResizingBehavior::stretch, base, {1024, 512, -1024, -512}), (CGRect{0, 0, 1024, 512}));
    EXPECT_EQ(base.scaling, (CGSize{2, 1}));
}

TEST(ResizingBehavior, HasFourRawValues)
{
    for (int raw = 0; raw < 4; ++raw) {
        EXPECT_EQ(ResizingBehavior::fromRawValue(raw)->rawValue(), raw);
    }
    EXPECT_FALSE(ResizingBehavior::fromRawValue(-1));
    EXPECT_FALSE(ResizingBehavior::fromRawValue(4));
}

TEST_F(MIDICircleViewTest, ChannelsHaveSixteenHuesEvenlyAround)
{
    for (std::size_t channel = 0; channel < 16; ++channel) {
        const UIColor::HSB parts = base.getChannelColors().at(channel).getHSB();
        EXPECT_NEAR(parts.hue, static_cast<double>(channel) / 16.0, 1e-12);
        EXPECT_NEAR(parts.saturation, 0.5, 1e-12);
        EXPECT_NEAR(parts.brightness, 0.8, 1e-12);
    }
    expectColor(base.getChannelColors().at(0), {0.8, 0.4, 0.4, 1.0});
    expectColor(base.getChannelColors().at(8), {0.4, 0.8, 0.8, 1.0});
    base.colorChannel = {0.25, 0.5, 0.25, 0.75};
    base.makeColors();
    expectColor(base.getChannelColors().at(4), {0.375, 0.5, 0.25, 0.75});
}

TEST_F(MIDICircleViewTest, WithoutEventsOnlyTheHandIsDrawn)
{
    const CircleDrawing hand{{{{256, 9}, {256, 246}, 0.5, {1, 0, 0, 1}}}, {}};
    expectDrawing(mainOf(base), hand);
    base.delegate = nullptr;
    expectDrawing(mainOf(base), hand);
}

TEST_F(MIDICircleViewTest, ANoteIsAnArcFromItsStartOverItsLength)
{
    base.currentBeat = 8.0;
    sequence.add({0x90, 60, 127}, 4.0, 1.0);
    sequence.add({0x80, 60, 0}, 5.0, 0.0);
    sequence.add({0xB8, 7, 100}, 5.0, 0.0);
    sequence.add({0x98, 0, 0}, 8.0, 40.0);
    sequence.add({0x90, 61, 0}, 12.0, 0.0);
    expectDrawing(mainOf(base), {{{{256, 9}, {256, 246}, 0.5, {1, 0, 0, 1}}},
                                 {{{256, 256}, 168, 0.0, pi / 8.0, 2.0, {0.8, 0.4, 0.4, 1.0}, 1.0, {}},
                                  {{256, 256}, 48, pi / 2.0, 2.0 * pi, 10.0, {0.4, 0.8, 0.8, 0.0}, 1.0, {}},
                                  {{256, 256}, 170, pi, 0.0, 2.0, {0.8, 0.4, 0.4, 0.0}, 1.0, {}}}});
}

TEST_F(MIDICircleViewTest, OfThirtyTwoBeatsTheEighthStandsAtThreeOClock)
{
    sequence.beats = 32.0;
    sequence.add({0x90, 60, 127}, 8.0, 1.0);
    EXPECT_NEAR(mainOf(base).arcs.at(0).startAngle, 0.0, 1e-12);
    EXPECT_EQ(base.beatLength, 32.0);
}

TEST_F(MIDICircleViewTest, NotesThatStartWithinABeatOfThePositionAreThick)
{
    base.currentBeat = 4.0;
    for (const double start : {4.0, 4.99, 5.0, 3.99}) {
        sequence.add({0x90, 60, 127}, start, 0.5);
    }
    sequence.add({0x90, 60, 127}, 3.0, 2.0);
    EXPECT_EQ(widths(), (std::vector<double>{10.0, 10.0, 2.0, 2.0, 2.0}));
}

TEST_F(MIDICircleViewTest, ANegativeLengthIsADotAndOneBeyondTheTurnAFullCircle)
{
    sequence.add({0x90, 60, 127}, 4.0, -1.0);
    sequence.add({0x90, 60, 127}, 4.0, 16.5);
    const CircleDrawing drawing = mainOf(base);
    EXPECT_EQ(drawing.arcs.at(0).sweep, 0.0);
    EXPECT_NEAR(drawing.arcs.at(1).sweep, 2.0 * pi, 1e-12);
}

TEST_F(MIDICircleViewTest, OnlyNotesThatReachPastTheCanvasAreClipped)
{
    for (const std::uint8_t key : std::vector<std::uint8_t>{103, 104, 127}) {
        sequence.add({0x90, key, 127}, 8.0, 2.0);
    }
    const CircleClip upright{{{0, 0}, {512, 0}, {512, 512}, {0, 512}}};
    const CircleClip turned{{{512, 512}, {0, 512}, {0, 0}, {512, 0}}};
    const UIColor color{0.8, 0.4, 0.4, 1.0};
    expectDrawing(mainOf(base), {{{{256, 9}, {256, 246}, 0.5, {1, 0, 0, 1}}},
                                 {{{256, 256}, 254, pi / 2, pi / 4, 2.0, color, 1.0, {}},
                                  {{256, 256}, 256, pi / 2, pi / 4, 2.0, color, 1.0, {upright, turned}},
                                  {{256, 256}, 302, pi / 2, pi / 4, 2.0, color, 1.0, {upright, turned}}}});
    base.currentBeat = 8.0;
    EXPECT_EQ(mainOf(base).arcs.at(0).clips.size(), 2U);
}

TEST(GraphicsContextTest, AnArcIsClippedAtEachSideThatItCrosses)
{
    const std::vector<std::pair<CGPoint, std::size_t>> places{{{10, 50}, 0}, {{50, 10}, 0}, {{90, 50}, 0},
                                                              {{50, 90}, 0}, {{9, 50}, 1},  {{50, 9}, 1},
                                                              {{91, 50}, 1}, {{50, 91}, 1}};
    for (const auto& [centre, clips] : places) {
        GraphicsContext context;
        context.clipToRect({0, 0, 100, 100});
        context.strokeArc(centre, 9.0, 0.0, 1.0, 2.0, UIColor::redColor());
        EXPECT_EQ(context.drawing.arcs.at(0).clips.size(), clips) << centre.x << " " << centre.y;
    }
}

TEST_F(MIDICircleViewTest, ThickNotesAreClippedFromKey102On)
{
    for (const std::uint8_t key : std::vector<std::uint8_t>{101, 102}) {
        sequence.add({0x90, key, 127}, 0.0, 2.0);
    }
    const CircleDrawing drawing = mainOf(base);
    EXPECT_TRUE(drawing.arcs.at(0).clips.empty());
    EXPECT_EQ(drawing.arcs.at(1).clips.size(), 1U);
}

TEST_F(MIDICircleViewTest, TheFrameScalesAndStretches)
{
    base.currentBeat = 8.0;
    sequence.add({0x90, 60, 127}, 4.0, 4.0);
    const UIColor color{0.8, 0.4, 0.4, 1.0};
    const UIColor red{1, 0, 0, 1};
    const CGRect frame{10, 20, 1024, 512};
    expectDrawing(mainOf(base, frame), {{{{522, 29}, {522, 266}, 0.5, red}},
                                        {{{522, 276}, 168, 0.0, pi / 2, 2.0, color, 1.0, {}}}});
    expectDrawing(
        mainOf(base, frame, ResizingBehavior::fillOutside),
        {{{{522, -218}, {522, 256}, 1.0, red}}, {{{522, 276}, 336, 0.0, pi / 2, 4.0, color, 1.0, {}}}});
    expectDrawing(
        mainOf(base, frame, ResizingBehavior::stretch),
        {{{{522, 29}, {522, 266}, 1.0, red}}, {{{522, 276}, 336, 0.0, pi / 2, 4.0, color, 0.5, {}}}});
}

TEST_F(MIDICircleViewTest, ProgressionTurnsTheWholePictureAgainstTheClock)
{
    base.progressionValue = 0.25;
    sequence.add({0x90, 60, 127}, 4.0, 1.0);
    const CircleDrawing drawing = mainOf(base);
    expectNear(drawing.lines.at(0).from, {9, 256});
    EXPECT_NEAR(drawing.arcs.at(0).startAngle, -pi / 2.0, 1e-12);
}

TEST_F(MIDICircleViewTest, WithoutADelegateANoteIsDrawnInSixteenBeats)
{
    base.delegate = nullptr;
    const CircleDrawing drawing = drawn([&] {
        base.drawSymbolNote(canvas, ResizingBehavior::fitInside, 5.0, 60.0, 2.0, 4.0, UIColor::gray(0.5));
        base.drawSymbolNoteShape();
    });
    expectDrawing(drawing, {{},
                            {{{256, 256}, 120, 0.0, pi / 4, 5.0, UIColor::gray(0.5), 1.0, {}},
                             {{256, 256}, 120, -pi / 2, pi / 32, 5.0, {1, 0, 0, 1}, 1.0, {}}}});
}

TEST_F(MIDICircleViewTest, ABeatCountOfNothingGivesArcsWithoutAPlace)
{
    sequence.add({0x90, 60, 127}, 0.0, 1.0);
    sequence.add({0x90, 127, 127}, 1.0, 1.0);
    for (const double beats : {0.0, std::numeric_limits<double>::quiet_NaN()}) {
        sequence.beats = beats;
        const CircleDrawing drawing = mainOf(base);
        ASSERT_EQ(drawing.arcs.size(), 2U);
        EXPECT_FALSE(drawing.arcs.at(0).hasPlace());
        EXPECT_FALSE(drawing.arcs.at(1).hasPlace());
    }
}

TEST_F(MIDICircleViewTest, DrawingOutsideOfADrawCallIsAFatalStop)
{
    EXPECT_STOP(base.drawSymbolMain(), implicitNilMessage);
    EXPECT_STOP(base.drawSymbolNotes(), implicitNilMessage);
    EXPECT_STOP(base.drawSymbolNote(), implicitNilMessage);
    EXPECT_STOP(base.drawSymbolNoteShape(), implicitNilMessage);
}

TEST(GraphicsContext, ARestoreWithoutASaveIsAFatalStop)
{
    GraphicsContext context;
    EXPECT_STOP(context.restoreGState(), indexMessage);
}

TEST(MIDICircleView, DrawsItsBoundsUnlessHidden)
{
    FakeSequence sequence;
    sequence.add({0x90, 60, 127}, 0.0, 1.0);
    MIDICircleView view({5, 5, 1024, 1024});
    view.setDelegate(&sequence);
    EXPECT_EQ(view.delegate(), &sequence);
    const CircleDrawing drawing = drawn([&] { view.draw({0, 0, 3, 3}); });
    EXPECT_EQ(drawing.arcs.at(0).radius, 336.0);
    expectColor(drawing.arcs.at(0).color, {0.8, 0.4, 0.4, 1.0});
    view.isHidden = true;
    EXPECT_EQ(drawn([&] { view.draw({}); }), CircleDrawing{});
}

TEST(MIDICircleView, SharesItsContrastOut)
{
    MIDICircleView view;
    view.setContrast(0.25);
    expectColor(view.baseClass->colorContrast, {0.75, 0.75, 0.75, 1.0});
    expectColor(view.baseClass->colorContrastInverted, {0.25, 0.25, 0.25, 1.0});
    expectColor(view.baseClass->colorMain, {0.75, 0.75, 0.75, 1.0});
}

TEST(MIDICircleView, HandsEachDelegateOnAlsoNone)
{
    FakeSequence sequence;
    MIDICircleView view;
    EXPECT_EQ(view.baseClass->delegate, nullptr);
    view.setDelegate(&sequence);
    EXPECT_EQ(view.baseClass->delegate, &sequence);
    view.setDelegate(nullptr);
    EXPECT_EQ(view.baseClass->delegate, nullptr);
}

TEST_F(MIDICircleViewTest, BeginsWithItsUsualColoursAndSizes)
{
    const MIDICircleViewBase fresh;
    expectColor(fresh.colorChannel, {0.8, 0.4, 0.4, 1.0});
    expectColor(fresh.colorMarker, {0.652, 0.8, 0.32, 1.0});
    expectColor(fresh.colorContrast, {0.0, 0.0, 0.0, 1.0});
    expectColor(fresh.colorContrastInverted, {1.0, 1.0, 1.0, 1.0});
    expectColor(fresh.colorMain, {0.753, 0.753, 0.753, 1.0});
    EXPECT_EQ(fresh.beatLength, 16.0);
    EXPECT_EQ(fresh.noteWidth, 2.0);
    EXPECT_EQ(fresh.progressionValue, 0.0);
    EXPECT_EQ(fresh.currentBeat, 0.0);
    EXPECT_EQ(fresh.scaling.width, 1.0);
    EXPECT_EQ(fresh.scaling.height, 1.0);
    EXPECT_EQ(fresh.delegate, nullptr);
}

TEST(MIDICircleView, IsDrawnAgainAfterFocusContrastAndProgress)
{
    int draws = 0;
    MIDICircleView view;
    view.setNeedsDisplay = [&] { ++draws; };
    view.setFocus(true);
    view.setContrast(1.0);
    view.setProgress(4.5);
    EXPECT_EQ(draws, 3);
    EXPECT_EQ(view.baseClass->currentBeat, 4.5);
    EXPECT_EQ(view.baseClass->colorContrast, (UIColor{0, 0, 0, 1}));
    EXPECT_EQ(view.baseClass->colorContrastInverted, (UIColor{1, 1, 1, 1}));
    EXPECT_EQ(view.baseClass->colorMain, (UIColor{0, 0, 0, 1}));
}

} // namespace
} // namespace volvelle
