#pragma once

#include "app/control/DocumentBrowserViewController.h"
#include "app/screens/BrowserScreen.h"
#include "app/screens/DocumentScreen.h"
#include "app/screens/MainWindow.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/HandClock.h"
#include "tests/support/TemporaryFolder.h"

#include <QAbstractButton>
#include <QListView>
#include <QTest>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace volvelle::test {

// A sink that is pulled by hand.
class HandSink : public AudioSink {
public:
    Result<> open(AudioSource& from) override
    {
        source = &from;
        return {};
    }

    void close() override { source = nullptr; }

    std::string description() const override { return "By hand"; }

    bool isAudible() const override { return isHeard; }

    void pull(double seconds);

    bool isHeard = true;

private:
    AudioSource* source = nullptr;
};

// A trash that is a folder.
class FolderTrash : public TrashCan {
public:
    Result<std::filesystem::path> take(const std::filesystem::path& file) override;
    Result<> restore(const std::filesystem::path& place, const std::filesystem::path& file) override;

    TemporaryFolder folder;
};

// The window with a root screen over a home folder of its own, on a clock that is turned by hand.
class Screens : public testing::Test {
protected:
    Screens();
    ~Screens() override;

    // Three notes in the documents folder, as old as told, in seconds.
    std::filesystem::path writeIdea(const std::string& name, int age = 0) const;

    // Makes the root screen and shows the window.
    void open();

    // Runs what waits, in the main queue and in Qt's.
    static void settle();

    // Lets music and clock go on.
    void goOn(double seconds);
    void playToTheEnd();

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;

    // The control with this text on a screen, null for none that is seen.
    static QAbstractButton* button(const QWidget& screen, const QString& text);
    void press(const QString& text) const;

    DocumentScreen* document() const { return window->document(); }

    BrowserScreen& browser() const { return *window->browser(); }

    QListView& tiles() const { return *browser().findChild<QListView*>(); }

    // The names of the tiles, and the selected one.
    std::vector<std::string> names() const;
    std::string selected() const;

    bool isPlaying() const;

    // The line below the screens, empty for none.
    std::string notice() const;

    // "TITLE: MESSAGE" of the alert that is up, empty for none.
    static std::string alert();

    HandClock clock;
    TemporaryFolder home;
    ConsoleCapture console;
    const std::filesystem::path folder = home.path / "Documents/Volvelle";
    std::shared_ptr<HandSink> sink = std::make_shared<HandSink>();
    std::shared_ptr<FolderTrash> trash = std::make_shared<FolderTrash>();
    Thumbnails thumbnails{home.path / "tiles"};
    std::unique_ptr<MainWindow> window;
    std::shared_ptr<DocumentBrowserViewController> root;
};

} // namespace volvelle::test
