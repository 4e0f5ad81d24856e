#include "app/screens/LineLabel.h"

#include "app/screens/Controls.h"

#include <QPainter>

namespace volvelle {

LineLabel::LineLabel(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void LineLabel::setText(const QString& text)
{
    whole = text;
    setAccessibleName(text);
    updateGeometry();
    showTip();
    update();
}

QString LineLabel::shownText() const
{
    return fontMetrics().elidedText(whole, Qt::ElideMiddle, width());
}

QSize LineLabel::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(whole), fontMetrics().height()};
}

void LineLabel::showTip()
{
    setToolTip(shownText() == whole ? QString() : plainTip(whole));
}

void LineLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shownText());
}

void LineLabel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    showTip();
}

} // namespace volvelle
