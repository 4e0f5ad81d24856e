#include "cli/sound/SinkNews.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

class ToldSink : public AudioSink {
public:
    Result<> open(AudioSource& /*source*/) override { return {}; }

    void close() override {}

    std::string description() const override { return name; }

    bool isAudible() const override { return name != "Silent clock"; }

    std::string name;
};

class SinkNewsTest : public testing::Test {
protected:
    std::string newsOf(const std::string& description)
    {
        sink->name = description;
        return news.next();
    }

    std::shared_ptr<ToldSink> sink = std::make_shared<ToldSink>();
    SinkNews news{"a.mid", sink};
};

constexpr const char* lost = "The audio device was lost: the music plays on silently.";

TEST_F(SinkNewsTest, TheBeginningIsToldOnceAndWhenItIsKnown)
{
    EXPECT_EQ(newsOf(""), "");
    EXPECT_EQ(newsOf("JACK: system at 48000 Hz"), "Playing 'a.mid' through JACK: system at 48000 Hz.");
    EXPECT_EQ(newsOf("JACK: system at 48000 Hz"), "");
}

TEST_F(SinkNewsTest, ALostDeviceAndItsReturnAreALineEach)
{
    newsOf("PulseAudio: A at 48000 Hz");
    EXPECT_EQ(newsOf("Silent clock"), lost);
    EXPECT_EQ(newsOf("Silent clock"), "");
    EXPECT_EQ(newsOf("PulseAudio: A at 48000 Hz"), "Playing through PulseAudio: A at 48000 Hz again.");
    EXPECT_EQ(newsOf("PulseAudio: A at 48000 Hz"), "");
    EXPECT_EQ(newsOf("Silent clock"), lost);
}

TEST_F(SinkNewsTest, ADeviceFoundLaterIsNotToldAsAReturn)
{
    EXPECT_EQ(newsOf("Silent clock"), "Playing 'a.mid' through Silent clock.");
    EXPECT_EQ(newsOf("JACK: system at 48000 Hz"), "Playing through JACK: system at 48000 Hz.");
}

} // namespace
} // namespace volvelle
