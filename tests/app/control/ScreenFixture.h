#pragma once

#include "app/control/DocumentBrowserViewController.h"
#include "app/control/HelpViewController.h"
#include "base/MainQueue.h"
#include "base/Text.h"
#include "services/files/SafeFile.h"
#include "tests/app/document/MIDIDocumentFixture.h"
#include "tests/support/HandClock.h"
#include "tests/support/Stops.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace volvelle::test {

using Lines = std::vector<std::string>;

// Pulls when a test says so.
class MeasuringSink : public AudioSink {
public:
    AudioSource* source = nullptr;
    std::string failed; // of opening; empty for none

    Result<> open(AudioSource& from) override
    {
        if (!failed.empty()) {
            return failure(failed);
        }
        source = &from;
        return {};
    }

    void close() override { source = nullptr; }

    std::string description() const override { return "by hand"; }

    bool isAudible() const override { return source != nullptr; }

    // The greatest sample of the left side.
    float render(double seconds) const
    {
        constexpr int block = 480;
        std::vector<float> left(block);
        std::vector<float> right(block);
        float greatest = 0.0F;
        for (int blocks = static_cast<int>(seconds * 100.0); blocks > 0 && source != nullptr; --blocks) {
            source->render(left.data(), right.data(), block);
            greatest = std::max(greatest, std::ranges::max(left));
        }
        return greatest;
    }
};

class FakeButton : public UIButton {
public:
    bool isHidden = false;

    void setHidden(bool value) override { isHidden = value; }
};

class FakeLabel : public UILabel {
public:
    std::string shown;

    void setText(const std::string& value) override { shown = value; }
};

// Notes what it is asked to show, as lines.
class FakeWebView : public WebView {
public:
    Lines calls;
    WebViewDelegate* asked = nullptr;

    void setDelegate(WebViewDelegate* delegate) override { asked = delegate; }

    void loadRequest(const std::filesystem::path& file) override { calls.push_back("file " + file.string()); }

    void loadSite(const std::string& url) override { calls.push_back("site " + url); }

    void loadHTMLString(const std::string& html, const std::filesystem::path& base) override
    {
        calls.push_back("html " + html + " at " + base.string());
    }
};

// Notes what comes and goes as lines, and keeps the alerts until a button is pressed.
class FakeHost : public ScreenHost {
public:
    Lines calls;
    std::vector<UIAlertController> alerts;
    bool holds = false; // what is to be called once a screen is up or gone
    std::vector<std::function<void()>> held;

    void show(const std::shared_ptr<UIViewController>& screen, bool animated,
              std::function<void()> shown) override
    {
        note("show ", *screen, animated, std::move(shown));
    }

    void hide(const std::shared_ptr<UIViewController>& screen, bool animated,
              std::function<void()> hidden) override
    {
        note("hide ", *screen, animated, std::move(hidden));
    }

    void showAlert(const UIAlertController& alert) override { alerts.push_back(alert); }

    void release()
    {
        for (const auto& call : std::exchange(held, {})) {
            call();
        }
    }

    // "TITLE: MESSAGE [BUTTON, BUTTON]" of the alerts that are up.
    Lines alertTexts() const
    {
        Lines texts;
        for (const auto& alert : alerts) {
            Lines titles;
            for (const auto& action : alert.actions) {
                titles.push_back(action.title);
            }
            texts.push_back(concat(alert.title, ": ", alert.message, " ", text(titles)));
        }
        return texts;
    }

    // Presses a button of the alert that came last.
    void press(const std::string& title)
    {
        ASSERT_FALSE(alerts.empty());
        const UIAlertController alert = alerts.back();
        alerts.pop_back();
        const auto action = std::ranges::find(alert.actions, title, &UIAlertAction::title);
        ASSERT_NE(action, alert.actions.end());
        if (action->handler) {
            action->handler();
        }
    }

private:
    void note(const char* what, const UIViewController& screen, bool animated, std::function<void()> done)
    {
        const bool isHelp = dynamic_cast<const HelpViewController*>(&screen) != nullptr;
        calls.push_back(concat(what, isHelp ? "help" : "document", animated ? " animated" : ""));
        if (!done) {
            return;
        }
        if (holds) {
            held.push_back(std::move(done));
        } else {
            done();
        }
    }
};

// A screen of a document with all its parts.
inline std::shared_ptr<MIDIDocumentViewController> makeDocumentScreen()
{
    return MIDIDocumentViewController::make([](MIDIDocumentViewController& screen) {
        screen.contentView = std::make_shared<MIDICircleView>();
        screen.labelFile = std::make_shared<FakeLabel>();
        for (auto* button :
             {&screen.buttonDone, &screen.buttonGenerate, &screen.buttonSave, &screen.buttonPlay}) {
            *button = std::make_shared<FakeButton>();
        }
    });
}

