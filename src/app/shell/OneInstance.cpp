#include "app/shell/OneInstance.h"

#include <QDataStream>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QThread>

#include <unistd.h>
#include <utility>

namespace volvelle {

namespace {

constexpr int patience = 3000;        // ms, for one that hangs
constexpr int pause = 20;             // ms, between two tries
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
    end();
}

bool OneInstance::begin(const QStringList& files, Receive handler)
{
    receive = std::move(handler);
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < patience) {
        if (lock.tryLock(0)) {
            listen();
            return true;
        }
        if (lock.error() != QLockFile::LockFailedError) {
            return true;
        }
        const Answer answer = handOver(files);
        if (answer != Answer::absent) {
            return answer == Answer::none;
        }
        QThread::msleep(pause);
    }
    // A lock that names nobody, behind which nobody listens: of one that ended in the middle of making it.
    qint64 owner = 0;
    QString host;
    QString program;
    if (!lock.getLockInfo(&owner, &host, &program)) {
        QFile::remove(name + ".lock");
        if (lock.tryLock(0)) {
            listen();
        }
    }
    return true;
}

void OneInstance::end()
{
    server.close();
    lock.unlock();
}

void OneInstance::listen()
{
    QLocalServer::removeServer(name);
    server.listen(name);
}

// The one that has the lock may not listen yet, or no longer.
OneInstance::Answer OneInstance::handOver(const QStringList& files) const
{
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(patience)) {
        return Answer::absent;
    }
    QDataStream stream(&socket);
    stream << files;
    const bool isTaken = socket.waitForBytesWritten(patience) && socket.waitForReadyRead(patience);
    return isTaken ? Answer::taken : Answer::none;
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
