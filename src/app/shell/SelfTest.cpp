#include "app/shell/SelfTest.h"

#include "app/control/MIDIDocumentViewController.h"
#include "app/screens/Appearance.h"
#include "app/screens/BrowserScreen.h"
#include "app/screens/DocumentScreen.h"
#include "app/shell/Shell.h"
#include "base/Clock.h"
#include "base/MainQueue.h"
#include "base/RunLoop.h"
#include "base/Text.h"
#include "services/files/PrivateFolder.h"
#include "services/files/SafeFile.h"

#include <QApplication>
#include <QIcon>
#include <QPushButton>

#include <utility>
#include <vector>

namespace volvelle {

namespace {

// The clock of the main run loop for its lifetime.
struct TurnedClock : Clock {
    TurnedClock() { setMainRunLoopClock(this); }

    ~TurnedClock() override { setMainRunLoopClock(nullptr); }

    TurnedClock(const TurnedClock&) = delete;
    TurnedClock& operator=(const TurnedClock&) = delete;

    double now() const override { return time; }

    double time = 0.0;
};

// A sink that is pulled by hand.
struct TurnedSink : AudioSink {
    Result<> open(AudioSource& from) override
    {
        source = &from;
        return {};
    }

    void close() override { source = nullptr; }

    std::string description() const override { return "Turned by hand"; }

    bool isAudible() const override { return true; }

    void pull(int frames)
    {
        left.resize(static_cast<std::size_t>(frames));
        right.resize(left.size());
        if (source != nullptr) {
            source->render(left.data(), right.data(), frames);
        }
    }

    AudioSource* source = nullptr;
    std::vector<float> left, right;
};

class Road {
public:
    using Before = std::function<void(std::string_view step, Shell& shell)>;

    explicit Road(Before told)
        : before(std::move(told)), sink(std::make_shared<TurnedSink>()), shell(options(sink))
    {
        shell.launch({});
    }

    std::string walk()
    {
        before("New", shell);
        shell.root().createDocument();
        settle();
        if (document() == nullptr) {
            return "New opened no document.";
        }
        playToTheEnd();
        press("Generate");
        const auto made = shell.root().documentViewController->document()->data;
        const auto file = shell.root().documentViewController->document()->fileURL();
        if (!shell.root().documentViewController->isPlaying()) {
            return "Generate did not play.";
        }
        playToTheEnd();
        press("Save");
        std::vector<std::uint8_t> saved;
        if (document() != nullptr || readFile(file, saved) != noErr || saved != made) {
            return "Save did not write what was made.";
        }
        before("Open", shell);
        shell.root().pickSelection();
        settle();
        if (document() == nullptr || shell.root().documentViewController->document()->data != saved) {
            return "The document that was saved did not open again.";
        }
        press("Done");
        shell.root().stopEngine();
        settle();
        return document() == nullptr ? "" : "Done did not leave the document.";
    }

private:
    static Shell::Options options(const std::shared_ptr<TurnedSink>& to)
    {
        return {[to] { return to; }, {}, "", false};
    }

    DocumentScreen* document() { return shell.window().document(); }

    static void settle()
    {
        mainRunLoop().turn();
        QApplication::processEvents();
    }

    void press(const char* name)
    {
        before(name, shell);
        DocumentScreen* const screen = document();
        for (QPushButton* button :
             screen == nullptr ? QList<QPushButton*>() : screen->findChildren<QPushButton*>()) {
            if (button->text() == name && !button->isHidden()) {
                button->click();
                break;
            }
        }
        settle();
    }

    void playToTheEnd()
    {
        constexpr double longest = 60.0; // seconds
        for (double time = 0.0; time < longest && shell.root().documentViewController->isPlaying();
             time += step) {
            sink->pull(static_cast<int>(step * AudioSource::sampleRate));
            clock.time += step;
            settle();
        }
    }

    static constexpr double step = 0.03; // seconds, of the transport's timer

    const Before before;
    TurnedClock clock;
    std::shared_ptr<TurnedSink> sink;
    Shell shell;
};

} // namespace

std::string iconFault()
{
    return QIcon(":/icon.svg").pixmap(64).isNull() ? "The icon cannot be painted." : "";
}

std::string walkRoad(const std::function<void(std::string_view step, Shell& shell)>& before)
{
    return Road(before).walk();
}

int runSelfTest(CommandOutput& output)
{
    const PrivateFolder home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME",
                             "XDG_RUNTIME_DIR"}) {
        qputenv(name, home.path().c_str());
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*=false");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    int count = 1;
    char name[] = "volvelle";
    char* arguments[] = {name, nullptr};
    const QApplication application(count, arguments);
    Appearance::shared().apply(Theme::dark);
    std::string fault = iconFault();
    if (fault.empty()) {
        fault = walkRoad([](std::string_view, Shell&) {});
    }
    if (!fault.empty()) {
        return output.failure(concat("The self-test failed: ", fault));
    }
    output.result("passed");
    return exitDone;
}

} // namespace volvelle