class FakeStoryboard : public UIStoryboard {
public:
    std::shared_ptr<FakeWebView> web = std::make_shared<FakeWebView>();
    std::weak_ptr<HelpViewController> help; // the last one

    std::shared_ptr<UIViewController> instantiateViewController(const std::string& identifier) override
    {
        if (identifier == "MIDIDocumentViewController") {
            return makeDocumentScreen();
        }
        if (identifier != "showHelp" && identifier != "showInfo") {
            return nullptr;
        }
        const auto made = HelpViewController::make(
            [view = web](HelpViewController& screen) { screen.webView = view; }, "https://maker.example/");
        help = made;
        return made;
    }
};

// A folder that files are moved to.
class FakeTrash : public TrashCan {
public:
    TemporaryFolder folder;
    std::string failed; // of both; empty for none

    Result<std::filesystem::path> take(const std::filesystem::path& file) override
    {
        const std::filesystem::path place = folder.path / concat(++count, ".mid");
        return moved(file, place) ? Result<std::filesystem::path>(place) : failure(failed);
    }

    Result<> restore(const std::filesystem::path& place, const std::filesystem::path& file) override
    {
        return moved(place, file) ? Result<>() : failure(failed);
    }

private:
    bool moved(const std::filesystem::path& from, const std::filesystem::path& to)
    {
        std::error_code error;
        if (!failed.empty()) {
            return false;
        }
        std::filesystem::rename(from, to, error);
        return !error;
    }

    int count = 0;
};

// The root screen over a home folder of its own, a small phrase library, and a host that shows nothing.
class LogicScreens : public MIDIDocuments {
protected:
    LogicScreens()
    {
        setenv("HOME", home.path.c_str(), 1);
        setenv("XDG_CONFIG_HOME", (home.path / ".config").c_str(), 1);
    }

    ~LogicScreens() override
    {
        browserViewController.reset();
        unsetenv("XDG_CONFIG_HOME");
    }

    BrowserServices services()
    {
        return {storyboard, [this] { return sink; }, [this](const std::string& url) { sites.push_back(url); },
                "https://maker.example/help", trash};
    }

    std::shared_ptr<DocumentBrowserViewController> makeRoot()
    {
        root = DocumentBrowserViewController::make(services());
        root->host = host;
        root->loadViewIfNeeded();
        console.take();
        return root;
    }

    // A file of three notes in the documents folder, of two and a half beats.
    std::filesystem::path writeDocument(const std::string& name) const
    {
        return home.write(std::filesystem::path("Documents/Volvelle") / name, smallFile());
    }

    static std::vector<std::uint8_t> bytesOf(const std::filesystem::path& file)
    {
        std::vector<std::uint8_t> bytes;
        EXPECT_EQ(readFile(file, bytes), noErr) << file;
        return bytes;
    }

    // What the screens wrote, with the transport's lines and the names that a screen shows.
    Lines screenLines()
    {
        Lines lines = console.take();
        std::erase_if(lines, [](const std::string& line) {
            return std::ranges::none_of(
                Lines{"DocumentBrowserViewController", "MIDIDocumentViewController", "MIDISequencer::st",
                      "sequencer ", "Message: ", "viewController:", "ViewController:", "Slow tide", "Other",
                      "New MIDI Idea", "Unknown"},
                [&line](const std::string& start) { return line.starts_with(start); });
        });
        return lines;
    }

    std::shared_ptr<MIDIDocumentViewController> up() const { return root->documentViewController; }

    static bool isHidden(const std::shared_ptr<UIButton>& button)
    {
        return std::static_pointer_cast<FakeButton>(button)->isHidden;
    }

    // "Play Save Generate" of the buttons that are away.
    std::string hiddenButtons() const
    {
        return concat(isHidden(up()->buttonPlay) ? "Play " : "", isHidden(up()->buttonSave) ? "Save " : "",
                      isHidden(up()->buttonGenerate) ? "Generate " : "",
                      isHidden(up()->buttonDone) ? "Done " : "");
    }

    // Lets the music and the clock go on.
    void goOn(double seconds)
    {
        for (double done = 0.0; done < seconds; done += 0.1) {
            sink->render(0.1);
            clock.advance(0.1);
        }
    }

    static std::string told(const std::string& rest) { return "DocumentBrowserViewController::" + rest; }

    HandClock clock;
    TemporaryFolder home;
    const std::filesystem::path documents = home.path / "Documents/Volvelle";
    std::shared_ptr<FakeHost> host = std::make_shared<FakeHost>();
    std::shared_ptr<FakeStoryboard> storyboard = std::make_shared<FakeStoryboard>();
    std::shared_ptr<FakeTrash> trash = std::make_shared<FakeTrash>();
    std::shared_ptr<MeasuringSink> sink = std::make_shared<MeasuringSink>();
    Lines sites;
    std::shared_ptr<DocumentBrowserViewController> root;

    const std::string warning =
        told("presentDocument() : Warning: There is already a view controller presenting. Canceling.");
};

} // namespace volvelle::test
