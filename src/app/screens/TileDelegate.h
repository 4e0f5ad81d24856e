#pragma once

#include <QStyledItemDelegate>

namespace volvelle {

// Paints a tile: disc, name, date and number of notes. [main]
class TileDelegate : public QStyledItemDelegate {
public:
    static constexpr QSize tileSize{232, 284};
    static constexpr int padding = 12; // inside a tile, pixels as all of these
    static constexpr int gapAcross = 16;
    static constexpr int gapDown = 12;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
};

} // namespace volvelle
