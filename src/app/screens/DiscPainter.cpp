#include "app/screens/DiscPainter.h"

#include "app/circle/GraphicsContext.h"
#include "app/screens/CirclePainter.h"
#include "app/screens/DiscParts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace volvelle {

namespace {

constexpr double beadReach = 8.0; // pixels from the middle of the way's end

void prepare(QPainter& painter, double side, const DiscGeometry& disc)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(side / 2.0, side / 2.0);
    painter.scale(disc.unit, disc.unit);
}

QImage stillPicture(const DiscGeometry& disc, bool isSmall, double side, double ratio, const Tokens& tokens)
{
    const int pixels = std::max(1, static_cast<int>(std::ceil(side * ratio)));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    prepare(painter, side, disc);
    if (isSmall) {
        paintSmallParts(painter, tokens);
    } else {
        paintStillParts(painter, disc, tokens);
    }
    return image;
}

CircleDrawing drawingOf(MIDICircleViewBase& circle, const CGRect& frame)
{
    GraphicsContext context;
    const GraphicsContext::Current current(context);
    circle.drawSymbolMain(frame, ResizingBehavior::fitInside);
    return context.drawing;
}

// Notes and hand of a tile: thin, but never so thin that they vanish.
CircleDrawing smallDrawing(MIDICircleViewBase& circle, const CGRect& frame)
{
    const double position = circle.currentBeat;
    circle.currentBeat = std::numeric_limits<double>::infinity();
    CircleDrawing drawing = drawingOf(circle, frame);
    circle.currentBeat = position;
    for (CircleArc& arc : drawing.arcs) {
        arc.width = std::max(arc.width, 1.25);
    }
    for (CircleLine& line : drawing.lines) {
        line.width = std::max(line.width, 1.25);
    }
    return drawing;
}

} // namespace

CGRect DiscPainter::canvas(const DiscContent& content, double side)
{
    const double own = MIDICircleViewBase::canvas.width * DiscGeometry::unitOf(content, side);
    return {(side - own) / 2.0, (side - own) / 2.0, own, own};
}

bool DiscPainter::paint(QPainter& painter, const DiscContent& content, double side, Theme theme)
{
    const bool isNew = keep(content, side, painter.device()->devicePixelRatio(), theme);
    painter.drawImage(QPointF(), named);
    if (!content.isSmall) {
        painter.save();
        prepare(painter, side, ground->geometry);
        paintMovingParts(painter, ground->geometry, Tokens::of(theme));
        painter.restore();
    }
    return isNew;
}

QRegion DiscPainter::move(const DiscContent& content)
{
    if (!ground) {
        return {};
    }
    if (!ground->content.hasSameMusic(content)) {
        return all();
    }
    const DiscGeometry& disc = ground->geometry;
    const std::optional<DiscGeometry::Sector> wedge = disc.wedge;
    const std::optional<DiscGeometry::Sector> elapsed = disc.elapsed;
    QRegion changed = keepShown(content);
    if (!wedge || !elapsed || !disc.wedge || !disc.elapsed) {
        return wedge == disc.wedge && elapsed == disc.elapsed ? changed : all();
    }
    for (const DiscGeometry::Sector& moved : {*wedge, *disc.wedge}) {
        changed += frame(moved, DiscGeometry::wedgeInner, DiscGeometry::wedgeOuter);
    }
    const auto [least, most] = std::minmax(elapsed->sweep, disc.elapsed->sweep);
    return changed + frame({least, most - least}, DiscGeometry::progress, DiscGeometry::progress,
                           beadReach / disc.unit);
}

bool DiscPainter::Ground::isOf(const DiscContent& drawn, double drawnSide, double drawnRatio,
                               Theme drawnTheme) const
{
    return side == drawnSide && ratio == drawnRatio && theme == drawnTheme && content.hasSameMusic(drawn);
}

bool DiscPainter::keep(const DiscContent& content, double side, double ratio, Theme theme)
{
    if (ground && ground->isOf(content, side, ratio, theme)) {
        keepShown(content);
        return false;
    }
    ground = std::make_unique<Ground>(Ground{content, side, ratio, theme, DiscGeometry(content, side)});
    still = stillPicture(ground->geometry, content.isSmall, side, ratio, Tokens::of(theme));
    paintShown(all());
    return true;
}

DiscPainter::Shown DiscPainter::shownBy(const DiscGeometry& disc)
{
    return {disc.sounding, disc.soundingChord, disc.chordName, disc.positionText};
}

QRegion DiscPainter::keepShown(const DiscContent& content)
{
    ground->geometry.move(content);
    const Shown next = shownBy(ground->geometry);
    if (next == shown) {
        return {};
    }
    const bool isHubAlone = next.sounding == shown.sounding && next.chord == shown.chord;
    constexpr DiscGeometry::Sector around{0.0, 2.0 * std::numbers::pi};
    const QRect changed = isHubAlone ? frame(around, 0.0, DiscGeometry::hub) : all();
    paintShown(changed);
    return changed;
}

void DiscPainter::paintShown(const QRect& changed)
{
    const Tokens& tokens = Tokens::of(ground->theme);
    shown = shownBy(ground->geometry);
    const bool isHubAlone = changed != all();
    if (!isHubAlone) {
        named = still;
    }
    if (ground->content.isSmall) {
        return;
    }
    QPainter painter(&named);
    if (isHubAlone) {
        painter.setClipRect(changed);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(QPointF(), still);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    prepare(painter, ground->side, ground->geometry);
    if (!isHubAlone) {
        paintChordParts(painter, ground->geometry, tokens);
    }
    paintHub(painter, ground->geometry, tokens);
}

QRect DiscPainter::all() const
{
    const int side = static_cast<int>(std::ceil(ground->side));
    return {0, 0, side, side};
}

QRect DiscPainter::frame(const DiscGeometry::Sector& sector, double inner, double outer, double more) const
{
    constexpr int edge = 1; // what a stroke's smoothing reaches, in lengths
    const CGRect units = DiscGeometry::around(sector, inner, outer);
    const double middle = ground->side / 2.0;
    const QRectF lengths(middle + (units.x - more) * ground->geometry.unit,
                         middle + (units.y - more) * ground->geometry.unit,
                         (units.width + 2.0 * more) * ground->geometry.unit,
                         (units.height + 2.0 * more) * ground->geometry.unit);
    return lengths.toAlignedRect().adjusted(-edge, -edge, edge, edge);
}

QImage discImage(const DiscContent& content, MIDICircleViewBase& circle, int side, double ratio, Theme theme,
                 const std::stop_token& stop)
{
    const int pixels = std::max(1, static_cast<int>(std::lround(side * ratio)));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    DiscPainter().paint(painter, content, side, theme);
    const CGRect frame = DiscPainter::canvas(content, side);
    if (!stop.stop_requested()) {
        CirclePainter::paint(painter,
                             content.isSmall ? smallDrawing(circle, frame) : drawingOf(circle, frame), stop);
    }
    return image;
}

} // namespace volvelle
