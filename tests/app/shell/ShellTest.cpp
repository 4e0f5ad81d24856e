#include "app/shell/Shell.h"
#include "app/screens/BrowserScreen.h"
#include "app/screens/DocumentScreen.h"
#include "app/screens/FileAddress.h"
#include "app/screens/MessageBar.h"
#include "app/shell/RunLoopBridge.h"
#include "app/shell/SelfTest.h"
#include "app/shell/SettingsFile.h"
#include "base/MainQueue.h"
#include "base/Paths.h"
#include "services/settings/NSUserDefaults.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/HandClock.h"
#include "tests/support/ProjectFolders.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDesktopServices>
#include <QLabel>
#include <QPushButton>
#include <QSessionManager>
#include <QSettings>
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

    std::string description() const override { return name; }

    bool isAudible() const override { return isHeard; }

    std::string name = "None"; // "" while it is not known
    bool isHeard = false;
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
        shell = std::make_unique<Shell>(Shell::Options{[this] { return sink; }, {}, "", hasRemoteControl});
        shell->launch(files);
    }

    bool shows(std::size_t ideas) const
    {
        return QTest::qWaitFor([&] { return shell->root().documents().size() == ideas; }, 10'000);
    }

    // The line below the screens, empty for none.
    std::string notice() const
    {
        const auto* bar = shell->window().findChild<MessageBar*>();
        return bar->isVisible() ? bar->accessibleName().toStdString() : "";
    }

    // The line of a document about the sound, empty for none.
    std::string soundLine() const
    {
        for (const QLabel* label : shell->window().document()->findChildren<QLabel*>()) {
            if (label->isVisible() && label->text().contains("sound")) {
                return label->text().toStdString();
            }
        }
        return "";
    }

    const std::string before = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");
    TemporaryFolder home;
    ConsoleCapture console;
    RunLoopBridge bridge;
    const std::filesystem::path folder = home.path / "Documents/Volvelle";
    const std::shared_ptr<NoSink> sink = std::make_shared<NoSink>();
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

TEST_F(ShellTest, AnAlertStandsInFrontWhenTheProgramIsCalledAgain)
{
    launch();
    shell->root().showAbout();
    QWidget* const alert = QApplication::activeModalWidget();
    ASSERT_NE(alert, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return alert->isActiveWindow(); }));
    shell->receive({});
    EXPECT_TRUE(alert->isActiveWindow());
    alert->close();
}

TEST_F(ShellTest, AFileThatCannotBeOpenedIsToldInALine)
{
    launch({QString::fromStdString((home.path / "nope.mid").string())});
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(notice(), "'nope' does not exist.");
    shell->receive({QString::fromStdString(home.write("Bad.mid", "none").string())});
    EXPECT_EQ(notice(), "'Bad' is not a MIDI file.");
    shell->receive({});
    EXPECT_EQ(notice(), "'Bad' is not a MIDI file.");
    shell->receive({addressOf(home.write("Slow tide.mid", oneNote))});
    EXPECT_EQ(notice(), "");
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(ShellTest, ALineTellsThatThereIsNoSoundUntilThereIs)
{
    HandClock clock;
    sink->name = "";
    launch({addressOf(home.write("Slow tide.mid", oneNote))});
    ASSERT_NE(shell->window().document(), nullptr);
    EXPECT_EQ(soundLine(), "") << "nothing is known yet";
    sink->name = "None";
    clock.advance(0.4);
    EXPECT_EQ(soundLine(), "");
    clock.advance(0.2);
    EXPECT_EQ(soundLine(), "There is no sound device: the music plays on silently.");
    sink->isHeard = true;
    clock.advance(0.6);
    EXPECT_EQ(soundLine(), "");
    sink->isHeard = false;
    clock.advance(0.6);
    EXPECT_EQ(soundLine(), "There is no sound device: the music plays on silently.");
    shell.reset();
}

// The desktop's browser, which notes what it is asked to open.
class SiteNote : public QObject {
    Q_OBJECT

public Q_SLOTS:

    void take(const QUrl& url) { sites << url.toString(); }

public:
    QStringList sites;
};

TEST_F(ShellTest, TheSiteOfTheSettingsIsOpenedWithTheHelp)
{
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope,
                       QString::fromStdString((home.path / "config").string()));
    home.write("config/volvelle/volvelle.ini", "[General]\nhelpSite=https://example.invalid/a,b\n");
    NSUserDefaults::setStoreMaker(openSettings);
    home.write("resources/Phrases/none", "");
    home.write("resources/Phrases2/none", "");
    home.write("resources/manual.pdf", "");
    setResourcesFolder(home.path / "resources");
    Shell::Options options = Shell::usualOptions();
    NSUserDefaults::setStoreMaker({});
    options.makeSink = [] { return std::make_shared<NoSink>(); };
    options.thumbnails.clear();
    options.hasRemoteControl = false;
    SiteNote desktop;
    QDesktopServices::setUrlHandler("https", &desktop, "take");
    shell = std::make_unique<Shell>(options);
    shell->launch({});
    shell->window().browser()->help();
    mainQueue().drain();
    QDesktopServices::unsetUrlHandler("https");
    EXPECT_EQ(desktop.sites, QStringList{"https://example.invalid/a,b"});
}

// The road of the self-test, broken at a step.
struct SelfTest : ShellTest {
    // How it ends where something is done before a step.
    static std::string walk(std::string_view broken, const std::function<void(Shell&)>& act)
    {
        return walkRoad([&](std::string_view step, Shell& shell) {
            if (step == broken) {
                act(shell);
            }
        });
    }

    static std::function<void(Shell&)> hide(const char* name)
    {
        return [name](Shell& shell) {
            for (QPushButton* button : shell.window().document()->findChildren<QPushButton*>()) {
                button->setHidden(button->isHidden() || button->text() == name);
            }
        };
    }
};

TEST_F(SelfTest, EndsWellWhereNothingIsBroken)
{
    EXPECT_EQ(walk("", {}), "");
}

TEST_F(SelfTest, TellsTheIconThatIsMissing)
{
    EXPECT_EQ(iconFault(), "The icon cannot be painted."); // which the program alone has
}

TEST_F(SelfTest, TellsThatNoDocumentOpened)
{
    EXPECT_EQ(walk("New", [](Shell&) { setResourcesFolder("/missing"); }), "New opened no document.");
}

TEST_F(SelfTest, TellsThatGenerateDidNotPlay)
{
    EXPECT_EQ(walk("Generate", hide("Generate")), "Generate did not play.");
}

TEST_F(SelfTest, TellsThatSaveWroteSomethingElse)
{
    const std::string told = "Save did not write what was made.";
    EXPECT_EQ(walk("Save", hide("Save")), told);
    EXPECT_EQ(walk("Save", [](Shell& shell) { shell.root().documentViewController->onButtonDone(); }), told);
}

TEST_F(SelfTest, TellsThatTheDocumentDidNotOpenAgain)
{
    EXPECT_EQ(walk("Open", [](Shell& shell) { std::filesystem::remove(*shell.root().selection()); }),
              "The document that was saved did not open again.");
}

TEST_F(SelfTest, TellsThatDoneDidNotLeave)
{
    EXPECT_EQ(walk("Done", hide("Done")), "Done did not leave the document.");
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
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_NE(notice().find(address), std::string::npos) << notice();
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

#include "ShellTest.moc"
