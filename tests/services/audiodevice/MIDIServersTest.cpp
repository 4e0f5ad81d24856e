#include "services/audiodevice/MIDIPorts.h"
#include "tests/services/audiodevice/SoundServersFolder.h"
#include "tests/support/ChildProcess.h"

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace volvelle::test {

TEST(MIDIServersTest, SendsANoteThroughJACKToAnotherProgram)
{
    const SoundServersFolder servers(SoundServersFolder::Kind::shared);
    USE_SERVER(servers, "jack");
    ChildProcess listener({VOLVELLE_MIDI_LISTENER, "2"});
    ASSERT_EQ(listener.readLine(), "ready");
    const auto ports = makeMIDIPorts({false, MIDIServices::present().jack});
    std::string error;
    EXPECT_THAT(ports->outputNames(error), testing::Contains(testing::HasSubstr("Listener:notes"))) << error;
    const auto port = ports->openOutput("listener:NOTES", error);
    ASSERT_NE(port, nullptr) << error;
    EXPECT_THAT(port->name(), testing::HasSubstr("Listener:notes"));
    EXPECT_TRUE(port->send(std::array<std::uint8_t, 3>{0x92, 60, 100}, error)) << error;
    EXPECT_TRUE(port->send(std::array<std::uint8_t, 2>{0xC2, 5}, error)) << error;
    EXPECT_EQ(listener.readLine(), "92 3C 64");
    EXPECT_EQ(listener.readLine(), "C2 05");
    EXPECT_EQ(listener.waitForEnd(), 0);
}

TEST(MIDIServersTest, OpensAPortForOtherPrograms)
{
    const SoundServersFolder servers(SoundServersFolder::Kind::shared);
    USE_SERVER(servers, "jack");
    const auto ports = makeMIDIPorts({false, true});
    std::string error;
    const auto port = ports->openVirtualOutput("ideas", error);
    ASSERT_NE(port, nullptr) << error;
    EXPECT_EQ(port->name(), "ideas");
    EXPECT_TRUE(port->send(std::array<std::uint8_t, 3>{0x90, 60, 100}, error)) << error;
    ChildProcess listing({"jack_lsp", "-s", servers.serverName()});
    std::string all;
    for (std::string line = listing.readLine(); !line.empty(); line = listing.readLine()) {
        all += line + "\n";
    }
    EXPECT_THAT(all, testing::HasSubstr("Volvelle:ideas"));
}

} // namespace volvelle::test
