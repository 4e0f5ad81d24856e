#include "app/screens/FileAddress.h"

#include "base/PlainText.h"
#include "base/Text.h"
#include "services/files/FileNames.h"

#include <QFile>
#include <QSysInfo>
#include <QUrl>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

const QString scheme = "file://";

bool isHere(const QString& host)
{
    const auto is = [&host](const QString& name) { return host.compare(name, Qt::CaseInsensitive) == 0; };
    return host.isEmpty() || is("localhost") || is(QSysInfo::machineHostName());
}

Failure refusal(const QString& address, const char* why)
{
    return failure(concat("'", plainLine(address.toStdString()), "' ", why));
}

Result<fs::path> pathOf(const QByteArray& bytes, const QString& address)
{
    if (bytes.isEmpty() || bytes.contains('\0')) {
        return refusal(address, "names no file.");
    }
    return fs::path(bytes.toStdString());
}

bool isText(const fs::path& file)
{
    return utf8Length(file.native()) == file.native().size();
}

} // namespace

QString addressOf(const fs::path& file)
{
    return scheme + QByteArray::fromStdString(file.string()).toPercentEncoding("/");
}

Result<fs::path> fileOf(const QString& addressOrPath)
{
    if (addressOrPath.startsWith(scheme)) {
        return fileOf(QUrl(addressOrPath));
    }
    return pathOf(QFile::encodeName(addressOrPath), addressOrPath);
}

Result<fs::path> fileOf(const QUrl& address)
{
    const QString text = address.toString(QUrl::FullyEncoded);
    if (!address.isLocalFile() || !isHere(address.host())) {
        return refusal(text, "is not on this computer.");
    }
    return pathOf(QByteArray::fromPercentEncoding(address.path(QUrl::FullyEncoded).toLatin1()), text);
}

fs::path proposalOf(const fs::path& file)
{
    fs::path folder = file.parent_path();
    while (!isText(folder)) {
        folder = folder.parent_path();
    }
    return folder / plainLine(utf8Text(file.filename().string()));
}

fs::path meantBy(const fs::path& answer, const fs::path& proposed)
{
    const bool isLeft = answer == proposalOf(proposed) && answer.parent_path() == proposed.parent_path();
    return isLeft && !isNameTaken(answer) ? proposed : answer;
}

} // namespace volvelle
