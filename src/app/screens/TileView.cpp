#include "app/screens/TileView.h"

#include <QScrollBar>

namespace volvelle {

TileView::TileView(QWidget* parent) : QListView(parent)
{
    setViewMode(QListView::IconMode);
    setUniformItemSizes(true);
    setResizeMode(QListView::Adjust);
    setMovement(QListView::Static);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setSingleStep(40);
    setMouseTracking(true);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setAccessibleName("Ideas");
    setProperty("ownFocusRing", true);
}

void TileView::setMargin(int pixels)
{
    // A row that fills the list to its last pixel is no longer taken to fit.
    setViewportMargins(pixels, 0, -1, 0);
}

} // namespace volvelle
