#include "app/screens/TileModel.h"

#include "app/control/DateText.h"
#include "app/screens/Appearance.h"

#include <QFile>

#include <algorithm>
#include <ctime>

namespace volvelle {

TileModel::TileModel(Thumbnails& pictures, QObject* parent) : QAbstractListModel(parent), thumbnails(pictures)
{
    connect(&thumbnails, &Thumbnails::made, this, &TileModel::update);
}

void TileModel::show(const std::vector<FolderDocument>& documents)
{
    if (rows == documents) {
        return;
    }
    const bool isSameFiles =
        std::ranges::equal(rows, documents, {}, &FolderDocument::location, &FolderDocument::location);
    if (isSameFiles) {
        rows = documents;
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
        return;
    }
    beginResetModel();
    rows = documents;
    endResetModel();
}

const FolderDocument* TileModel::document(const QModelIndex& index) const
{
    const auto row = static_cast<std::size_t>(index.row());
    return index.isValid() && row < rows.size() ? &rows[row] : nullptr;
}

QModelIndex TileModel::indexOf(const std::filesystem::path& file) const
{
    const auto found = std::ranges::find(rows, file, &FolderDocument::location);
    return found == rows.end() ? QModelIndex() : index(static_cast<int>(std::distance(rows.begin(), found)));
}

void TileModel::setPixelRatio(double pixels)
{
    if (ratio != pixels) {
        ratio = pixels;
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    }
}

int TileModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows.size());
}

std::optional<Thumbnails::Thumbnail> TileModel::thumbnail(const FolderDocument& document) const
{
    return thumbnails.find({document.location, document.modified, document.size, discSide, ratio,
                            Appearance::shared().theme()});
}

QVariant TileModel::data(const QModelIndex& index, int role) const
{
    const FolderDocument* shown = document(index);
    if (shown == nullptr) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case Qt::AccessibleTextRole:
        return QString::fromStdString(shown->name);
    case dateRole:
    case Qt::AccessibleDescriptionRole:
        return QString::fromStdString(dateText(shown->modified, std::time(nullptr)));
    case notesRole:
        if (const auto picture = thumbnail(*shown)) {
            return QString::fromStdString(notesText(picture->notes));
        }
        return {};
    case discRole:
        if (const auto picture = thumbnail(*shown)) {
            return picture->disc;
        }
        return {};
    case Qt::ToolTipRole:
        return QFile::decodeName(shown->location.c_str()).toHtmlEscaped();
    default:
        return {};
    }
}

bool TileModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (document(index) == nullptr || role != Qt::EditRole) {
        return false;
    }
    Q_EMIT renamed(value.toString());
    return true;
}

Qt::ItemFlags TileModel::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable : Qt::NoItemFlags;
}

void TileModel::update(const QString& file)
{
    const QModelIndex row = indexOf(QFile::encodeName(file).toStdString());
    if (row.isValid()) {
        Q_EMIT dataChanged(row, row);
    }
}

} // namespace volvelle
