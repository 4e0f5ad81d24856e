#pragma once

#include "app/control/UIDocumentBrowserViewController.h"
#include "app/screens/Thumbnails.h"

#include <QAbstractListModel>
#include <QPointer>

#include <vector>

namespace volvelle {

// The documents of a browser as rows of a list. [main]
class TileModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role { dateRole = Qt::UserRole, notesRole, discRole };

    // Side of a tile's disc in device-independent pixels.
    static constexpr int discSide = 192;

    TileModel(Thumbnails& thumbnails, QObject* parent);

    // Shows these, keeping rows that stay where few change.
    void show(const std::vector<FolderDocument>& documents);

    const FolderDocument* document(const QModelIndex& index) const;
    QModelIndex indexOf(const std::filesystem::path& file) const;

    void setPixelRatio(double pixels);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

Q_SIGNALS:
    // The name of a tile was edited.
    void renamed(const std::filesystem::path& file, const QString& name);

private:
    void removeRowsWithout(const std::vector<FolderDocument>& documents);
    void placeRows(const std::vector<FolderDocument>& documents);
    std::optional<Thumbnails::Thumbnail> thumbnail(const FolderDocument& document) const;
    void update(const std::filesystem::path& file);

    Thumbnails& thumbnails;
    std::vector<FolderDocument> rows;
    double ratio = 1.0; // pixels of the screen to a length
};

} // namespace volvelle
