#include "app/screens/DiscWidget.h"

#include "app/screens/Appearance.h"
#include "app/screens/Controls.h"
#include "base/Console.h"

#include <QCursor>
#include <QEnterEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace volvelle {

DiscWidget::DiscWidget(QWidget* parent) : QWidget(parent), view(std::make_shared<MIDICircleView>())
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setProperty("isRound", true);
    setAccessibleName("Circle of notes");
    view->setNeedsDisplay = [this] {
        const bool hasMoved =
            std::exchange(beat, view->baseClass->currentBeat) != view->baseClass->currentBeat;
        lacksDisc &= hasMoved;
        lacksCircle &= hasMoved;
        if (window()->isMinimized()) {
            // It is painted when it comes back.
        } else if (hasMoved) {
            showPosition();
        } else {
            update();
        }
        Q_EMIT positionChanged(beat);
    };
    setPlaying(false);
}

DiscWidget::~DiscWidget()
{
    view->setNeedsDisplay = [] {};
}

void DiscWidget::setContent(DiscContent content)
{
    content.isPlaying = shown.isPlaying;
    shown = std::move(content);
    lacksDisc = lacksCircle = false;
    update();
}

void DiscWidget::setPlaying(bool isPlaying)
{
    shown.isPlaying = isPlaying;
    if (!isPlaying) {
        beat = view->baseClass->currentBeat = 0.0;
    }
    setTip(this, isPlaying ? "Stop" : "Play", "Space");
    showPointer();
    update();
}

void DiscWidget::setSpoken(const QString& music)
{
    setAccessibleDescription(music);
}

double DiscWidget::side() const
{
    return std::min(width(), height());
}

bool DiscWidget::isOnDisc(const QPointF& point) const
{
    const QPointF from = point - QPointF(width() / 2.0, height() / 2.0);
    return std::hypot(from.x(), from.y()) <=
           side() / 2.0 * DiscGeometry::rim / (DiscGeometry::sideUnits / 2.0);
}

void DiscWidget::followCircle()
{
    const MIDICircleViewDelegate* hasMusic = view->delegate();
    shown.beats = hasMusic != nullptr ? view->delegate()->getBeatCount() : usualBeats;
    const bool movesByBeats = shown.isPlaying && Appearance::reducesMotion();
    const double position = view->baseClass->currentBeat;
    shown.position = movesByBeats ? std::floor(position) : position;
}

void DiscWidget::paintWithinMemory(bool& isLeftOut, const std::function<void()>& painting)
{
    if (isLeftOut) {
        return;
    }
    try {
        painting();
    } catch (const std::bad_alloc&) {
        isLeftOut = true;
        view->baseClass->chosen = nullptr;
        discPainter = DiscPainter();
        circlePainter = CirclePainter();
        directPrint("DiscWidget : Error: There is not enough memory to paint all of the music.");
        update();
    }
}

// Draws again what the position changes alone.
void DiscWidget::showPosition()
{
    followCircle();
    if (isCirclePainted == view->isHidden) {
        update();
        return;
    }
    paintWithinMemory(lacksDisc, [this] { update(discPainter.move(shown)); });
    if (!view->isHidden) {
        paintWithinMemory(lacksCircle, [this] { moveCircle(); });
    }
}

void DiscWidget::moveCircle()
{
    const QRegion pixels = circlePainter.move(*view->baseClass, view->bounds, ResizingBehavior::fitInside);
    for (const QRect& rect : pixels) {
        const QRectF lengths = toWidget.mapRect(QRectF(rect));
        update(lengths.toAlignedRect());
    }
}

void DiscWidget::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    toWidget = painter.deviceTransform().inverted();
    followCircle();
    bool isNew = false;
    paintWithinMemory(
        lacksDisc, [&] { isNew = discPainter.paint(painter, shown, side(), Appearance::shared().theme()); });
    view->bounds = DiscPainter::canvas(shown, side());
    isCirclePainted = !view->isHidden;
    if (isCirclePainted) {
        paintWithinMemory(lacksCircle, [&] {
            isNew |=
                circlePainter.paint(painter, *view->baseClass, view->bounds, ResizingBehavior::fitInside);
        });
    }
    if (isNew && event->region().boundingRect() != rect()) {
        update();
    }
}

void DiscWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    update();
    lookForPointer();
}

void DiscWidget::moveEvent(QMoveEvent* event)
{
    QWidget::moveEvent(event);
    lookForPointer();
}

void DiscWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    lookForPointer();
}

void DiscWidget::mousePressEvent(QMouseEvent* event)
{
    isPressed = event->button() == Qt::LeftButton && isOnDisc(event->position());
}

void DiscWidget::mouseReleaseEvent(QMouseEvent* event)
{
    const bool isClick = std::exchange(isPressed, false) && event->button() == Qt::LeftButton;
    if (isClick && isOnDisc(event->position())) {
        Q_EMIT clicked();
    }
}

void DiscWidget::mouseMoveEvent(QMouseEvent* event)
{
    pointer = event->position();
    showPointer();
}

void DiscWidget::enterEvent(QEnterEvent* event)
{
    pointer = event->position();
    showPointer();
}

// The disc may come under a pointer that rests.
void DiscWidget::lookForPointer()
{
    pointer = mapFromGlobal(QCursor::pos());
    showPointer();
}

void DiscWidget::showPointer()
{
    setCursor(shown.isPlaying && isOnDisc(pointer) ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void DiscWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        update();
    }
}

} // namespace volvelle
