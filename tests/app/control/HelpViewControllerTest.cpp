#include "tests/app/control/ScreenFixture.h"

namespace volvelle::test {

namespace {

class HelpViewControllerTest : public testing::Test {
protected:
    Lines shownBy(const std::string& identifier)
    {
        help->prepareInfo(identifier);
        help->viewWillAppear(true);
        EXPECT_EQ(view->calls, Lines{});
        console.take();
        return std::exchange(view->calls, {});
    }

    NavigationPolicy response(const std::string& url) { return help->webViewDecidePolicyForResponse(url); }

    ConsoleCapture console;
    PhraseLibrary library; // the resources
    const std::string manual = library.at("/manual.pdf");
    const std::string page = library.at("/help.html");
    std::shared_ptr<FakeWebView> view = std::make_shared<FakeWebView>();
    std::shared_ptr<HelpViewController> help = HelpViewController::make(
        [this](HelpViewController& screen) { screen.webView = view; }, "https://maker.example/");
};

void write(const std::string& file, const std::string& content)
{
    ASSERT_EQ(replaceFile(file, std::vector<std::uint8_t>(content.begin(), content.end()), true), noErr);
}

TEST_F(HelpViewControllerTest, TheScreenAnswersItsWebViewWhileItLives)
{
    EXPECT_EQ(help->identifier, "showHelp");
    EXPECT_EQ(view->asked, nullptr);
    help->loadViewIfNeeded();
    EXPECT_EQ(view->asked, help.get());
    help.reset();
    EXPECT_EQ(view->asked, nullptr);
}

TEST_F(HelpViewControllerTest, EachIdentifierShowsItsOwnAfterTheCall)
{
    help->loadViewIfNeeded();
    write(manual, "pdf");
    EXPECT_EQ(shownBy("showHelp"), Lines{"file " + manual});
    EXPECT_EQ(shownBy("showInfo"), Lines{"site https://maker.example/"});
    EXPECT_EQ(shownBy("showDocument"), Lines{});
    help->documentURL = "/some/idea.pdf";
    EXPECT_EQ(shownBy("showDocument"), Lines{"file /some/idea.pdf"});
    EXPECT_EQ(shownBy("showNothing"), Lines{});
}

TEST_F(HelpViewControllerTest, WithoutASiteNothingIsShown)
{
    help = HelpViewController::make([this](HelpViewController& screen) { screen.webView = view; }, "");
    help->loadViewIfNeeded();
    EXPECT_EQ(shownBy("showInfo"), Lines{});
}

TEST_F(HelpViewControllerTest, AMissingManualIsFatal)
{
    help->viewWillAppear(true);
    EXPECT_STOP(mainQueue().drain(), "Unexpectedly found nil while unwrapping an Optional value");
    write(manual, "pdf");
    mainQueue().drain();
}

TEST_F(HelpViewControllerTest, AWebViewThatIsGoneIsNotAsked)
{
    write(manual, "pdf");
    help->loadViewIfNeeded();
    view.reset();
    for (const std::string identifier : {"showHelp", "showInfo", "showDocument"}) {
        help->prepareInfo(identifier);
        help->viewWillAppear(true);
        mainQueue().drain();
    }
    EXPECT_TRUE(help->webView.expired());
}

TEST_F(HelpViewControllerTest, ThePageIsShownWithItsPlace)
{
    help->loadViewIfNeeded();
    write(page, "<p>é</p>");
    help->loadHelpHtml();
    EXPECT_EQ(view->calls, Lines{"html <p>é</p> at " + page});
}

TEST_F(HelpViewControllerTest, APageThatCannotBeReadIsTold)
{
    help->loadViewIfNeeded();
    help->loadHelpHtml();
    EXPECT_EQ(view->calls, Lines{});
    EXPECT_EQ(console.take(), Lines{"'help.html' could not be read. Status: -43"});
}

TEST_F(HelpViewControllerTest, ExitDismissesTheScreen)
{
    const auto host = std::make_shared<FakeHost>();
    const auto root = std::make_shared<UIViewController>();
    root->host = host;
    help->prepareInfo("showInfo");
    root->present(help, true, {});
    help->onButtonExit();
    console.take();
    EXPECT_EQ(host->calls, (Lines{"show help animated", "hide help animated"}));
    EXPECT_FALSE(help->isUp());
}

TEST_F(HelpViewControllerTest, EveryActionIsAllowedAndTold)
{
    EXPECT_EQ(help->webViewDecidePolicyForAction("https://a.example/b.zip"), NavigationPolicy::allow);
    EXPECT_EQ(console.take(), Lines{"navigationAction: https://a.example/b.zip"});
}

TEST_F(HelpViewControllerTest, AResponseIsAllowedByTheEndingOfItsPath)
{
    for (const std::string url :
         {"https://a.example", "https://a.example/", "https://a.example/b", "https://a.example/b.pdf",
          "https://a.example/b.Html", "file:///c/manual.PDF", "https://a.example/b?c=d.png",
          "https://a.example/b.c/d#e.zip", "about:blank"}) {
        EXPECT_EQ(response(url), NavigationPolicy::allow) << url;
        EXPECT_EQ(console.take(), Lines{"navigationResponse: " + url});
    }
    for (const std::string url :
         {"https://a.example/b.htm", "https://a.example/b.png", "https://a.example/b.html.zip",
          "https://a.example/b.mid?c=d.html", "file:///c/d.txt#e.pdf"}) {
        EXPECT_EQ(response(url), NavigationPolicy::cancel) << url;
        EXPECT_EQ(console.take(), Lines{"navigationResponse: " + url});
    }
}

TEST_F(HelpViewControllerTest, ALinkNeverGetsAWindow)
{
    EXPECT_FALSE(help->webViewCreateWebView("https://a.example/"));
    EXPECT_EQ(console.take(), Lines{"createWebViewWith:https://a.example/"});
}

} // namespace

} // namespace volvelle::test
