#include "tests/app/control/ScreenFixture.h"

namespace volvelle::test {

namespace {

// A screen that notes its life.
class NotedScreen : public UIViewController {
public:
    NotedScreen(std::string called, Lines& lines) : name(std::move(called)), calls(lines) {}

    void viewDidLoad() override { note("loaded"); }

    void viewWillAppear(bool animated) override { note(animated ? "appears animated" : "appears"); }

    void viewDidDisappear(bool animated) override { note(animated ? "is gone animated" : "is gone"); }

protected:
    void loadView() override { note("view"); }

private:
    void note(const char* what) { calls.push_back(name + " " + what); }

    std::string name;
    Lines& calls;
};

class UIViewControllerTest : public testing::Test {
protected:
    std::shared_ptr<NotedScreen> make(const std::string& name)
    {
        auto made = std::make_shared<NotedScreen>(name, calls);
        made->host = host;
        return made;
    }

    std::function<void()> note(const std::string& what)
    {
        return [this, what] { calls.push_back(what); };
    }

    Lines calls;
    std::shared_ptr<FakeHost> host = std::make_shared<FakeHost>();
    std::shared_ptr<NotedScreen> root = make("root");
    std::shared_ptr<NotedScreen> screen = make("screen");
    const Lines shown{"screen view", "screen loaded", "screen appears animated", "up"};
};

TEST_F(UIViewControllerTest, TheViewIsLoadedOnce)
{
    root->loadViewIfNeeded();
    root->loadViewIfNeeded();
    EXPECT_EQ(calls, (Lines{"root view", "root loaded"}));
}

TEST_F(UIViewControllerTest, AScreenAppearsAndDisappearsOnce)
{
    root->present(screen, true, note("up"));
    EXPECT_EQ(calls, shown);
    EXPECT_TRUE(screen->isUp());
    EXPECT_EQ(root->presentedViewController(), screen);
    calls.clear();
    screen->dismiss(true, note("down"));
    EXPECT_EQ(calls, (Lines{"screen is gone animated", "down"}));
    EXPECT_FALSE(screen->isUp());
    EXPECT_EQ(root->presentedViewController(), nullptr);
    calls.clear();
    screen->dismiss(true, note("down"));
    EXPECT_EQ(calls, Lines{"down"});
}

TEST_F(UIViewControllerTest, AHostThatTakesItsTimeIsWaitedFor)
{
    host->holds = true;
    root->present(screen, false, note("up"));
    EXPECT_EQ(calls.back(), "screen appears");
    host->release();
    EXPECT_EQ(calls.back(), "up");
    screen->dismiss(false, {});
    EXPECT_EQ(calls.back(), "up");
    EXPECT_FALSE(screen->isUp());
    host->release();
    EXPECT_EQ(calls.back(), "screen is gone");
}

TEST_F(UIViewControllerTest, WithoutAHostScreensComeAndGoUnseen)
{
    root->host.reset();
    root->present(screen, true, note("up"));
    EXPECT_EQ(calls, shown);
    screen->dismiss(false, {});
    EXPECT_EQ(calls.back(), "screen is gone");
    root->present(UIAlertController{"title", "message", {}});
    EXPECT_EQ(host->calls, Lines{});
}

TEST_F(UIViewControllerTest, WhatStandsAboveGoesToo)
{
    const auto above = make("above");
    root->present(screen, true, {});
    screen->present(above, true, {});
    calls.clear();
    screen->dismiss(true, note("down"));
    EXPECT_EQ(calls, (Lines{"above is gone", "screen is gone animated", "down"}));
    EXPECT_FALSE(above->isUp());
}

TEST_F(UIViewControllerTest, ASecondScreenAboveIsFatal)
{
    root->present(screen, true, {});
    EXPECT_STOP(root->present(make("above"), true, {}),
                "UIViewController::present() : Error: There is a screen above this one already.");
}

TEST_F(UIViewControllerTest, AScreenThatIsUpIsHeldByTheOneBelow)
{
    const std::weak_ptr<NotedScreen> seen = screen;
    root->present(std::exchange(screen, nullptr), true, {});
    EXPECT_FALSE(seen.expired());
    seen.lock()->dismiss(true, {});
    EXPECT_TRUE(seen.expired());
}

} // namespace

} // namespace volvelle::test
