#include "app/control/AppDelegate.h"
#include "services/audiodevice/AVAudioSession.h"
#include "tests/app/control/ScreenFixture.h"

namespace volvelle::test {

namespace {

class FakeRemote : public RemoteControl {
public:
    Lines calls;

    void begin() override { calls.emplace_back("begin"); }

    void end() override { calls.emplace_back("end"); }
};

class AppDelegateTest : public LogicScreens {
protected:
    AppDelegateTest() { UIApplication::sharedApplication().remoteControl = remote; }

    ~AppDelegateTest() override
    {
        UIApplication::sharedApplication().remoteControl = nullptr;
        for (const char* operation : {"setCategory", "setPreferredSampleRate", "setActive"}) {
            session.setFailure(operation, "");
        }
    }

    AVAudioSession& session = AVAudioSession::sharedInstance();
    std::shared_ptr<FakeRemote> remote = std::make_shared<FakeRemote>();
    AppDelegate application;
};

TEST_F(AppDelegateTest, TheStartSetsUpTheSessionAndTheRemoteControl)
{
    EXPECT_EQ(application.window, nullptr);
    EXPECT_TRUE(application.applicationDidFinishLaunching());
    EXPECT_EQ(session.category(), AVAudioSessionCategoryPlayback);
    EXPECT_EQ(session.sampleRate(), 48000.0);
    EXPECT_TRUE(session.isActive());
    EXPECT_EQ(remote->calls, Lines{"begin"});
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(AppDelegateTest, AStepThatFailsLeavesOutTheOthersAndTheProgramGoesOn)
{
    for (const std::string step : {"setCategory", "setPreferredSampleRate", "setActive"}) {
        EXPECT_TRUE(session.setActive(false, 0));
        session.setFailure(step, "No " + step + ".");
        EXPECT_TRUE(application.applicationDidFinishLaunching());
        session.setFailure(step, "");
        EXPECT_EQ(console.take(), Lines{"AppDelegate::application() : Error: No " + step + "."});
        EXPECT_FALSE(session.isActive());
        EXPECT_EQ(remote->calls, Lines{});
    }
}

TEST_F(AppDelegateTest, TheEndStopsTheEngineAndTheSession)
{
    makeRoot();
    EXPECT_TRUE(session.setActive(true, 0));
    application.applicationWillTerminate();
    EXPECT_EQ(sink->source, nullptr);
    EXPECT_FALSE(session.isActive());
    EXPECT_EQ(remote->calls, Lines{"end"});
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(AppDelegateTest, WithoutARootScreenTheEndStopsTheSession)
{
    EXPECT_TRUE(session.setActive(true, 0));
    application.applicationWillTerminate();
    EXPECT_FALSE(session.isActive());
    EXPECT_EQ(remote->calls, Lines{"end"});
}

TEST_F(AppDelegateTest, ASessionThatDoesNotEndIsTold)
{
    session.setFailure("setActive", "It is busy.");
    application.applicationWillTerminate();
    EXPECT_EQ(console.take(), Lines{"AppDelegate::applicationWillTerminate() : Error: It is busy."});
    EXPECT_EQ(remote->calls, Lines{});
}

TEST_F(AppDelegateTest, TheOtherCallsDoNothing)
{
    application.applicationWillResignActive();
    application.applicationDidEnterBackground();
    application.applicationWillEnterForeground();
    application.applicationDidBecomeActive();
    UIApplication::sharedApplication().remoteControl = nullptr;
    UIApplication::sharedApplication().beginReceivingRemoteControlEvents();
    UIApplication::sharedApplication().endReceivingRemoteControlEvents();
    EXPECT_EQ(remote->calls, Lines{});
    EXPECT_EQ(console.take(), Lines{});
}

} // namespace

} // namespace volvelle::test
