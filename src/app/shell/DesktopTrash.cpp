#include "app/shell/DesktopTrash.h"

#include "app/control/LocalizedName.h"
#include "base/PlainText.h"
#include "base/Text.h"
#include "services/files/FileNames.h"
#include "services/files/MoveFile.h"
#include "services/files/SafeFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>

namespace volvelle {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t longestUsual = 230; // bytes of a name, after which the trash has its own endings
constexpr int longestOwn = 50;            // letters
constexpr int mostNumbers = 100'000;      // of files with one name

// A name in UTF-8 with room for what the trash puts after it.
bool isUsualName(const fs::path& file)
{
    const std::string name = file.filename().string();
    return utf8Length(name) == name.size() && name.size() <= longestUsual;
}

fs::path infoOf(const fs::path& place)
{
    return place.parent_path().parent_path() / "info" / (place.filename().string() + ".trashinfo");
}

std::vector<std::uint8_t> infoText(const fs::path& file)
{
    const QByteArray place = QByteArray::fromStdString(file.string()).toPercentEncoding("/");
    const QByteArray date = QDateTime::currentDateTime().toString("yyyy-MM-ddThh:mm:ss").toLatin1();
    const QByteArray text = "[Trash Info]\nPath=" + place + "\nDeletionDate=" + date + "\n";
    return {text.begin(), text.end()};
}

// Into the user's own trash, under a name that is free there; nothing where it fails.
fs::path takeByHand(const fs::path& file, const fs::path& trash)
{
    const QString shown = QString::fromStdString(shownName(file)).left(longestOwn);
    const fs::path wanted = trash / "files" / (shown.toStdString() + utf8Text(file.extension().string()));
    std::error_code unmade;
    fs::create_directories(trash / "files", unmade);
    fs::create_directories(trash / "info", unmade);
    for (int number = 1; number <= mostNumbers; ++number) {
        const fs::path place = numberedFile(wanted, number);
        const int noted = putFile(infoOf(place), infoText(file), false);
        const int failed = noted == 0 ? moveFile(file, place) : noted;
        if (failed == 0) {
            return place;
        }
        if (noted == 0) {
            fs::remove(infoOf(place), unmade);
        }
        if (failed != EEXIST) {
            break;
        }
    }
    return {};
}

} // namespace

Result<fs::path> DesktopTrash::take(const fs::path& file)
{
    const auto refused = failure(concat("'", shownName(file), "' could not be moved to the trash."));
    // Without it the trash would be made in the working folder.
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (data.isEmpty() || !QDir().mkpath(data)) {
        return refused;
    }
    if (!isUsualName(file)) {
        const fs::path taken = takeByHand(file, fs::path(QFile::encodeName(data).toStdString()) / "Trash");
        return taken.empty() ? Result<fs::path>(refused) : taken;
    }
    QString place;
    if (!QFile::moveToTrash(QFile::decodeName(file.c_str()), &place)) {
        return refused;
    }
    return fs::path(QFile::encodeName(place).toStdString());
}

Result<> DesktopTrash::restore(const fs::path& place, const fs::path& file)
{
    const int moved = moveFile(place, file);
    if (moved == EEXIST) {
        return failure(concat("There is already an idea called '", shownName(file),
                              "'; the other one stays in the trash."));
    }
    if (moved != 0) {
        return failure(concat("'", shownName(file), "' could not be brought back from the trash."));
    }
    std::error_code error;
    fs::remove(infoOf(place), error);
    return {};
}

} // namespace volvelle
