#include "app/screens/DocumentColumn.h"

#include "app/screens/Appearance.h"
#include "app/screens/Controls.h"

#include <QPainter>

#include <utility>

namespace volvelle {

namespace {

constexpr int rowHeight = 28; // pixels
constexpr int narrow = 240;   // below it the numbers are left out
constexpr int nameLeft = 28;  // of a row
constexpr double chipRadius = 8.0;
constexpr double dotRadius = 4.5;
const QString prefix = "File: ";

} // namespace

FileLabel::FileLabel(QWidget* parent) : QWidget(parent)
{
    setFixedHeight(rowHeight);
}

void FileLabel::setText(const QString& text)
{
    whole = text;
    setAccessibleName(text);
    setToolTip(plainTip(text));
    update();
}

void FileLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const Tokens& tokens = Appearance::shared().tokens();
    QFont plain = Appearance::font(Appearance::Text::title);
    const QFont bold = plain;
    plain.setWeight(QFont::Normal);
    const QString name = whole.startsWith(prefix) ? whole.mid(prefix.size()) : whole;
    const QString before = whole.startsWith(prefix) ? prefix : QString();
    const int left = QFontMetrics(plain).horizontalAdvance(before);
    painter.setFont(plain);
    painter.setPen(tokens.fg3);
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, before);
    painter.setFont(bold);
    painter.setPen(tokens.fg);
    const QRect room = rect().adjusted(left, 0, 0, 0);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(bold).elidedText(name, Qt::ElideMiddle, room.width()));
}

Legend::Legend(QWidget* parent) : QWidget(parent) {}

void Legend::setParts(std::vector<DocumentOverview::Part> given)
{
    parts = std::move(given);
    QStringList spoken;
    for (const auto& part : parts) {
        spoken << QString("%1 %2").arg(QString::fromStdString(part.label)).arg(part.notes);
    }
    setAccessibleName(spoken.join(", "));
    update();
}

void Legend::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Tokens& tokens = Appearance::shared().tokens();
    int top = 0;
    for (const auto& part : parts) {
        const QRect row(0, top, width(), rowHeight);
        top += rowHeight;
        if (row.bottom() >= height()) {
            break;
        }
        const QPointF dot(chipRadius, row.center().y() + 0.5);
        painter.setPen(Qt::NoPen);
        painter.setBrush(tokens.disc);
        painter.drawEllipse(dot, chipRadius, chipRadius);
        painter.setBrush(QColor::fromHsvF(static_cast<float>(part.channel) / 16.0F, 0.5F, 0.8F));
        painter.drawEllipse(dot, dotRadius, dotRadius);
        painter.setPen(tokens.fg2);
        painter.setFont(Appearance::font(Appearance::Text::caps));
        painter.drawText(row.adjusted(nameLeft, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                         QString::fromStdString(part.label));
        if (width() >= narrow) {
            painter.setPen(tokens.fg3);
            painter.setFont(Appearance::font(Appearance::Text::meta));
            painter.drawText(row, Qt::AlignRight | Qt::AlignVCenter, QString::number(part.notes));
        }
    }
}

} // namespace volvelle
