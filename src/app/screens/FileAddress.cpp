#include "app/screens/FileAddress.h"

#include <QFile>
#include <QUrl>

namespace volvelle {

namespace {

const QString scheme = "file://";

} // namespace

QString addressOf(const std::filesystem::path& file)
{
    return scheme + QByteArray::fromStdString(file.string()).toPercentEncoding("/");
}

std::filesystem::path fileOf(const QString& addressOrPath)
{
    if (addressOrPath.startsWith(scheme)) {
        return fileOf(QUrl(addressOrPath));
    }
    return QFile::encodeName(addressOrPath).toStdString();
}

std::filesystem::path fileOf(const QUrl& address)
{
    return QByteArray::fromPercentEncoding(address.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

} // namespace volvelle
