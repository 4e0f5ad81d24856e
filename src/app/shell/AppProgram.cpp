#include "app/shell/AppProgram.h"

#include "app/screens/Appearance.h"
#include "app/screens/FileAddress.h"
#include "app/shell/ColorScheme.h"
#include "app/shell/EndSignals.h"
#include "app/shell/OneInstance.h"
#include "app/shell/PictureCommand.h"
#include "app/shell/RunLoopBridge.h"
#include "app/shell/SelfTest.h"
#include "app/shell/SettingsFile.h"
#include "app/shell/Shell.h"
#include "base/Console.h"
#include "cli/CommandLine.h"
#include "services/audiodevice/RtAudioSink.h"
#include "services/settings/NSUserDefaults.h"

#include <QApplication>
#include <QIcon>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace volvelle {

namespace {

constexpr const char* applicationID = "com.orvane.Volvelle";
constexpr const char* appearanceKey = "appearance"; // "dark" or "light"; the desktop's choice without it

constexpr const char* notTaken = "The window that is open already did not take the files.";
constexpr const char* noDisplay = "There is no display: 'volvelle generate' writes an idea without one.";

// What Qt says while it looks for a display, which ends the process where there is none.
void tellNoDisplay(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*message*/)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", noDisplay);
        std::_Exit(exitFailed);
    }
}

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

// Where they stand for another process, too.
QStringList addressesOf(const std::vector<std::filesystem::path>& files)
{
    QStringList result;
    for (const auto& file : files) {
        std::error_code unknown;
        const auto place = std::filesystem::absolute(file, unknown);
        result << addressOf(unknown ? file : place);
    }
    return result;
}

void prepareApplication()
{
    QApplication::setApplicationName("volvelle");
    QApplication::setApplicationDisplayName("Volvelle");
    QApplication::setDesktopFileName(applicationID);
    QApplication::setWindowIcon(QIcon::fromTheme(applicationID, QIcon(":/icon.svg")));
    QApplication::setQuitOnLastWindowClosed(false);
}

// The theme that the user wants whatever the desktop does.
std::optional<Theme> chosenTheme()
{
    const auto name = NSUserDefaults::standardUserDefaults()->stringForKey(appearanceKey);
    if (name != "dark" && name != "light") {
        return std::nullopt;
    }
    return name == "dark" ? Theme::dark : Theme::light;
}

void followColorScheme(ColorScheme& scheme)
{
    if (const auto chosen = chosenTheme()) {
        Appearance::shared().apply(*chosen);
        return;
    }
    Appearance::shared().apply(scheme.theme());
    QObject::connect(&scheme, &ColorScheme::changed, &scheme,
                     [](Theme theme) { Appearance::shared().apply(theme); });
}

int runWindow(const AppOptions& options, CommandOutput& output)
{
    int count = 1;
    char name[] = "volvelle";
    char* arguments[] = {name, nullptr};
    RtAudioSink::prepare(); // before there are threads that read the environment
    const QtMessageHandler before = qInstallMessageHandler(tellNoDisplay);
    const QApplication application(count, arguments);
    qInstallMessageHandler(before);
    prepareApplication();
    const QStringList files = addressesOf(options.files);
    Shell* running = nullptr;
    QStringList early; // handed over before the shell is there
    OneInstance instance(OneInstance::usualName());
    const auto start = instance.begin(files, [&running, &early](const QStringList& more) {
        running != nullptr ? running->receive(more) : early.append(more);
    });
    if (start == OneInstance::Start::refused) {
        return output.failure(notTaken);
    }
    if (start == OneInstance::Start::handedOver) {
        return exitDone;
    }
    EndSignals::hold();
    NSUserDefaults::setStoreMaker(openSettings);
    ColorScheme scheme;
    followColorScheme(scheme);
    const RunLoopBridge bridge;
    Shell shell(Shell::usualOptions());
    running = &shell;
    shell.launch(files);
    if (!early.isEmpty()) {
        shell.receive(early);
    }
    // What is started from now on is a program of its own, however long this one takes to end.
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &instance,
                     [&instance] { instance.end(); });
    const EndSignals signals([] { QApplication::exit(); });
    return QApplication::exec();
}

int open(const AppOptions& options, CommandOutput& output)
{
    // A document outlives the reader of the lines, and a file that is too large is a failed write.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    if (options.isSelfTest) {
        return runSelfTest(output);
    }
    if (!hasDisplay()) {
        return output.failure(noDisplay);
    }
    StandardOutputSink sink;
    ConsoleSink* const before = console().setSink(output.isQuiet() ? nullptr : &sink);
    const int status = runWindow(options, output);
    console().setSink(before);
    return status;
}

} // namespace

int runApp(int argc, char** argv)
{
    return runCommandLine(argc, argv, {.picture = runPicture, .open = open});
}

} // namespace volvelle
