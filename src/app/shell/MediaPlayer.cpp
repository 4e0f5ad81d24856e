#include "app/shell/MediaPlayer.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QUrl>

#include <unistd.h>
#include <utility>

namespace volvelle {

namespace {

constexpr const char* serviceName = "org.mpris.MediaPlayer2.volvelle";
constexpr const char* objectPath = "/org/mpris/MediaPlayer2";
constexpr double microseconds = 1e6;

} // namespace

MediaPlayer::MediaPlayer(RemoteCommands commands, Window window)
    : commands(std::move(commands)), window(std::move(window))
{
    new MediaPlayerRoot(*this);
    new MediaPlayerControls(*this);
}

MediaPlayer::~MediaPlayer()
{
    MediaPlayer::end();
}

void MediaPlayer::begin()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (isOnBus || !bus.isConnected() || !bus.registerObject(objectPath, this)) {
        return;
    }
    for (const QString& free :
         {QString(serviceName), QString("%1.instance%2").arg(serviceName).arg(getpid())}) {
        if (bus.registerService(free)) {
            name = free;
            isOnBus = true;
            return;
        }
    }
    bus.unregisterObject(objectPath);
}

void MediaPlayer::end()
{
    if (std::exchange(isOnBus, false)) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.unregisterObject(objectPath);
        bus.unregisterService(name);
    }
}

void MediaPlayer::tellChange()
{
    const auto* controls = findChild<MediaPlayerControls*>();
    if (!isOnBus || controls == nullptr) {
        return;
    }
    QDBusMessage message =
        QDBusMessage::createSignal(objectPath, "org.freedesktop.DBus.Properties", "PropertiesChanged");
    const QVariantMap changed{{"PlaybackStatus", controls->status()},
                              {"Metadata", controls->metadata()},
                              {"CanGoNext", controls->isAvailable()},
                              {"CanPlay", controls->isAvailable()}};
    message << "org.mpris.MediaPlayer2.Player" << changed << QStringList();
    QDBusConnection::sessionBus().send(message);
}

MediaPlayerRoot::MediaPlayerRoot(MediaPlayer& player) : QDBusAbstractAdaptor(&player), player(player) {}

void MediaPlayerRoot::Raise()
{
    player.window.raise();
}

void MediaPlayerRoot::Quit()
{
    player.window.quit();
}

MediaPlayerControls::MediaPlayerControls(MediaPlayer& player) : QDBusAbstractAdaptor(&player), player(player)
{
}

QString MediaPlayerControls::status() const
{
    return player.commands.isPlaying() ? "Playing" : "Stopped";
}

QVariantMap MediaPlayerControls::metadata() const
{
    QVariantMap result;
    const bool hasTrack = player.commands.isAvailable();
    result["mpris:trackid"] = QVariant::fromValue(QDBusObjectPath(
        hasTrack ? "/com/orvane/Volvelle/idea" : "/org/mpris/MediaPlayer2/TrackList/NoTrack"));
    if (hasTrack) {
        result["xesam:title"] = QString::fromStdString(player.commands.title());
        result["mpris:length"] = static_cast<qlonglong>(player.commands.length() * microseconds);
    }
    return result;
}

qlonglong MediaPlayerControls::position() const
{
    return static_cast<qlonglong>(player.commands.position() * microseconds);
}

bool MediaPlayerControls::isAvailable() const
{
    return player.commands.isAvailable();
}

void MediaPlayerControls::Next()
{
    player.commands.next();
}

void MediaPlayerControls::Play()
{
    player.commands.play();
}

void MediaPlayerControls::PlayPause()
{
    player.commands.playOrStop();
}

void MediaPlayerControls::Stop()
{
    player.commands.stop();
}

void MediaPlayerControls::OpenUri(const QString& uri)
{
    const QUrl url(uri);
    if (url.isLocalFile()) {
        player.window.open(url.toString(QUrl::FullyEncoded));
    }
}

} // namespace volvelle
