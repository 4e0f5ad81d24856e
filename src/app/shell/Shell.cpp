#include "app/shell/Shell.h"

#include "app/screens/BrowserScreen.h"
#include "app/screens/DocumentScreen.h"
#include "app/screens/FileAddress.h"
#include "app/shell/DesktopTrash.h"
#include "app/shell/FileManager.h"
#include "base/Paths.h"
#include "base/RunLoop.h"
#include "services/audiodevice/AudioOutput.h"
#include "services/settings/NSUserDefaults.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFile>
#include <QGuiApplication>
#include <QUrl>

#include <utility>

namespace volvelle {

namespace {

constexpr const char* helpSiteKey = "helpSite";
constexpr double soundInterval = 0.5; // seconds between two looks at the sink
constexpr int folderPause = 200;      // ms, in which several changes of a folder become one
constexpr const char* noSound = "There is no sound device: the music plays on silently.";

void post(std::string_view notification)
{
    defaultNotificationCenter().post(notification, nullptr);
}

void openFolder(const QString& folder)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

} // namespace

Shell::Options Shell::usualOptions()
{
    const auto site = NSUserDefaults::standardUserDefaults()->stringForKey(helpSiteKey);
    return {[] { return std::make_shared<AudioOutput>(AudioOutput::forMusic()); }, Thumbnails::usualFolder(),
            site.value_or(""), true};
}

Shell::Shell(Options given)
    : options(std::move(given)),
      thumbnails(std::make_unique<Thumbnails>(options.thumbnails)),
      mainWindow(std::make_unique<MainWindow>(options.helpSite)),
      scene(std::make_shared<UIWindow>()),
      session(std::make_shared<UISceneSession>()),
      sleepWatch([] { post(UIApplicationDidEnterBackgroundNotification); },
                 [] { post(UIApplicationWillEnterForegroundNotification); })
{
    BrowserServices services;
    services.storyboard = mainWindow->storyboard();
    services.makeSink = options.makeSink;
    services.openURL = [](const std::string& url) {
        QDesktopServices::openUrl(QUrl(QString::fromStdString(url)));
    };
    services.helpSite = options.helpSite;
    services.trash = std::make_shared<DesktopTrash>();
    rootScreen = DocumentBrowserViewController::make(std::move(services));
    rootScreen->host = mainWindow->host();
    rootScreen->askForPlace = [this](const std::filesystem::path& proposal, const auto& chosen) {
        mainWindow->askForPlace(proposal, chosen);
    };
    scene->rootViewController = rootScreen;
    application.window = scene;
    sceneDelegate.window = scene;
}

Shell::~Shell()
{
    terminate();
    UIApplication::sharedApplication().remoteControl.reset();
    UIApplication::sharedApplication().openSessions.clear();
    mainWindow.reset();
}

void Shell::launch(const QStringList& files)
{
    UIApplication& system = UIApplication::sharedApplication();
    system.openSessions = {session};
    if (options.hasRemoteControl) {
        player = std::make_shared<MediaPlayer>(
            RemoteCommands(rootScreen),
            MediaPlayer::Window{[this] { mainWindow->bringToFront(); }, [this] { mainWindow->close(); },
                                [this](const QString& file) { receive({file}); }});
        system.remoteControl = player;
    }
    application.applicationDidFinishLaunching();
    sceneDelegate.sceneWillConnectTo(session, {});
    rootScreen->loadViewIfNeeded();
    mainWindow->setRoot(rootScreen, *thumbnails);
    mainWindow->browser()->reveal = [](const std::filesystem::path& file) {
        showInFileManager(file, openFolder);
    };
    connectSystem();
    watchFolder();
    mainWindow->show();
    if (!files.isEmpty()) {
        // A large file takes its time: not before the window is painted.
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    receive(files);
}

void Shell::receive(const QStringList& files)
{
    if (!files.isEmpty()) {
        rootScreen->tellQuietly("");
    }
    for (const QString& address : files) {
        if (const auto file = fileOf(address)) {
            sceneDelegate.sceneOpenURLContexts({{*file, true}});
        } else {
            rootScreen->tellQuietly(file.error());
        }
    }
    if (mainWindow->isVisible()) {
        mainWindow->bringToFront();
    }
}

void Shell::connectSystem()
{
    connect(mainWindow.get(), &MainWindow::closing, this, [this] {
        terminate();
        QCoreApplication::quit();
    });
    // The session may yet go on.
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this] { rootScreen->prepareForQuestion(); });
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] { terminate(); });
    connect(mainWindow.get(), &MainWindow::screenChanged, this, [this] {
        lookAtSound();
        tellPlayer();
        if (mainWindow->document() == nullptr) {
            rootScreen->refresh();
        }
    });
    connect(mainWindow.get(), &MainWindow::playingChanged, this, [this] { tellPlayer(); });
    soundTimer = mainRunLoop().schedule(soundInterval, rootScreen, [this] { lookAtSound(); });
}

void Shell::tellPlayer()
{
    if (player) {
        player->tellChange();
    }
}

void Shell::watchFolder()
{
    folderTimer.setSingleShot(true);
    folderTimer.setInterval(folderPause);
    connect(&folderTimer, &QTimer::timeout, this, [this] {
        followFolder();
        rootScreen->refresh();
    });
    connect(&folderWatcher, &QFileSystemWatcher::directoryChanged, this, [this] { folderTimer.start(); });
    followFolder();
}

// A folder that is not there is waited for in the nearest one above it; one that came anew is another one.
void Shell::followFolder()
{
    auto folder = documentsFolder();
    std::error_code error;
    while (folder && !std::filesystem::is_directory(*folder, error) && folder->has_relative_path()) {
        folder = folder->parent_path();
    }
    const QStringList before = folderWatcher.directories();
    if (!before.isEmpty()) {
        folderWatcher.removePaths(before);
    }
    if (folder) {
        folderWatcher.addPath(QFile::decodeName(folder->c_str()));
    }
}

void Shell::lookAtSound()
{
    DocumentScreen* screen = mainWindow->document();
    if (screen == nullptr) {
        return;
    }
    const auto& sink = rootScreen->sink();
    const bool isSilent = sink && !sink->isAudible() && !sink->description().empty();
    screen->setSoundLine(isSilent ? noSound : "");
}

void Shell::terminate()
{
    if (std::exchange(isTerminated, true)) {
        return;
    }
    if (soundTimer) {
        soundTimer->invalidate();
    }
    rootScreen->prepareForEnd();
    post(UIApplicationWillTerminateNotification);
    application.applicationWillTerminate();
}

} // namespace volvelle
