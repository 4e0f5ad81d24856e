#include "services/audiodevice/MIDIPorts.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

constexpr const char* noMIDI =
    "There are no MIDI ports: neither the system's MIDI sequencer nor JACK answers.";

} // namespace

TEST(MIDIPortsTest, SayInOneLineThatThereIsNoMIDI)
{
    const auto ports = makeMIDIPorts({});
    EXPECT_EQ(ports->outputNames().error(), noMIDI);
    EXPECT_EQ(ports->openOutput("x").error(), noMIDI);
    EXPECT_EQ(ports->openVirtualOutput("x").error(), noMIDI);
    EXPECT_EQ(ports->inputNames().error(), noMIDI);
    EXPECT_EQ(ports->openInput("x", nullptr).error(), noMIDI);
    EXPECT_EQ(ports->openVirtualInput("x", nullptr).error(), noMIDI);
}

TEST(MIDIPortsTest, TolerateServicesThatDoNotAnswer)
{
    const MIDIServices present = MIDIServices::present();
    const auto ports = makeMIDIPorts({!present.sequencer, !present.jack});
    for (const std::string& error : {ports->openOutput("no port of this name").error(),
                                     ports->openInput("no port of this name", nullptr).error()}) {
        EXPECT_FALSE(error.empty());
        EXPECT_EQ(error.find('\n'), std::string::npos);
    }
}

TEST(MIDIPortsTest, NameAPortThatIsNotThere)
{
    const auto ports = makeMIDIPorts();
    const std::string error = ports->openOutput("no port of this name").error();
    EXPECT_TRUE(error == noMIDI || error == "There is no MIDI port \"no port of this name\".") << error;
    EXPECT_EQ(ports->openInput("no port of this name", nullptr).error(), error);
}

} // namespace volvelle::test
