#include "app/shell/OneInstance.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QThread>
#include <QtEndian>

#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace volvelle {

namespace {

constexpr int patience = 3000;          // ms, for one that hangs
constexpr int pause = 20;               // ms, between two tries
constexpr quint32 longest = 64U << 20U; // bytes of a message: each file of a command line with its folder
constexpr const char* takenAnswer = "+";
constexpr const char* refusedAnswer = "-";

// A message: the count of its bytes, in four bytes from the highest, then each file in UTF-8 with a zero
// after it.
QByteArray messageOf(const QStringList& files)
{
    QByteArray names;
    for (const QString& file : files) {
        names += file.toUtf8() + '\0';
    }
    QByteArray length(sizeof(quint32), '\0');
    qToBigEndian(static_cast<quint32>(names.size()), length.data());
    return length + names;
}

QStringList filesOf(const QByteArray& names)
{
    QStringList files;
    for (qsizetype at = 0; at < names.size();) {
        const QByteArray name(names.constData() + at);
        files << QString::fromUtf8(name);
        at += name.size() + 1;
    }
    return files;
}

int descriptorOf(const QLocalSocket& socket)
{
    return static_cast<int>(socket.socketDescriptor());
}

// One that does not come in time is refused from then on, which its sender is told.
QByteArray answerFrom(QLocalSocket& socket)
{
    if (socket.waitForReadyRead(patience) || socket.state() != QLocalSocket::ConnectedState) {
        return socket.readAll();
    }
    shutdown(descriptorOf(socket), SHUT_RD);
    char answer = 0;
    const bool isThere = recv(descriptorOf(socket), &answer, 1, MSG_DONTWAIT) == 1;
    return isThere ? QByteArray(1, answer) : QByteArray();
}

// False where nobody waits for it any more.
bool tell(const QLocalSocket& socket, const char* answer)
{
    return send(descriptorOf(socket), answer, 1, MSG_NOSIGNAL) == 1;
}

// A display's screens are one.
QString usualDisplay()
{
    static const QRegularExpression screen("(:[0-9]+)\\.[0-9]+$");
    const QString wayland = qEnvironmentVariable("WAYLAND_DISPLAY");
    return wayland.isNull() ? qEnvironmentVariable("DISPLAY").replace(screen, "\\1") : wayland;
}

QString folder()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime.isEmpty() ? QDir::tempPath() : runtime;
}

} // namespace

QString OneInstance::usualName()
{
    QString display = usualDisplay();
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

OneInstance::Start OneInstance::begin(const QStringList& files, Receive handler)
{
    receive = std::move(handler);
    QElapsedTimer clock;
    clock.start();
    Answer answer = Answer::absent;
    while (clock.elapsed() < patience) {
        if (lock.tryLock(0)) {
            listen();
            return Start::first;
        }
        if (lock.error() != QLockFile::LockFailedError) {
            return Start::first;
        }
        answer = handOver(files);
        if (answer == Answer::taken || answer == Answer::refused) {
            return answer == Answer::taken ? Start::handedOver : Start::refused;
        }
        if (answer == Answer::none) {
            return Start::first;
        }
        QThread::msleep(pause);
    }
    if (answer == Answer::brokenOff) {
        return Start::refused;
    }
    if (isOfNobody()) {
        QFile::remove(name + ".lock");
        if (lock.tryLock(0)) {
            listen();
        }
    }
    return Start::first;
}

// Of one that ended in the middle of making it.
bool OneInstance::isOfNobody() const
{
    qint64 owner = 0;
    QString host;
    QString program;
    return !lock.getLockInfo(&owner, &host, &program);
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
    socket.write(messageOf(files));
    const QByteArray answer = answerFrom(socket);
    if (answer == takenAnswer) {
        return Answer::taken;
    }
    if (answer == refusedAnswer) {
        return Answer::refused;
    }
    return socket.state() == QLocalSocket::ConnectedState ? Answer::none : Answer::brokenOff;
}

void OneInstance::take()
{
    while (QLocalSocket* socket = server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { takeFrom(*socket); });
    }
}

void OneInstance::takeFrom(QLocalSocket& socket)
{
    const QByteArray start = socket.peek(sizeof(quint32));
    if (start.size() < static_cast<qsizetype>(sizeof(quint32))) {
        return;
    }
    const auto length = qFromBigEndian<quint32>(start.constData());
    if (length <= longest && socket.bytesAvailable() < start.size() + static_cast<qint64>(length)) {
        return;
    }
    const bool fits = length <= longest;
    const QByteArray message = fits ? socket.read(start.size() + length) : QByteArray();
    socket.disconnect(this);
    const bool isAwaited = tell(socket, fits ? takenAnswer : refusedAnswer);
    socket.disconnectFromServer();
    if (fits && isAwaited) {
        receive(filesOf(message.mid(start.size())));
    }
}

} // namespace volvelle
