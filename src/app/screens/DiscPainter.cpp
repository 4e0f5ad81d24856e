#include "app/screens/DiscPainter.h"

#include "app/circle/GraphicsContext.h"
#include "app/screens/CirclePainter.h"
#include "app/screens/DiscParts.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace volvelle {

namespace {

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

void DiscPainter::paint(QPainter& painter, const DiscContent& content, double side, Theme theme)
{
    const DiscGeometry& disc = keep(content, side, painter.device()->devicePixelRatio(), theme);
    painter.drawImage(QPointF(), named);
    if (content.isSmall) {
        return;
    }
    painter.save();
    prepare(painter, side, disc);
    paintMovingParts(painter, disc, Tokens::of(theme));
    painter.restore();
}

bool DiscPainter::Ground::isOf(const DiscContent& drawn, double drawnSide, double drawnRatio,
                               Theme drawnTheme) const
{
    return side == drawnSide && ratio == drawnRatio && theme == drawnTheme && content.hasSameMusic(drawn);
}

const DiscGeometry& DiscPainter::keep(const DiscContent& content, double side, double ratio, Theme theme)
{
    const Tokens& tokens = Tokens::of(theme);
    if (ground && geometry && ground->isOf(content, side, ratio, theme)) {
        geometry->move(content);
        if (geometry->sounding != namedSector || geometry->soundingChord != namedChord) {
            paintChords(*geometry, content.isSmall, side, tokens);
        }
        return *geometry;
    }
    ground = {content, side, ratio, theme};
    const DiscGeometry& made = geometry.emplace(content, side);
    still = stillPicture(made, content.isSmall, side, ratio, tokens);
    paintChords(made, content.isSmall, side, tokens);
    return made;
}

void DiscPainter::paintChords(const DiscGeometry& disc, bool isSmall, double side, const Tokens& tokens)
{
    namedSector = disc.sounding;
    namedChord = disc.soundingChord;
    named = still;
    if (!isSmall) {
        QPainter painter(&named);
        prepare(painter, side, disc);
        paintChordParts(painter, disc, tokens);
    }
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
