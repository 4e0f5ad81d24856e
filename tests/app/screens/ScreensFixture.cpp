#include "tests/app/screens/ScreensFixture.h"

#include "app/screens/Appearance.h"
#include "base/Paths.h"
#include "tests/support/ProjectFolders.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPdfWriter>

#include <chrono>
#include <cstdlib>

namespace volvelle::test {

namespace fs = std::filesystem;

namespace {

// A file of three notes of a beat each.
const std::vector<std::uint8_t> smallFile{
    0x4D, 0x54, 0x68, 0x64, 0,  0,    0,    6,   0,   0,    0,    1,  0,  96,   0x4D, 0x54, 0x72,
    0x6B, 0,    0,    0,    28, 0,    0x90, 60,  100, 96,   0x80, 60, 64, 0,    0x90, 64,   100,
    96,   0x80, 64,   64,   0,  0x90, 67,   100, 96,  0x80, 67,   64, 0,  0xFF, 0x2F, 0};

} // namespace

void HandSink::pull(double seconds)
{
    constexpr int block = 480;
    std::vector<float> left(block);
    std::vector<float> right(block);
    for (int blocks = static_cast<int>(seconds * 100.0); blocks > 0 && source != nullptr; --blocks) {
        source->render(left.data(), right.data(), block);
    }
}

Result<fs::path> FolderTrash::take(const fs::path& file)
{
    fs::rename(file, folder.path / file.filename());
    return folder.path / file.filename();
}

Result<> FolderTrash::restore(const fs::path& place, const fs::path& file)
{
    fs::rename(place, file);
    return {};
}

Screens::Screens()
{
    setenv("HOME", home.path.c_str(), 1);
    setenv("XDG_CONFIG_HOME", (home.path / ".config").c_str(), 1);
    setenv("XDG_STATE_HOME", (home.path / ".state").c_str(), 1);
    fs::create_directories(folder);
    const fs::path resources = home.path / "resources";
    fs::create_directories(resources);
    for (const char* name : {"Phrases", "Phrases2"}) {
        fs::create_directory_symlink(buildFolder() / "resources" / name, resources / name);
    }
    QPdfWriter manual(QString::fromStdString((resources / "manual.pdf").string()));
    QPainter(&manual).drawRect(0, 0, 100, 100);
    setResourcesFolder(resources);
    Appearance::shared().apply(Theme::dark);
}

Screens::~Screens()
{
    window.reset();
    root.reset();
    settle();
    browserViewController.reset();
    setResourcesFolder(std::nullopt);
}

fs::path Screens::writeIdea(const std::string& name, int age) const
{
    const fs::path file = home.write(fs::path("Documents/Volvelle") / name, smallFile);
    fs::last_write_time(file, fs::last_write_time(file) - std::chrono::seconds(age));
    return file;
}

void Screens::open()
{
    window = std::make_unique<MainWindow>("");
    BrowserServices services;
    services.storyboard = window->storyboard();
    services.makeSink = [this] { return sink; };
    services.trash = trash;
    root = DocumentBrowserViewController::make(services);
    root->host = window->host();
    root->loadViewIfNeeded();
    window->setRoot(root, thumbnails);
    window->show();
    window->activateWindow();
    settle();
}

void Screens::settle()
{
    mainRunLoop().turn();
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
}

void Screens::goOn(double seconds)
{
    constexpr double step = 0.03;
    for (double done = 0.0; done < seconds; done += step) {
        sink->pull(step);
        clock.advance(step);
    }
    settle();
}

void Screens::playToTheEnd()
{
    for (int turns = 0; turns < 200 && isPlaying(); ++turns) {
        goOn(0.3);
    }
    EXPECT_FALSE(isPlaying());
}

void Screens::key(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QWidget* const focused = window->focusWidget();
    QTest::keyClick(focused != nullptr ? focused : window.get(), key, modifiers);
    settle();
}

QAbstractButton* Screens::button(const QWidget& screen, const QString& text)
{
    for (QAbstractButton* button : screen.findChildren<QAbstractButton*>()) {
        if (button->text() == text && button->isVisible()) {
            return button;
        }
    }
    return nullptr;
}

void Screens::press(const QString& text) const
{
    QWidget* const dialog = QApplication::activeModalWidget();
    QAbstractButton* const found = button(dialog != nullptr ? *dialog : *window, text);
    ASSERT_NE(found, nullptr) << text.toStdString();
    QTest::mouseClick(found, Qt::LeftButton);
    settle();
}

std::vector<std::string> Screens::names() const
{
    std::vector<std::string> result;
    for (int row = 0; row < tiles().model()->rowCount(); ++row) {
        result.push_back(tiles().model()->index(row, 0).data().toString().toStdString());
    }
    return result;
}

std::string Screens::selected() const
{
    const QModelIndexList rows = tiles().selectionModel()->selectedIndexes();
    return rows.isEmpty() ? "" : rows.front().data().toString().toStdString();
}

bool Screens::isPlaying() const
{
    return root->documentViewController && root->documentViewController->isPlaying();
}

std::string Screens::notice() const
{
    const auto* bar = window->findChild<MessageBar*>();
    return bar->isVisible() ? bar->accessibleName().toStdString() : "";
}

std::string Screens::alert()
{
    const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return box == nullptr ? "" : (box->text() + ": " + box->informativeText()).toStdString();
}

} // namespace volvelle::test
