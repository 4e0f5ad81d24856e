#include "app/shell/Shell.h"
#include "app/shell/RunLoopBridge.h"
#include "base/Paths.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/ProjectFolders.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
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

    void launch(const QStringList& files = {})
    {
        shell =
            std::make_unique<Shell>(Shell::Options{[] { return std::make_shared<NoSink>(); }, {}, "", false});
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
