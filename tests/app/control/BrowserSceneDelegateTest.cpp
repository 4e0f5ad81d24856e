#include "app/control/BrowserSceneDelegate.h"
#include "app/control/DocumentCheck.h"
#include "tests/app/control/ScreenFixture.h"
#include "tests/support/AllocationCount.h"

#include <sys/stat.h>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

class BrowserSceneDelegateTest : public LogicScreens {
protected:
    BrowserSceneDelegateTest() { scene.window = std::make_shared<UIWindow>(UIWindow{makeRoot()}); }

    ~BrowserSceneDelegateTest() override { UIApplication::sharedApplication().openSessions.clear(); }

    BrowserSceneDelegate scene;
    std::shared_ptr<UISceneSession> session = std::make_shared<UISceneSession>();
    const fs::path foreign = folder.write("Other.mid", smallFile());
};

TEST_F(BrowserSceneDelegateTest, ASessionIsMarkedAndFound)
{
    auto& sessions = UIApplication::sharedApplication().openSessions;
    EXPECT_EQ(BrowserSceneDelegate::browserSceneSession(), nullptr);
    const auto other = std::make_shared<UISceneSession>();
    other->userInfo.emplace().emplace("other", "x");
    sessions = {other};
    EXPECT_EQ(BrowserSceneDelegate::browserSceneSession(), nullptr);
    scene.sceneWillConnectTo(session, {});
    sessions.push_back(session);
    ASSERT_TRUE(session->userInfo);
    EXPECT_EQ(session->userInfo->size(), 1U);
    EXPECT_EQ(session->userInfo->at("browser"), "main browser");
    EXPECT_EQ(BrowserSceneDelegate::browserSceneSession(), session);
    EXPECT_EQ(host->calls, Lines{});
}

TEST_F(BrowserSceneDelegateTest, ASessionWithoutInformationIsFatal)
{
    UIApplication::sharedApplication().openSessions = {session};
    EXPECT_STOP(BrowserSceneDelegate::browserSceneSession(),
                "Unexpectedly found nil while unwrapping an Optional value");
}

TEST_F(BrowserSceneDelegateTest, AFileAtLaunchIsPresentedInItsPlace)
{
    scene.sceneWillConnectTo(session, {{foreign, true}, {"/second.mid", true}});
    EXPECT_EQ(up()->document()->fileURL(), foreign);
    EXPECT_TRUE(up()->isUp());
    EXPECT_FALSE(fs::exists(documents));
}

TEST_F(BrowserSceneDelegateTest, AFileOfTheFolderIsSelectedToo)
{
    const fs::path file = writeDocument("Slow tide.mid");
    scene.sceneOpenURLContexts({{file, true}});
    EXPECT_EQ(root->selection(), file);
    EXPECT_EQ(up()->document()->fileURL(), file);
}

TEST_F(BrowserSceneDelegateTest, AFileThatIsNotToBeOpenedInPlaceIsCopied)
{
    scene.sceneOpenURLContexts({{foreign, false}});
    EXPECT_EQ(up()->document()->fileURL(), documents / "Other.mid");
    EXPECT_EQ(root->selection(), documents / "Other.mid");
    EXPECT_EQ(bytesOf(documents / "Other.mid"), smallFile());
}

TEST_F(BrowserSceneDelegateTest, ACopyThatFailsIsToldAndShowsNothing)
{
    const fs::path garbage = folder.write("Garbage.mid", "no music");
    scene.sceneOpenURLContexts({{garbage, false}});
    EXPECT_EQ(console.take(), Lines{"Failed to reveal the document at " + garbage.string() +
                                    " : 'Garbage' is not a MIDI file."});
    EXPECT_EQ(host->calls, Lines{});
    EXPECT_EQ(host->alerts.size(), 0U);
    EXPECT_EQ(root->documentViewController, nullptr);
}

TEST_F(BrowserSceneDelegateTest, InItsPlaceOnlyMusicIsOpened)
{
    const fs::path garbage = folder.write("Garbage.mid", "no music");
    const fs::path pipe = folder.path / "Pipe.mid";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    Lines lines; // at each change
    root->onBrowserChanged = [&] { lines.push_back(root->quietLine()); };
    for (const auto& [file, told] : std::vector<std::pair<fs::path, std::string>>{
             {garbage, "'Garbage' is not a MIDI file."},
             {pipe, "'Pipe' is not a file."},
             {folder.path, "'" + folder.path.filename().string() + "' is not a file."},
             {folder.path / "Gone.mid", "'Gone' does not exist."}}) {
        scene.sceneOpenURLContexts({{file, true}});
        EXPECT_EQ(root->quietLine(), told);
        EXPECT_EQ(lines.back(), told);
        EXPECT_FALSE(root->isPresenting);
    }
    EXPECT_EQ(host->alerts.size(), 0U);
    root->tellQuietly("");
    root->tellQuietly("");
    EXPECT_EQ(lines.size(), 5U);
    EXPECT_EQ(host->calls, Lines{});
    EXPECT_EQ(bytesOf(garbage), std::vector<std::uint8_t>({'n', 'o', ' ', 'm', 'u', 's', 'i', 'c'}));
}

TEST_F(BrowserSceneDelegateTest, AFileThatTheMemoryCannotHoldIsNoDocument)
{
    std::size_t count = 0;
    {
        const AllocationCount allocations;
        ASSERT_TRUE(checkDocument(foreign));
        count = allocations.count;
    }
    std::optional<Result<>> checked;
    {
        const AllocationCount allocations(count - 1);
        checked = checkDocument(foreign);
    }
    EXPECT_EQ(checked->error(), "'Other' is too large.");
}

TEST_F(BrowserSceneDelegateTest, AFileThatIsGoneBeforeItIsReadIsTold)
{
    const fs::path file = writeDocument("Slow tide.mid");
    root->onBrowserChanged = [&file] { fs::remove(file); };
    scene.sceneOpenURLContexts({{file, true}});
    EXPECT_EQ(root->quietLine(), "'" + file.string() + "' could not be read: it does not exist.");
    EXPECT_FALSE(root->isPresenting);
    EXPECT_EQ(host->calls, Lines{});
    EXPECT_EQ(host->alerts.size(), 0U);
}

TEST_F(BrowserSceneDelegateTest, WhileADocumentIsUpFilesWaitAndNothingIsCopied)
{
    root->presentDocument(writeDocument("Slow tide.mid"));
    screenLines();
    scene.sceneOpenURLContexts({{foreign, false}});
    scene.sceneOpenURLContexts({{foreign, true}});
    EXPECT_EQ(screenLines(), (Lines{warning, warning}));
    EXPECT_FALSE(fs::exists(documents / "Other.mid"));
    EXPECT_EQ(root->waitingDocuments(), (std::vector<UIOpenURLContext>{{foreign, false}, {foreign, true}}));
    scene.sceneOpenURLContexts({});
    EXPECT_EQ(host->alerts.size(), 0U);
}

TEST_F(BrowserSceneDelegateTest, ARootThatIsNoBrowserIsFatal)
{
    const std::string message = "*** The root view is not a document browser ***";
    scene.window->rootViewController = std::make_shared<UIViewController>();
    EXPECT_STOP(scene.sceneOpenURLContexts({{foreign, true}}), message);
    scene.window.reset();
    EXPECT_STOP(scene.sceneOpenURLContexts({{foreign, true}}), message);
}

} // namespace

} // namespace volvelle::test
