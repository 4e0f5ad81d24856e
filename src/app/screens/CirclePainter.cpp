#include "app/screens/CirclePainter.h"

#include "app/screens/ArcChoice.h"
#include "app/screens/ArcPainting.h"
#include "base/Checked.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace volvelle {

namespace {

void paintLines(QPainter& painter, const CircleDrawing& drawing)
{
    painter.setRenderHint(QPainter::Antialiasing);
    for (const CircleLine& line : drawing.lines) {
        paintLine(painter, line);
    }
}

// The point of an arc's middle line.
QPointF pointOf(const CircleArc& arc, double angle)
{
    return {arc.centre.x + arc.radius * std::cos(angle),
            arc.centre.y + arc.radius * std::sin(angle) * arc.stretch};
}

} // namespace

void CirclePainter::paint(QPainter& painter, const CircleDrawing& drawing, const std::stop_token& stop)
{
    painter.save();
    paintLines(painter, drawing);
    const std::vector<bool> chosen = chooseArcs(drawing, std::abs(painter.deviceTransform().m11()));
    for (std::size_t i = 0; i < drawing.arcs.size() && !stop.stop_requested(); ++i) {
        if (chosen[i]) {
            paintArc(painter, drawing.arcs[i]);
        }
    }
    painter.restore();
}

bool CirclePainter::paint(QPainter& painter, MIDICircleViewBase& circle, const CGRect& frame,
                          ResizingBehavior resizing)
{
    const Grid newGrid = gridOf(painter, circle, frame, resizing);
    const bool isNew = !newGrid.isLike(grid) || picture.isNull();
    grid = newGrid;
    const CircleScene::Change change = scene.update(circle, frame, resizing);
    if (grid.size.isEmpty() || std::max(grid.size.width(), grid.size.height()) > mostPixels) {
        picture = {};
        paint(painter, scene.drawing);
        return true;
    }
    if (isNew || change.all) {
        paintAll();
    } else {
        paintChanged(change.arcs);
    }
    painter.save();
    paintLines(painter, scene.drawing);
    const double ratio = painter.device()->devicePixelRatio();
    picture.setDevicePixelRatio(ratio);
    painter.resetTransform();
    painter.drawImage(
        (QPointF(grid.origin) - QPointF(painter.deviceTransform().dx(), painter.deviceTransform().dy())) /
            ratio,
        picture);
    painter.restore();
    return isNew || change.all;
}

QRegion CirclePainter::move(MIDICircleViewBase& circle, const CGRect& frame, ResizingBehavior resizing)
{
    if (picture.isNull()) {
        return QRect(grid.origin, grid.size);
    }
    if (!scene.wouldMove(circle.currentBeat)) {
        return {};
    }
    const CircleScene::Change change = scene.update(circle, frame, resizing);
    if (!change.all) {
        return paintChanged(change.arcs).translated(grid.origin);
    }
    paintAll();
    return QRect(grid.origin, grid.size);
}

bool CirclePainter::Grid::isLike(const Grid& other) const
{
    return transform == other.transform && size == other.size;
}

// No size where the painter's axes are not those of the device.
CirclePainter::Grid CirclePainter::gridOf(const QPainter& painter, MIDICircleViewBase& circle,
                                          const CGRect& frame, ResizingBehavior resizing)
{
    const QTransform device = painter.deviceTransform();
    const CGRect target = resizing.apply(MIDICircleViewBase::canvas, frame, circle);
    // A turned canvas reaches out at its corners.
    const double more = circle.progressionValue == 0.0 ? 0.0 : 0.5 * (std::numbers::sqrt2 - 1.0);
    const QRectF room(target.x - target.width * more, target.y - target.height * more,
                      target.width * (1.0 + 2.0 * more), target.height * (1.0 + 2.0 * more));
    const QRectF pixels = device.mapRect(room);
    Grid found;
    if (device.type() > QTransform::TxScale || device.m11() <= 0.0 || device.m11() != device.m22() ||
        !(pixels.width() <= mostPixels && pixels.height() <= mostPixels)) {
        return found;
    }
    const QRect whole = pixels.toAlignedRect();
    found.origin = whole.topLeft();
    found.size = whole.size();
    found.transform =
        QTransform(device.m11(), 0.0, 0.0, device.m22(), device.dx() - whole.x(), device.dy() - whole.y());
    return found;
}

