#include "app/screens/TileDelegate.h"

#include "app/screens/Appearance.h"
#include "app/screens/TileModel.h"

#include <QImage>
#include <QLineEdit>
#include <QPainter>

namespace volvelle {

namespace {

constexpr int discTop = 16; // pixels from the tile's top
constexpr int nameTop = 222;
constexpr int nameHeight = 24;
constexpr int metaTop = 246;
constexpr int metaHeight = 18;
constexpr int metaGap = 12;
constexpr double radius = 12.0;

QRect tileOf(const QStyleOptionViewItem& option)
{
    return QRect(option.rect.topLeft(), TileDelegate::tileSize)
        .translated(TileDelegate::gapAcross / 2, TileDelegate::gapDown / 2);
}

QRect nameOf(const QRect& tile)
{
    return {tile.left() + TileDelegate::padding, tile.top() + nameTop,
            tile.width() - 2 * TileDelegate::padding, nameHeight};
}

void paintGround(QPainter& painter, const QStyleOptionViewItem& option, const QRect& tile)
{
    const Tokens& tokens = Appearance::shared().tokens();
    const bool isSelected = (option.state & QStyle::State_Selected) != 0;
    const bool isHovered = (option.state & QStyle::State_MouseOver) != 0;
    if (isSelected || isHovered) {
        painter.setBrush(tokens.surface);
        painter.setPen(isSelected ? QPen(tokens.accent, 2) : QPen(Qt::NoPen));
        painter.drawRoundedRect(QRectF(tile).adjusted(1, 1, -1, -1), radius, radius);
    }
    const bool isFocused = (option.state & QStyle::State_HasFocus) != 0 &&
                           (option.state & QStyle::State_KeyboardFocusChange) != 0;
    if (isFocused) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(tokens.fg, 2));
        painter.drawRoundedRect(QRectF(tile).adjusted(-3, -3, 3, 3), radius + 3, radius + 3);
    }
}

void paintMeta(QPainter& painter, const QRect& row, const QString& date, const QString& notes)
{
    const Tokens& tokens = Appearance::shared().tokens();
    const QFont font = Appearance::font(Appearance::Text::small);
    const QFontMetrics metrics(font);
    const int dateWidth = metrics.horizontalAdvance(date);
    const int notesWidth = notes.isEmpty() ? 0 : metrics.horizontalAdvance(notes) + metaGap;
    const int left = row.left() + (row.width() - dateWidth - notesWidth) / 2;
    painter.setFont(font);
    painter.setPen(tokens.fg2);
    painter.drawText(QRect(left, row.top(), dateWidth, row.height()), Qt::AlignVCenter, date);
    painter.setPen(tokens.fg3);
    painter.drawText(QRect(left + dateWidth + metaGap, row.top(), notesWidth, row.height()), Qt::AlignVCenter,
                     notes);
}

} // namespace

void TileDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRect tile = tileOf(option);
    paintGround(*painter, option, tile);
    const QRect disc(tile.left() + (tile.width() - TileModel::discSide) / 2, tile.top() + discTop,
                     TileModel::discSide, TileModel::discSide);
    const auto picture = index.data(TileModel::discRole).value<QImage>();
    if (!picture.isNull()) {
        painter->drawImage(disc, picture);
    }
    const QRect name = nameOf(tile);
    painter->setFont(Appearance::font(Appearance::Text::name));
    painter->setPen(Appearance::shared().tokens().fg);
    painter->drawText(
        name, Qt::AlignCenter,
        painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, name.width()));
    paintMeta(*painter, {name.left(), tile.top() + metaTop, name.width(), metaHeight},
              index.data(TileModel::dateRole).toString(), index.data(TileModel::notesRole).toString());
    painter->restore();
}

QSize TileDelegate::sizeHint(const QStyleOptionViewItem& /*option*/, const QModelIndex& /*index*/) const
{
    return tileSize + QSize(gapAcross, gapDown);
}

QWidget* TileDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                    const QModelIndex& /*index*/) const
{
    auto* editor = new QLineEdit(parent);
    editor->setAlignment(Qt::AlignCenter);
    editor->setFont(Appearance::font(Appearance::Text::name));
    editor->setAccessibleName("Name");
    return editor;
}

void TileDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    const auto* line = qobject_cast<QLineEdit*>(editor);
    const bool isKept =
        line != nullptr && (line->isModified() || line->text() == index.data(Qt::EditRole).toString());
    if (!isKept) {
        QStyledItemDelegate::setEditorData(editor, index);
    }
}

void TileDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex& /*index*/) const
{
    editor->setGeometry(nameOf(tileOf(option)).adjusted(-4, -4, 4, 4));
}

} // namespace volvelle
