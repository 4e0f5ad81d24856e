#pragma once

#include <QListView>

namespace volvelle {

// The list of tiles, with room at its left. [main]
class TileView : public QListView {
public:
    explicit TileView(QWidget* parent);

    void setMargin(int pixels);
};

} // namespace volvelle