void CirclePainter::paintAll()
{
    picture = QImage(grid.size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    columns = (grid.size.width() + tile - 1) / tile;
    tiles.clear();
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(grid.transform);
    chosen = chooseArcs(scene.drawing, grid.transform.m11());
    tiles.resize(scene.drawing.arcs.size());
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        if (chosen[i]) {
            tiles[i] = tilesOf(scene.drawing.arcs[i]);
            paintArc(painter, scene.drawing.arcs[i]);
        }
    }
}

QRegion CirclePainter::paintChanged(const std::vector<int>& changed)
{
    if (changed.empty()) {
        return {};
    }
    std::vector<bool> marked(static_cast<std::size_t>(columns * ((grid.size.height() + tile - 1) / tile)));
    const auto mark = [&](const std::vector<int>& indices) {
        for (const int index : indices) {
            marked[static_cast<std::size_t>(index)] = true;
        }
    };
    for (const int arc : changed) {
        if (!chosen[static_cast<std::size_t>(arc)]) {
            continue;
        }
        std::vector<int>& own = checkedAt(tiles, arc);
        mark(own);
        own = tilesOf(checkedAt(scene.drawing.arcs, arc));
        mark(own);
    }
    picture.setDevicePixelRatio(1.0);
    QPainter painter(&picture);
    const QRegion touched = region(marked);
    painter.setClipRegion(touched);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.fillRect(picture.rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(grid.transform);
    const auto isMarked = [&](int index) { return marked[static_cast<std::size_t>(index)]; };
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        if (std::ranges::any_of(tiles[i], isMarked)) {
            paintArc(painter, checkedAt(scene.drawing.arcs, i));
        }
    }
    return touched;
}

// Walks along the arc by half a tile.
std::vector<int> CirclePainter::tilesOf(const CircleArc& arc) const
{
    std::vector<int> found;
    if (!arc.hasPlace()) {
        return found;
    }
    const QRect all(0, 0, columns, (grid.size.height() + tile - 1) / tile);
    const double length =
        arc.radius * arc.sweep * std::max(1.0, arc.stretch) * grid.transform.m11(); // pixels
    const int steps = std::max(1, static_cast<int>(std::ceil(length / (tile / 2.0))));
    // Half the stroke, half a step, and a pixel for its edge.
    const double reach =
        arc.width / 2.0 * std::max(1.0, arc.stretch) + (length / steps / 2.0 + 1.0) / grid.transform.m11();
    for (int i = 0; i < steps; ++i) {
        const QPointF middle = pointOf(arc, arc.startAngle + arc.sweep * (i + 0.5) / steps);
        const QRectF pixels =
            grid.transform.mapRect(QRectF(middle.x() - reach, middle.y() - reach, 2.0 * reach, 2.0 * reach));
        const QRect touched = QRect(QPoint(static_cast<int>(std::floor(pixels.left() / tile)),
                                           static_cast<int>(std::floor(pixels.top() / tile))),
                                    QPoint(static_cast<int>(std::floor(pixels.right() / tile)),
                                           static_cast<int>(std::floor(pixels.bottom() / tile)))) &
                              all;
        for (int row = touched.top(); row <= touched.bottom(); ++row) {
            for (int column = touched.left(); column <= touched.right(); ++column) {
                found.push_back(row * columns + column);
            }
        }
    }
    std::ranges::sort(found);
    found.erase(std::ranges::unique(found).begin(), found.end());
    return found;
}

QRegion CirclePainter::region(const std::vector<bool>& marked) const
{
    std::vector<QRect> rects;
    for (int index = 0; std::cmp_less(index, marked.size()); ++index) {
        if (!marked[static_cast<std::size_t>(index)]) {
            continue;
        }
        const QRect own(index % columns * tile, index / columns * tile, tile, tile);
        if (!rects.empty() && rects.back().top() == own.top() && rects.back().right() + 1 == own.left()) {
            rects.back().setRight(own.right());
        } else {
            rects.push_back(own);
        }
    }
    QRegion found;
    found.setRects(rects.data(), static_cast<int>(rects.size()));
    return found;
}

} // namespace volvelle
