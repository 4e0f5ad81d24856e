#include "app/shell/Shell.h"
#include "app/screens/FileAddress.h"
#include "app/shell/RunLoopBridge.h"
#include "base/Paths.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/ProjectFolders.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QMessageBox>
#include <QSessionManager>
#include <QTest>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>

namespace volvelle::test {
namespace {

// A sink that nobody hears and nothing pulls.
struct NoSink : AudioSink {
    Result<> open(AudioSource& /*source*/) override { return {}; }

    void close() override {}

    std::string description() const override { return "None"; }

    bool isAudible() const override { return false; }
};

// A file of one note of a beat.
const std::vector<std::uint8_t> oneNote{0x4D, 0x54, 0x68, 0x64, 0,    0,    0, 6,    0,    0,  0, 1,
                                        0,    96,   0x4D, 0x54, 0x72, 0x6B, 0, 0,    0,    12, 0, 0x90,
                                        60,   100,  96,   0x80, 60,   64,   0, 0xFF, 0x2F, 0};

struct ShellTest : testing::Test {
    ShellTest()
    {
        setenv("HOME", home.path.c_str(), 1);
        setResourcesFolder(buildFolder() / "resources");
    }

    ~ShellTest() override
    {
        shell.reset();
        setResourcesFolder(std::nullopt);
        before.empty() ? unsetenv("HOME") : setenv("HOME", before.c_str(), 1);
    }

    void launch(const QStringList& files = {}, bool hasRemoteControl = false)
    {
        shell = std::make_unique<Shell>(
            Shell::Options{[] { return std::make_shared<NoSink>(); }, {}, "", hasRemoteControl});
        shell->launch(files);
    }

    bool shows(std::size_t ideas) const
    {
        return QTest::qWaitFor([&] { return shell->root().documents().size() == ideas; }, 10'000);
    }

    const std::string before = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");
    TemporaryFolder home;
    ConsoleCapture console;
    RunLoopBridge bridge;
    const std::filesystem::path folder = home.path / "Documents/Volvelle";
    std::unique_ptr<Shell> shell;
};

TEST_F(ShellTest, TheBrowserFollowsItsFolderThroughAll)
{
    launch();
    std::filesystem::remove_all(folder);
    home.write("Documents/Volvelle/a.mid", "none");
    EXPECT_TRUE(shows(1));
    std::filesystem::remove_all(home.path / "Documents");
    EXPECT_TRUE(shows(0));
    home.write("Documents/Volvelle/a.mid", "none");
    EXPECT_TRUE(shows(1));
    home.write("Documents/Volvelle/b.mid", "none");
    EXPECT_TRUE(shows(2));
    std::filesystem::remove(folder / "a.mid");
    EXPECT_TRUE(shows(1));
}

TEST_F(ShellTest, AnAlertOfTheFirstFileStandsInFront)
{
    launch({QString::fromStdString(home.write("Bad.mid", "none").string())});
    QWidget* const alert = QApplication::activeModalWidget();
    ASSERT_NE(alert, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return alert->isActiveWindow(); }));
    shell->receive({});
    EXPECT_TRUE(alert->isActiveWindow());
    alert->close();
}

TEST_F(ShellTest, AFileOfAnyBytesIsOpenedByItsAddress)
{
    const auto file = home.write("Documents/Volvelle/Gr\xFCn.mid", oneNote);
    launch({addressOf(file)});
    ASSERT_NE(shell->root().documentViewController, nullptr);
    EXPECT_EQ(shell->root().documentViewController->document()->fileURL(), file);
}

TEST_F(ShellTest, AnAddressOfNoFileHereIsRefused)
{
    launch();
    for (const char* address : {"file://server/a.mid", "file:///a%00.mid"}) {
        shell->receive({address});
        const auto* alert = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(alert, nullptr) << address;
        EXPECT_TRUE(alert->informativeText().contains(address)) << alert->informativeText().toStdString();
        QApplication::activeModalWidget()->close();
        QTest::qWait(0);
    }
    EXPECT_EQ(shell->root().documentViewController, nullptr);
}

TEST_F(ShellTest, ThePlayerOnTheBusFollowsADocument)
{
    launch({addressOf(home.write("Documents/Volvelle/Slow tide.mid", oneNote))}, true);
    QDBusConnection desktop =
        QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), "panel");
    const auto call = [&desktop](const QString& interface, const QString& name,
                                 const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall("org.mpris.MediaPlayer2.volvelle",
                                                              "/org/mpris/MediaPlayer2", interface, name);
        message.setArguments(arguments);
        const QDBusPendingCall answer = desktop.asyncCall(message);
        EXPECT_TRUE(QTest::qWaitFor([&] { return answer.isFinished(); }, 60'000));
        EXPECT_FALSE(answer.isError()) << answer.error().message().toStdString();
        return answer.reply().arguments().value(0);
    };
    const auto property = [&call](const QString& name) {
        return call("org.freedesktop.DBus.Properties", "Get", {"org.mpris.MediaPlayer2.Player", name})
            .value<QDBusVariant>()
            .variant();
    };
    EXPECT_EQ(property("PlaybackStatus").toString(), "Playing");
    EXPECT_TRUE(property("CanPlay").toBool());
    EXPECT_TRUE(property("CanGoNext").toBool());
    EXPECT_FALSE(property("CanPause").toBool());
    const auto metadata = qdbus_cast<QVariantMap>(property("Metadata"));
    EXPECT_EQ(metadata["xesam:title"].toString(), "Slow tide");
    EXPECT_EQ(metadata["mpris:length"].toLongLong(), 500'000);
    EXPECT_EQ(metadata["mpris:trackid"].value<QDBusObjectPath>().path(), "/com/orvane/Volvelle/idea");
    call("org.mpris.MediaPlayer2.Player", "Stop", {});
    EXPECT_EQ(property("PlaybackStatus").toString(), "Stopped");
    const auto before = shell->root().documentViewController->document()->data;
    call("org.mpris.MediaPlayer2.Player", "Next", {});
    EXPECT_NE(shell->root().documentViewController->document()->data, before);
    EXPECT_EQ(property("PlaybackStatus").toString(), "Playing");
    call("org.mpris.MediaPlayer2.Player", "PlayPause", {});
    EXPECT_EQ(property("PlaybackStatus").toString(), "Stopped");
    call("org.mpris.MediaPlayer2.Player", "Play", {});
    EXPECT_EQ(property("PlaybackStatus").toString(), "Playing");
    QDBusConnection::disconnectFromBus("panel");
}

TEST_F(ShellTest, ASessionThatGoesOnAfterAllKeepsTheWindowAndItsDocument)
{
    launch();
    shell->root().createDocument();
    QTest::qWait(0);
    ASSERT_NE(shell->root().documentViewController, nullptr);
    ASSERT_TRUE(shell->root().documentViewController->isPlaying());
    alignas(QSessionManager) std::byte session[sizeof(QSessionManager)]; // that nobody looks at
    Q_EMIT qApp->commitDataRequest(reinterpret_cast<QSessionManager&>(session));
    EXPECT_FALSE(shell->root().documentViewController->isPlaying());
    EXPECT_TRUE(shell->window().isVisible());
    shell->root().documentViewController->onButtonPlay();
    EXPECT_TRUE(shell->root().documentViewController->isPlaying());
}

} // namespace
} // namespace volvelle::test
