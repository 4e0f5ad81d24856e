#include "app/shell/FileManager.h"

#include "app/screens/FileAddress.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <QStringList>

#include <utility>

namespace volvelle {

void showInFileManager(const std::filesystem::path& file,
                       std::function<void(const QString& folder)> openFolder)
{
    const QString folder = QFile::decodeName(file.parent_path().c_str());
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolder(folder);
        return;
    }
    const QString name = "org.freedesktop.FileManager1";
    QDBusMessage message =
        QDBusMessage::createMethodCall(name, "/org/freedesktop/FileManager1", name, "ShowItems");
    message << QStringList{addressOf(file)} << QString();
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(message), qApp);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, qApp,
                     [folder, open = std::move(openFolder)](QDBusPendingCallWatcher* call) {
                         if (call->isError()) {
                             open(folder);
                         }
                         call->deleteLater();
                     });
}

} // namespace volvelle
