#include "app/screens/DiscParts.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <QRadialGradient>

#include <array>
#include <numbers>

namespace volvelle {

namespace {

constexpr double degrees = 180.0 / std::numbers::pi;

QPointF point(CGPoint place)
{
    return {place.x, place.y};
}

QColor white(double alpha)
{
    return QColor::fromRgbF(1.0F, 1.0F, 1.0F, static_cast<float>(alpha));
}

// One pixel wide at every scale.
QPen hairline(const QColor& color)
{
    QPen pen(color, 1.0);
    pen.setCosmetic(true);
    return pen;
}

void circle(QPainter& painter, double radius, const QPen& pen, const QBrush& brush = Qt::NoBrush)
{
    painter.setPen(pen);
    painter.setBrush(brush);
    painter.drawEllipse(QPointF(), radius, radius);
}

void radialLine(QPainter& painter, double angle, double from, double to, const QPen& pen)
{
    painter.setPen(pen);
    painter.drawLine(point(DiscGeometry::place(angle, from)), point(DiscGeometry::place(angle, to)));
}

// Part of the ring between two radii.
void sector(QPainter& painter, DiscGeometry::Sector place, double inner, double outer, const QColor& color)
{
    const QRectF large(-outer, -outer, 2.0 * outer, 2.0 * outer);
    const QRectF small(-inner, -inner, 2.0 * inner, 2.0 * inner);
    const double start = 90.0 - place.start * degrees;
    const double sweep = place.sweep * degrees;
    QPainterPath path;
    path.arcMoveTo(large, start);
    path.arcTo(large, start, -sweep);
    path.arcTo(small, start - sweep, sweep);
    path.closeSubpath();
    painter.fillPath(path, color);
}

QFont font(int pixels, int weight)
{
    QFont found;
    found.setFamilies({"Inter", "Noto Sans", "DejaVu Sans"});
    found.setPixelSize(pixels);
    found.setWeight(static_cast<QFont::Weight>(weight));
    found.setHintingPreference(QFont::PreferNoHinting);
    return found;
}

// Text whose baseline's middle is at the origin, in pixels.
void centredText(QPainter& painter, const DiscGeometry& disc, double baseline, const QFont& textFont,
                 const QColor& color, const QString& text)
{
    painter.save();
    painter.scale(1.0 / disc.unit, 1.0 / disc.unit);
    painter.setFont(textFont);
    painter.setPen(color);
    const double width = QFontMetricsF(textFont).horizontalAdvance(text);
    painter.drawText(QPointF(-width / 2.0, baseline * disc.unit), text);
    painter.restore();
}

void paintShadow(QPainter& painter, const Tokens& tokens)
{
    const QPointF middle(0.0, DiscGeometry::shadowDrop);
    QRadialGradient gradient(middle, DiscGeometry::shadowOuter);
    QColor black(Qt::black);
    black.setAlphaF(static_cast<float>(tokens.shadow));
    gradient.setColorAt(DiscGeometry::shadowInner / DiscGeometry::shadowOuter, black);
    gradient.setColorAt(1.0, Qt::transparent);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawEllipse(middle, DiscGeometry::shadowOuter, DiscGeometry::shadowOuter);
}

void paintScale(QPainter& painter, const DiscGeometry& disc, const Tokens& tokens)
{
    circle(painter, DiscGeometry::scaleOuter, hairline(tokens.rimEdge));
    for (const DiscGeometry::Tick& tick : disc.ticks) {
        QPen pen = hairline(tick.step == DiscGeometry::Step::sixteenth ? tokens.tick : tokens.tickBeat);
        if (tick.step == DiscGeometry::Step::bar) {
            pen = QPen(tokens.tickBar, 1.5 / disc.unit, Qt::SolidLine, Qt::FlatCap);
        }
        radialLine(painter, tick.angle, DiscGeometry::scaleInner, tick.outer, pen);
    }
}

// Along the ring, its middle on the name's radius.
void paintName(QPainter& painter, const DiscGeometry& disc, const DiscGeometry::Chord& chord, bool isSounding,
               const Tokens& tokens)
{
    constexpr double least = 4.0; // pixels: no name is narrower
    if (chord.room * disc.unit < least) {
        return;
    }
    const QFont nameFont = font(15, isSounding ? 650 : 500);
    const QFontMetricsF metrics(nameFont);
    const QString name = QString::fromStdString(chord.name);
    if (metrics.horizontalAdvance(name) > chord.room * disc.unit) {
        return;
    }
    painter.save();
    painter.translate(point(DiscGeometry::place(chord.nameAngle, DiscGeometry::nameRadius)));
    painter.rotate(chord.nameAngle * degrees + (chord.isFlipped ? 180.0 : 0.0));
    centredText(painter, disc, metrics.capHeight() / 2.0 / disc.unit, nameFont,
                isSounding ? tokens.fg : tokens.fg2, name);
    painter.restore();
}

// The position stands in cells as wide as a figure; its point and the tempo follow.
void paintPosition(QPainter& painter, const DiscGeometry& disc, const Tokens& tokens)
{
    const QFont small = font(13, 400);
    const QFontMetricsF metrics(small);
    const QString position = QString::fromStdString(disc.positionText);
    const QString tempo = QString::fromStdString(disc.tempoText);
    const double cell = metrics.horizontalAdvance('0');
    const double pointWidth = metrics.horizontalAdvance('.');
    const double positionWidth = cell * static_cast<double>(position.size() - 1) + pointWidth;
    const double gap = 12.0;
    painter.save();
    painter.translate(0.0, DiscGeometry::positionBaseline);
    painter.scale(1.0 / disc.unit, 1.0 / disc.unit);
    painter.setFont(small);
    painter.setPen(tokens.fg2);
    double x = -(positionWidth + gap + metrics.horizontalAdvance(tempo)) / 2.0;
    for (const QChar character : position) {
        const double width = character == '.' ? pointWidth : cell;
        painter.drawText(QPointF(x + (width - metrics.horizontalAdvance(character)) / 2.0, 0.0), character);
        x += width;
    }
    painter.setPen(tokens.fg3);
    painter.drawText(QPointF(x + gap, 0.0), tempo);
    painter.restore();
}

// In short steps, the same ones however far it goes: what is painted of it already stays as it is.
void paintElapsed(QPainter& painter, const DiscGeometry& disc, double sweep, const Tokens& tokens)
{
    constexpr double step = std::numbers::pi / 180.0;
    const double radius = DiscGeometry::progress;
    QPainterPath path(point(DiscGeometry::place(0.0, radius)));
    for (int i = 1; i * step < sweep; ++i) {
        path.lineTo(point(DiscGeometry::place(i * step, radius)));
    }
    path.lineTo(point(DiscGeometry::place(sweep, radius)));
    painter.strokePath(path, QPen(tokens.accent, 2.5 / disc.unit, Qt::SolidLine, Qt::FlatCap));
    painter.setPen(QPen(tokens.rim, 2.0 / disc.unit));
    painter.setBrush(tokens.accent);
    painter.drawEllipse(point(DiscGeometry::place(sweep, radius)), 6.0 / disc.unit, 6.0 / disc.unit);
}

} // namespace

void paintStillParts(QPainter& painter, const DiscGeometry& disc, const Tokens& tokens)
{
    paintShadow(painter, tokens);
    circle(painter, DiscGeometry::rim, hairline(tokens.rimEdge), tokens.rim);
    circle(painter, DiscGeometry::ink, hairline(tokens.discEdge), tokens.disc);
    for (const double radius : disc.octaves) {
        circle(painter, radius, hairline(white(0.055)));
    }
    for (const double angle : disc.spokes) {
        radialLine(painter, angle, DiscGeometry::spokeInner, DiscGeometry::spokeOuter, hairline(white(0.07)));
    }
    paintScale(painter, disc, tokens);
}

void paintChordParts(QPainter& painter, const DiscGeometry& disc, const Tokens& tokens)
{
    if (disc.sounding) {
        sector(painter, *disc.sounding, DiscGeometry::scaleOuter, DiscGeometry::rim, tokens.sector);
    }
    for (std::size_t i = 0; i < disc.chords.size(); ++i) {
        const DiscGeometry::Chord& chord = disc.chords[i];
        radialLine(painter, chord.sector.start, DiscGeometry::scaleOuter, DiscGeometry::rim,
                   hairline(tokens.tick));
        paintName(painter, disc, chord, i == disc.soundingChord, tokens);
    }
}

void paintHub(QPainter& painter, const DiscGeometry& disc, const Tokens& tokens)
{
    circle(painter, DiscGeometry::hub, hairline(tokens.rimEdge), tokens.rim);
    const bool isLarge = disc.unit * DiscGeometry::sideUnits >= 600.0;
    const QFont nameFont = font(isLarge ? 26 : 22, 600);
    const QString name = QString::fromStdString(disc.chordName);
    if (QFontMetricsF(nameFont).horizontalAdvance(name) <= 1.7 * DiscGeometry::hub * disc.unit) {
        centredText(painter, disc, DiscGeometry::chordBaseline, nameFont, tokens.fg, name);
    }
    if (!disc.positionText.empty() &&
        (DiscGeometry::positionBaseline - DiscGeometry::chordBaseline) * disc.unit >= 12.0) {
        paintPosition(painter, disc, tokens);
    }
    circle(painter, 5.0 / disc.unit, QPen(tokens.fg3, 1.5 / disc.unit), tokens.disc);
}

void paintMovingParts(QPainter& painter, const DiscGeometry& disc, const Tokens& tokens)
{
    if (disc.wedge) {
        sector(painter, *disc.wedge, DiscGeometry::wedgeInner, DiscGeometry::wedgeOuter, white(0.07));
    }
    if (disc.elapsed) {
        paintElapsed(painter, disc, disc.elapsed->sweep, tokens);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(tokens.accent);
    const std::array<QPointF, 3> mark{point(disc.index[0]), point(disc.index[1]), point(disc.index[2])};
    painter.drawPolygon(mark.data(), 3);
}

void paintSmallParts(QPainter& painter, const Tokens& tokens)
{
    circle(painter, DiscGeometry::smallRim, hairline(tokens.rimEdge), tokens.rim);
    circle(painter, DiscGeometry::smallInk, Qt::NoPen, tokens.disc);
    circle(painter, DiscGeometry::smallHub, Qt::NoPen, tokens.rim);
    circle(painter, 5.0, QPen(tokens.fg3, 3.0), tokens.disc);
}

} // namespace volvelle
