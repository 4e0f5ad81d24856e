#include "app/shell/DesktopTrash.h"

#include "app/control/LocalizedName.h"
#include "base/PlainText.h"
#include "base/Text.h"
#include "services/files/FileFailure.h"
#include "services/files/FileNames.h"
#include "services/files/MoveFile.h"
#include "services/files/SafeFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <string_view>
#include <vector>

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

// True for a note whose last line is complete, as its writer does not tell.
bool isWhole(const fs::path& info)
{
    std::vector<std::uint8_t> bytes;
    const bool isRead = readFile(info, bytes) == noErr;
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::size_t date = text.find("\nDeletionDate=");
    return isRead && date != std::string_view::npos && text.find('\n', date + 1) != std::string_view::npos;
}

Failure notTaken(const fs::path& file, int error)
{
    const bool isFull = error == ENOSPC || error == EDQUOT || error == EFBIG;
    return failure(concat("'", shownName(file), "' could not be moved to the trash",
                          isFull ? concat(": ", writeFailureReason(file, error)) : "", "."));
}

// Into the user's own trash, under a name that is free there.
Result<fs::path> takeByHand(const fs::path& file, const fs::path& trash)
{
    const QString shown = QString::fromStdString(shownName(file)).left(longestOwn);
    const fs::path wanted = trash / "files" / (shown.toStdString() + utf8Text(file.extension().string()));
    std::error_code unmade;
    fs::create_directories(trash / "files", unmade);
    fs::create_directories(trash / "info", unmade);
    int failed = EEXIST;
    for (int number = 1; number <= mostNumbers && failed == EEXIST; ++number) {
        fs::path place = numberedFile(wanted, number);
        const int noted = putFile(infoOf(place), infoText(file), false);
        failed = noted == 0 ? moveFile(file, place) : noted;
        if (failed == 0) {
            return place;
        }
        if (noted == 0) {
            fs::remove(infoOf(place), unmade);
        }
    }
    return notTaken(file, failed);
}

// Out of the trash again, which could not note where the file comes from. A name that was taken meanwhile
// leaves it there: nothing is lost.
Failure giveBack(const fs::path& place, const fs::path& file)
{
    const int failed = putFile(infoOf(place), infoText(file), true);
    std::error_code unmade;
    if (moveFile(place, file) == 0) {
        fs::remove(infoOf(place), unmade);
    }
    return notTaken(file, failed == 0 ? ENOSPC : failed);
}

} // namespace

Result<fs::path> DesktopTrash::take(const fs::path& file)
{
    // Without it the trash would be made in the working folder.
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (data.isEmpty() || !QDir().mkpath(data)) {
        return notTaken(file, 0);
    }
    if (!isUsualName(file)) {
        return takeByHand(file, fs::path(QFile::encodeName(data).toStdString()) / "Trash");
    }
    QString taken;
    if (!QFile::moveToTrash(QFile::decodeName(file.c_str()), &taken)) {
        return notTaken(file, 0);
    }
    const fs::path place(QFile::encodeName(taken).toStdString());
    return isWhole(infoOf(place)) ? Result<fs::path>(place) : giveBack(place, file);
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
