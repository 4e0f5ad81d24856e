#pragma once

#include "app/control/RemoteCommands.h"
#include "app/control/UIApplication.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <memory>

namespace volvelle {

// The player on the session bus, for media keys and panels (MPRIS). Without a bus it does nothing. [main]
class MediaPlayer : public QObject, public RemoteControl {
public:
    struct Window {
        std::function<void()> raise;
        std::function<void()> quit;
        std::function<void(const QString& file)> open;
    };

    MediaPlayer(RemoteCommands commands, Window window);
    ~MediaPlayer() override;

    void begin() override;
    void end() override;

    // Tells the bus what has changed: called after the music began or ended, and with another document.
    void tellChange();

    const RemoteCommands commands;
    const Window window;

private:
    bool isOnBus = false;
    QString name; // on the bus
};

// The interface org.mpris.MediaPlayer2 of a MediaPlayer.
class MediaPlayerRoot : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ yes)
    Q_PROPERTY(bool CanRaise READ yes)
    Q_PROPERTY(bool HasTrackList READ no)
    Q_PROPERTY(QString Identity READ identity)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry)
    Q_PROPERTY(QStringList SupportedUriSchemes READ schemes)
    Q_PROPERTY(QStringList SupportedMimeTypes READ types)

public:
    explicit MediaPlayerRoot(MediaPlayer& player);

    bool yes() const { return true; }

    bool no() const { return false; }

    QString identity() const { return "Volvelle"; }

    QString desktopEntry() const { return "com.orvane.Volvelle"; }

    QStringList schemes() const { return {"file"}; }

    QStringList types() const { return {"audio/midi", "audio/x-midi"}; }

public Q_SLOTS:
    void Raise();
    void Quit();

private:
    MediaPlayer& player;
};

// The interface org.mpris.MediaPlayer2.Player of a MediaPlayer. Times are in microseconds.
class MediaPlayerControls : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ status)
    Q_PROPERTY(double Rate READ rate)
    Q_PROPERTY(double MinimumRate READ rate)
    Q_PROPERTY(double MaximumRate READ rate)
    Q_PROPERTY(double Volume READ rate)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(bool CanGoNext READ isAvailable)
    Q_PROPERTY(bool CanGoPrevious READ no)
    Q_PROPERTY(bool CanPlay READ isAvailable)
    Q_PROPERTY(bool CanPause READ no)
    Q_PROPERTY(bool CanSeek READ no)
    Q_PROPERTY(bool CanControl READ yes)

public:
    explicit MediaPlayerControls(MediaPlayer& player);

    QString status() const;
    QVariantMap metadata() const;
    qlonglong position() const;
    bool isAvailable() const;

    double rate() const { return 1.0; }

    bool yes() const { return true; }

    bool no() const { return false; }

public Q_SLOTS:
    void Next();
    void Play();
    void PlayPause();
    void Stop();
    void OpenUri(const QString& uri);

    // Nothing goes back, waits or jumps.
    void Previous() {}

    void Pause() {}

    void Seek(qlonglong /*by*/) {}

    void SetPosition(const QDBusObjectPath& /*track*/, qlonglong /*position*/) {}

private:
    MediaPlayer& player;
};

} // namespace volvelle
