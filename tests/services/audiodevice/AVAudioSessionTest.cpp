#include "services/audiodevice/AVAudioSession.h"

#include <gtest/gtest.h>

#include <limits>

namespace volvelle::test {

namespace {

TEST(AVAudioSession, KeepsWhatItIsAskedFor)
{
    AVAudioSession session;
    EXPECT_EQ(session.category(), "");
    EXPECT_EQ(session.sampleRate(), 48000.0);
    EXPECT_FALSE(session.isActive());
    EXPECT_TRUE(session.setCategory(AVAudioSessionCategoryPlayback, 0));
    EXPECT_TRUE(session.setPreferredSampleRate(44100.0));
    EXPECT_TRUE(session.setActive(true, 0));
    EXPECT_EQ(session.category(), "AVAudioSessionCategoryPlayback");
    EXPECT_EQ(session.sampleRate(), 44100.0);
    EXPECT_TRUE(session.isActive());
    EXPECT_TRUE(session.setActive(false, 0));
    EXPECT_FALSE(session.isActive());
}

TEST(AVAudioSession, ARateThatIsNoneIsRefused)
{
    AVAudioSession session;
    for (const double rate :
         {0.0, -1.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(session.setPreferredSampleRate(rate).error(), "The sample rate is out of range.");
    }
    EXPECT_EQ(session.sampleRate(), 48000.0);
}

TEST(AVAudioSession, EachStepFailsAsATestWants)
{
    AVAudioSession session;
    session.setFailure("setCategory", "No category.");
    session.setFailure("setPreferredSampleRate", "No rate.");
    session.setFailure("setActive", "Not now.");
    EXPECT_EQ(session.setCategory(AVAudioSessionCategoryPlayback, 0).error(), "No category.");
    EXPECT_EQ(session.setPreferredSampleRate(44100.0).error(), "No rate.");
    EXPECT_EQ(session.setActive(true, 0).error(), "Not now.");
    EXPECT_EQ(session.category(), "");
    EXPECT_EQ(session.sampleRate(), 48000.0);
    EXPECT_FALSE(session.isActive());
    session.setFailure("setActive", "");
    EXPECT_TRUE(session.setActive(true, 0));
}

TEST(AVAudioSession, ThereIsOneOfTheProcess)
{
    EXPECT_EQ(&AVAudioSession::sharedInstance(), &AVAudioSession::sharedInstance());
}

} // namespace

} // namespace volvelle::test
