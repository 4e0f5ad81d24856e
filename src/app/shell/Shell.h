#pragma once

#include "app/control/AppDelegate.h"
#include "app/control/BrowserSceneDelegate.h"
#include "app/control/DocumentBrowserViewController.h"
#include "app/screens/MainWindow.h"
#include "app/screens/Thumbnails.h"
#include "app/shell/MediaPlayer.h"
#include "app/shell/SleepWatch.h"
#include "base/Timer.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <memory>

namespace volvelle {

// The application once it runs: its window, its root screen, and what stands around them. [main]
class Shell : public QObject {
public:
    struct Options {
        std::function<std::shared_ptr<AudioSink>()> makeSink; // what the engine plays into
        std::filesystem::path thumbnails;                     // where tiles are kept; empty: nowhere
        std::string helpSite;                                 // the maker's; empty for none
        bool hasRemoteControl = true;
    };

    // The sound device, the cache folder and what the settings say.
    static Options usualOptions();

    explicit Shell(Options given);
    ~Shell() override;

    // Launches, connects the scene with these files, the first of which is opened, and shows the window.
    void launch(const QStringList& files);

    // Files that another start handed over; none brings the window to the front.
    void receive(const QStringList& files);

    MainWindow& window() { return *mainWindow; }

    DocumentBrowserViewController& root() { return *rootScreen; }

private:
    void connectSystem();
    void tellPlayer();
    void watchFolder();
    void followFolder();
    void lookAtSound();
    void terminate();

    const Options options;
    std::unique_ptr<Thumbnails> thumbnails;
    std::unique_ptr<MainWindow> mainWindow;
    std::shared_ptr<DocumentBrowserViewController> rootScreen;
    std::shared_ptr<UIWindow> scene;
    std::shared_ptr<UISceneSession> session;
    std::shared_ptr<MediaPlayer> player;
    AppDelegate application;
    BrowserSceneDelegate sceneDelegate;
    SleepWatch sleepWatch;
    QFileSystemWatcher folderWatcher;
    QTimer folderTimer;
    std::shared_ptr<Timer> soundTimer;
    bool isTerminated = false;
};

} // namespace volvelle
