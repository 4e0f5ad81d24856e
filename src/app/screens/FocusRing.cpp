#include "app/screens/FocusRing.h"

#include "app/screens/Appearance.h"

#include <QApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QPainter>

namespace volvelle {

namespace {

constexpr int distance = 2;  // pixels between the control and the ring
constexpr int thickness = 2; // of the ring
constexpr int around = distance + thickness;
constexpr double radius = 8.0; // of a control

bool isByKey(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

} // namespace

FocusRing::FocusRing(QWidget* window) : QWidget(window)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    qApp->installEventFilter(this);
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event)
{
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || widget->window() != window()) {
        return false;
    }
    if (event->type() == QEvent::FocusIn) {
        follow(widget, isByKey(static_cast<QFocusEvent*>(event)->reason()));
    } else if (control && (widget == control || widget->isAncestorOf(control))) {
        switch (event->type()) {
        case QEvent::FocusOut:
        case QEvent::Hide:
            follow(nullptr, false);
            break;
        case QEvent::Move:
        case QEvent::Resize:
            place();
            break;
        default:
            break;
        }
    }
    return false;
}

void FocusRing::follow(QWidget* widget, bool byKey)
{
    control = byKey && !widget->property("ownFocusRing").toBool() ? widget : nullptr;
    setVisible(control != nullptr);
    if (control) {
        place();
        raise();
    }
}

void FocusRing::place()
{
    const QPoint corner = control->mapTo(window(), QPoint());
    setGeometry(QRect(corner, control->size()).adjusted(-around, -around, around, around));
    update();
}

void FocusRing::paintEvent(QPaintEvent* /*event*/)
{
    if (!control) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Appearance::shared().tokens().fg, thickness));
    const QRectF ring = QRectF(rect()).adjusted(1, 1, -1, -1);
    if (control->property("isRound").toBool()) {
        painter.drawEllipse(ring);
    } else {
        painter.drawRoundedRect(ring, radius + distance, radius + distance);
    }
}

} // namespace volvelle
