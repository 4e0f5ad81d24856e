#include "app/screens/SearchField.h"

#include "app/screens/Appearance.h"

#include <QPainter>

namespace volvelle {

namespace {

constexpr int textMargin = 23; // pixels
constexpr int textRise = 2;    // below, which lifts the text by half
constexpr QPointF lens(19.5, -1.0);
constexpr double lensRadius = 4.75;
constexpr QPointF handle(4.0, 4.0);
constexpr double handleLength = 2.9; // along each axis
constexpr double penWidth = 1.4;

} // namespace

SearchField::SearchField(QWidget* parent) : QLineEdit(parent)
{
    setPlaceholderText("Search");
    setAccessibleName("Search");
    setTextMargins(textMargin, 0, 0, textRise);
}

void SearchField::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Appearance::shared().tokens().fg2, penWidth, Qt::SolidLine, Qt::RoundCap));
    painter.translate(lens.x(), height() / 2.0 + lens.y());
    painter.drawEllipse(QPointF(), lensRadius, lensRadius);
    painter.drawLine(handle, handle + QPointF(handleLength, handleLength));
}

} // namespace volvelle
