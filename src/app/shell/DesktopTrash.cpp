#include "app/shell/DesktopTrash.h"

#include "app/control/LocalizedName.h"
#include "base/Text.h"
#include "services/files/MoveFile.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace volvelle {

namespace fs = std::filesystem;

Result<fs::path> DesktopTrash::take(const fs::path& file)
{
    const auto refused = failure(concat("'", shownName(file), "' could not be moved to the trash."));
    // Without it the trash would be made in the working folder.
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QString place;
    if (data.isEmpty() || !QDir().mkpath(data) ||
        !QFile::moveToTrash(QFile::decodeName(file.c_str()), &place)) {
        return refused;
    }
    return fs::path(QFile::encodeName(place).toStdString());
}

Result<> DesktopTrash::restore(const fs::path& place, const fs::path& file)
{
    const OSStatus moved = moveFile(place, file);
    if (moved == fileExistsErr) {
        return failure(concat("There is already an idea called '", shownName(file),
                              "'; the other one stays in the trash."));
    }
    if (moved != noErr) {
        return failure(concat("'", shownName(file), "' could not be brought back from the trash."));
    }
    const fs::path info =
        place.parent_path().parent_path() / "info" / (place.filename().string() + ".trashinfo");
    std::error_code error;
    fs::remove(info, error);
    return {};
}

} // namespace volvelle
