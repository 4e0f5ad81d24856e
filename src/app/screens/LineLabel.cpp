#include "app/screens/LineLabel.h"

#include "app/screens/Controls.h"

#include <QEvent>
#include <QPainter>

namespace volvelle {

LineLabel::LineLabel(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void LineLabel::setText(const QString& text)
{
    QLabel::setText(text);
    showTip();
}

QString LineLabel::shownText() const
{
    return fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
}

void LineLabel::showTip()
{
    setToolTip(shownText() == text() ? QString() : plainTip(text()));
}

void LineLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shownText());
}

void LineLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    showTip();
}

void LineLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        showTip();
    }
}

} // namespace volvelle
