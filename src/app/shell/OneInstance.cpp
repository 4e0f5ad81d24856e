#include "app/shell/OneInstance.h"

#include <QDataStream>
#include <QDir>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QThread>

#include <unistd.h>
#include <utility>

namespace volvelle {

namespace {

constexpr int patience = 3000;        // ms, for one that hangs
constexpr qint64 longest = 1'000'000; // bytes of a message

QString folder()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime.isEmpty() ? QDir::tempPath() : runtime;
}

} // namespace

QString OneInstance::usualName()
{
    QString display = qEnvironmentVariable("WAYLAND_DISPLAY", qEnvironmentVariable("DISPLAY"));
    display.replace(QRegularExpression("[^A-Za-z0-9]"), "-");
    return QString("%1/volvelle-%2%3").arg(folder()).arg(getuid()).arg(display);
}

OneInstance::OneInstance(QString place) : name(std::move(place)), lock(name + ".lock")
{
    lock.setStaleLockTime(0);
    server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server, &QLocalServer::newConnection, this, [this] { take(); });
}

OneInstance::~OneInstance()
{
    server.close();
}

bool OneInstance::begin(const QStringList& files, Receive handler)
{
    receive = std::move(handler);
    if (lock.tryLock(0)) {
        listen();
        return true;
    }
    if (lock.error() != QLockFile::LockFailedError) {
        return true;
    }
    return !handOver(files);
}

void OneInstance::listen()
{
    QLocalServer::removeServer(name);
    server.listen(name);
}

// The first one may have the lock and not listen yet.
bool OneInstance::handOver(const QStringList& files) const
{
    QElapsedTimer clock;
    clock.start();
    QLocalSocket socket;
    while (clock.elapsed() < patience) {
        socket.connectToServer(name);
        if (socket.waitForConnected(patience)) {
            QDataStream stream(&socket);
            stream << files;
            return socket.waitForBytesWritten(patience) && socket.waitForReadyRead(patience);
        }
        QThread::msleep(20);
    }
    return false;
}

void OneInstance::take()
{
    while (QLocalSocket* socket = server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            QDataStream stream(socket);
            stream.startTransaction();
            QStringList files;
            stream >> files;
            if (!stream.commitTransaction()) {
                if (socket->bytesAvailable() > longest) {
                    socket->abort();
                }
                return;
            }
            socket->write("+");
            socket->flush();
            socket->disconnectFromServer();
            receive(files);
        });
    }
}

} // namespace volvelle
