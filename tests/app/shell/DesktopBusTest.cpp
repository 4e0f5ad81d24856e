#include "app/control/DocumentBrowserViewController.h"
#include "app/shell/ColorScheme.h"
#include "app/shell/FileManager.h"
#include "app/shell/MediaPlayer.h"
#include "app/shell/SleepWatch.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

#include <QDBusMessage>
#include <QDBusReply>
#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace volvelle::test {

// The desktop's settings portal.
class FakePortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public Q_SLOTS:

    QDBusVariant Read(const QString& /*group*/, const QString& /*key*/)
    {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(wish)));
    }

public:
    uint wish = 0;
};

// The desktop's file manager.
class FakeFileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public Q_SLOTS:

    void ShowItems(const QStringList& files, const QString& /*startup*/) { shown += files; }

public:
    QStringList shown;
};

namespace {

// The rest of the desktop, with a connection of its own.
struct DesktopBusTest : testing::Test {
    DesktopBusTest()
        : desktop(QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), "desktop"))
    {
        EXPECT_TRUE(desktop.isConnected());
    }

    ~DesktopBusTest() override { QDBusConnection::disconnectFromBus("desktop"); }

    void offer(const QString& service, const QString& path, QObject& object)
    {
        ASSERT_TRUE(desktop.registerObject(path, &object, QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(desktop.registerService(service));
    }

    void tell(const QString& path, const QString& interface, const QString& name,
              const QVariantList& arguments)
    {
        QDBusMessage message = QDBusMessage::createSignal(path, interface, name);
        message.setArguments(arguments);
        EXPECT_TRUE(desktop.send(message));
    }

    void offerPortal(uint wish)
    {
        portal.wish = wish;
        offer("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", portal);
    }

    void tellSetting(const QString& group, uint wish)
    {
        tell("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "SettingChanged",
             {group, "color-scheme", QVariant::fromValue(QDBusVariant(wish))});
    }

    FakePortal portal;
    QDBusConnection desktop;
};

TEST_F(DesktopBusTest, ColoursFollowThePortal)
{
    const Theme first =
        QGuiApplication::palette().color(QPalette::Window).lightness() < 128 ? Theme::dark : Theme::light;
    offerPortal(first == Theme::dark ? 2 : 1);
    ColorScheme scheme;
    QSignalSpy changes(&scheme, &ColorScheme::changed);
    EXPECT_TRUE(QTest::qWaitFor([&] { return scheme.theme() != first; }));
    tellSetting("org.freedesktop.appearance", first == Theme::dark ? 1 : 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return scheme.theme() == first; }));
    tellSetting("org.other", first == Theme::dark ? 2 : 1);
    tellSetting("org.freedesktop.appearance", 0);
    tellSetting("org.freedesktop.appearance", first == Theme::dark ? 2 : 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return scheme.theme() != first; }));
    EXPECT_EQ(changes.count(), 3);
}

TEST_F(DesktopBusTest, SleepAndWakingAreToldOnceEach)
{
    std::vector<std::string> told;
    const SleepWatch watch([&] { told.emplace_back("sleep"); }, [&] { told.emplace_back("wake"); });
    const auto tellOf = [this](bool isStarting) {
        tell("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep", {isStarting});
    };
    // The bus knows by its answer what the watch listens to.
    EXPECT_FALSE(QDBusConnection::systemBus().interface()->isServiceRegistered("org.freedesktop.login1"));
    ASSERT_TRUE(desktop.registerService("org.freedesktop.login1"));
    tellOf(false);
    // The watch hears a service that has just come once its own connection knows of that.
    const auto isHeard = [&] {
        tellOf(true);
        return !told.empty();
    };
    EXPECT_TRUE(QTest::qWaitFor(isHeard, 60'000));
    for (const bool isStarting : {true, false, false, true}) {
        tellOf(isStarting);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return told.size() >= 3; }, 60'000));
    EXPECT_EQ(told, (std::vector<std::string>{"sleep", "wake", "sleep"}));
}

TEST_F(DesktopBusTest, AFileIsShownInTheFileManager)
{
    FakeFileManager manager;
    offer("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1", manager);
    QString opened;
    showInFileManager("/a/b c/Grün.mid", [&opened](const QString& folder) { opened = folder; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return !manager.shown.isEmpty(); }));
    EXPECT_EQ(manager.shown, QStringList{"file:///a/b%20c/Gr%C3%BCn.mid"});
    EXPECT_EQ(opened, "");
}

TEST_F(DesktopBusTest, AFileOfAnyBytesIsShownInTheFileManager)
{
    FakeFileManager manager;
    offer("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1", manager);
    showInFileManager("/a/Gr\xFCn.mid", [](const QString&) {});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !manager.shown.isEmpty(); }));
    EXPECT_EQ(manager.shown, QStringList{"file:///a/Gr%FCn.mid"});
}

TEST_F(DesktopBusTest, TheFolderIsOpenedWhereNoFileManagerAnswers)
{
    QString opened;
    showInFileManager("/a/b c/Grün.mid", [&opened](const QString& folder) { opened = folder; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return !opened.isEmpty(); }));
    EXPECT_EQ(opened, "/a/b c");
}

TEST_F(DesktopBusTest, ThePlayerOffersWhatThereIs)
{
    int raised = 0;
    QStringList files;
    MediaPlayer player(RemoteCommands({}),
                       {[&] { ++raised; }, [] {}, [&](const QString& file) { files << file; }});
    player.begin();
    const auto call = [&](const QString& interface, const QString& name, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall("org.mpris.MediaPlayer2.volvelle",
                                                              "/org/mpris/MediaPlayer2", interface, name);
        message.setArguments(arguments);
        const QDBusPendingCall answer = desktop.asyncCall(message);
        EXPECT_TRUE(QTest::qWaitFor([&] { return answer.isFinished(); }));
        EXPECT_FALSE(answer.isError()) << answer.error().message().toStdString();
        return answer.reply().arguments().value(0);
    };
    const auto property = [&](const QString& name) {
        return call("org.freedesktop.DBus.Properties", "Get", {"org.mpris.MediaPlayer2.Player", name})
            .value<QDBusVariant>()
            .variant();
    };
    EXPECT_EQ(property("PlaybackStatus").toString(), "Stopped");
    for (const char* name : {"CanPause", "CanPlay", "CanGoNext", "CanSeek", "CanGoPrevious"}) {
        EXPECT_FALSE(property(name).toBool()) << name;
    }
    EXPECT_EQ(property("Position").toLongLong(), 0);
    for (const char* name : {"Play", "PlayPause", "Next", "Stop", "Pause", "Previous"}) {
        call("org.mpris.MediaPlayer2.Player", name, {});
    }
    call("org.mpris.MediaPlayer2", "Raise", {});
    EXPECT_EQ(raised, 1);
    call("org.mpris.MediaPlayer2.Player", "OpenUri", {"file:///a%20b.mid"});
    call("org.mpris.MediaPlayer2.Player", "OpenUri", {"https://maker.example/a.mid"});
    EXPECT_EQ(files, QStringList{"file:///a%20b.mid"});
    call("org.mpris.MediaPlayer2.Player", "OpenUri", {"file://server/%E9.mid"});
    EXPECT_EQ(files.value(1), "file://server/%E9.mid");
    player.end();
    const QDBusReply<bool> isThere =
        desktop.interface()->isServiceRegistered("org.mpris.MediaPlayer2.volvelle");
    EXPECT_FALSE(isThere.value());
}

} // namespace
} // namespace volvelle::test

#include "DesktopBusTest.moc"
