#include "app/screens/TileModel.h"

#include "app/control/DateText.h"
#include "app/control/LocalizedName.h"
#include "app/screens/Appearance.h"
#include "app/screens/Controls.h"

#include <algorithm>
#include <ctime>
#include <ranges>
#include <unordered_set>

namespace volvelle {

namespace {

constexpr int mostSteps = 64; // rows that come, go or move one by one

const std::string& placeOf(const FolderDocument& document)
{
    return document.location.native();
}

// From the first row that differs to the last.
std::ptrdiff_t difference(const std::vector<FolderDocument>& a, const std::vector<FolderDocument>& b)
{
    const auto [left, right] = std::ranges::mismatch(a, b, {}, placeOf, placeOf);
    const auto leftRest = std::ranges::subrange(left, a.end()) | std::views::reverse;
    const auto rightRest = std::ranges::subrange(right, b.end()) | std::views::reverse;
    const auto same = std::ranges::mismatch(leftRest, rightRest, {}, placeOf, placeOf);
    return std::max(leftRest.end() - same.in1, rightRest.end() - same.in2);
}

} // namespace

TileModel::TileModel(Thumbnails& thumbnails, QObject* parent)
    : QAbstractListModel(parent), thumbnails(thumbnails)
{
    connect(&thumbnails, &Thumbnails::made, this, &TileModel::update);
}

void TileModel::show(const std::vector<FolderDocument>& documents)
{
    if (rows == documents) {
        return;
    }
    if (rows.empty() || documents.empty() || difference(rows, documents) > mostSteps) {
        beginResetModel();
        rows = documents;
        endResetModel();
        return;
    }
    removeRowsWithout(documents);
    placeRows(documents);
    rows = documents;
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

void TileModel::removeRowsWithout(const std::vector<FolderDocument>& documents)
{
    std::unordered_set<std::string> kept;
    for (const FolderDocument& document : documents) {
        kept.insert(placeOf(document));
    }
    for (int row = rowCount() - 1; row >= 0; --row) {
        const auto at = rows.begin() + row;
        if (!kept.contains(placeOf(*at))) {
            beginRemoveRows({}, row, row);
            rows.erase(at);
            endRemoveRows();
        }
    }
}

// Each row of `documents` in turn is there already, further down or new.
void TileModel::placeRows(const std::vector<FolderDocument>& documents)
{
    for (std::size_t place = 0; place < documents.size(); ++place) {
        const int row = static_cast<int>(place);
        const auto at = rows.begin() + row;
        const auto found = std::ranges::find(at, rows.end(), placeOf(documents[place]), placeOf);
        if (found == at && at != rows.end()) {
            continue;
        }
        if (found == rows.end()) {
            beginInsertRows({}, row, row);
            rows.insert(at, documents[place]);
            endInsertRows();
        } else {
            const int from = static_cast<int>(found - rows.begin());
            beginMoveRows({}, from, from, {}, row);
            std::rotate(at, found, found + 1);
            endMoveRows();
        }
    }
}

const FolderDocument* TileModel::document(const QModelIndex& index) const
{
    const auto row = static_cast<std::size_t>(index.row());
    return index.isValid() && row < rows.size() ? &rows[row] : nullptr;
}

QModelIndex TileModel::indexOf(const std::filesystem::path& file) const
{
    const auto found = std::ranges::find(rows, file.native(), placeOf);
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
    return thumbnails.find({document.location, document.modified, document.nanoseconds, document.size,
                            discSide, ratio, Appearance::shared().theme()});
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
        return plainTip(QString::fromStdString(shownPath(shown->location)));
    default:
        return {};
    }
}

bool TileModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const FolderDocument* edited = document(index);
    if (edited == nullptr || role != Qt::EditRole) {
        return false;
    }
    Q_EMIT renamed(edited->location, value.toString());
    return true;
}

Qt::ItemFlags TileModel::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable : Qt::NoItemFlags;
}

void TileModel::update(const std::filesystem::path& file)
{
    const QModelIndex row = indexOf(file);
    if (row.isValid()) {
        Q_EMIT dataChanged(row, row);
    }
}

} // namespace volvelle
