#include "app/control/AppDelegate.h"

#include "app/document/DocumentBrowser.h"
#include "base/Console.h"
#include "base/Text.h"
#include "services/audiodevice/AVAudioSession.h"

namespace volvelle {

namespace {

constexpr double preferredRate = 48000.0; // Hz

Result<> setUpAudioSession()
{
    AVAudioSession& session = AVAudioSession::sharedInstance();
    auto done = session.setCategory(AVAudioSessionCategoryPlayback, 0);
    if (done) {
        done = session.setPreferredSampleRate(preferredRate);
    }
    if (done) {
        done = session.setActive(true, 0);
    }
    return done;
}

} // namespace

bool AppDelegate::applicationDidFinishLaunching()
{
    if (const auto done = setUpAudioSession()) {
        UIApplication::sharedApplication().beginReceivingRemoteControlEvents();
    } else {
        directPrint("AppDelegate::application() : Error: ", done.error());
    }
    return true;
}

void AppDelegate::applicationWillTerminate()
{
    if (const auto browser = browserViewController.lock()) {
        browser->stopEngine();
    }
    if (const auto done = AVAudioSession::sharedInstance().setActive(false, 0); !done) {
        directPrint("AppDelegate::applicationWillTerminate() : Error: ", done.error());
        return;
    }
    UIApplication::sharedApplication().endReceivingRemoteControlEvents();
}

} // namespace volvelle
