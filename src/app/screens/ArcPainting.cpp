#include "app/screens/ArcPainting.h"

#include <numbers>

namespace volvelle {

namespace {

constexpr double degrees = 180.0 / std::numbers::pi;
constexpr double leastSweep = 1e-6; // radians; below it an arc is a dot

// About the origin, before the stretch.
QPainterPath pathOf(const CircleArc& arc)
{
    const QRectF square(-arc.radius, -arc.radius, 2.0 * arc.radius, 2.0 * arc.radius);
    QPainterPath path;
    path.arcMoveTo(square, -arc.startAngle * degrees);
    path.arcTo(square, -arc.startAngle * degrees, -arc.sweep * degrees);
    return path;
}

QPainterPath dotOf(const CircleArc& arc)
{
    QPainterPath path;
    path.addEllipse(QPointF(std::cos(arc.startAngle), std::sin(arc.startAngle)) * arc.radius, arc.width / 2.0,
                    arc.width / 2.0);
    return path;
}

QPainterPath outlineOf(const CircleArc& arc)
{
    if (arc.sweep < leastSweep) {
        return dotOf(arc);
    }
    QPainterPathStroker stroker;
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setWidth(arc.width);
    stroker.setCurveThreshold(0.05);
    return stroker.createStroke(pathOf(arc));
}

// The part of a polygon on the right of the way from one point to the other, as y grows downwards.
QPolygonF cut(const QPolygonF& polygon, CGPoint from, CGPoint to)
{
    const auto side = [&](QPointF point) {
        return (to.x - from.x) * (point.y() - from.y) - (to.y - from.y) * (point.x() - from.x);
    };
    QPolygonF left;
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        const QPointF a = polygon[i];
        const QPointF b = polygon[(i + 1) % polygon.size()];
        const double sideA = side(a);
        const double sideB = side(b);
        if (sideA >= 0.0) {
            left << a;
        }
        if ((sideA >= 0.0) != (sideB >= 0.0)) {
            left << a + (b - a) * (sideA / (sideA - sideB));
        }
    }
    return left;
}

QPolygonF cut(QPolygonF polygon, const std::vector<CircleClip>& clips)
{
    for (const CircleClip& clip : clips) {
        for (std::size_t i = 0; i < clip.size(); ++i) {
            polygon = cut(polygon, clip.at(i), clip.at((i + 1) % clip.size()));
        }
    }
    return polygon;
}

} // namespace

QColor qColor(const UIColor& color)
{
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

QPainterPath clippedOutline(const CircleArc& arc)
{
    constexpr double fine = 16.0; // curves become straight lines at so many times their size
    QTransform transform = QTransform::fromTranslate(arc.centre.x * fine, arc.centre.y * fine);
    transform.scale(fine, arc.stretch * fine);
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (const QPolygonF& polygon : outlineOf(arc).toSubpathPolygons(transform)) {
        path.addPolygon(cut(QTransform::fromScale(1.0 / fine, 1.0 / fine).map(polygon), arc.clips));
        path.closeSubpath();
    }
    return path;
}

void paintArc(QPainter& painter, const CircleArc& arc)
{
    if (!arc.hasPlace() || arc.color.alpha <= 0.0 || arc.width <= 0.0) {
        return;
    }
    const QColor color = qColor(arc.color);
    if (!arc.clips.empty()) {
        painter.fillPath(clippedOutline(arc), color);
        return;
    }
    const QTransform before = painter.transform();
    painter.translate(arc.centre.x, arc.centre.y);
    painter.scale(1.0, arc.stretch);
    if (arc.sweep < leastSweep) {
        painter.fillPath(dotOf(arc), color);
    } else {
        painter.strokePath(pathOf(arc), QPen(color, arc.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }
    painter.setTransform(before);
}

void paintLine(QPainter& painter, const CircleLine& line)
{
    painter.setPen(QPen(qColor(line.color), line.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawLine(QPointF(line.from.x, line.from.y), QPointF(line.to.x, line.to.y));
}

} // namespace volvelle
