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
    const auto names = ports->outputNames();
    ASSERT_TRUE(names) << names.error();
    EXPECT_THAT(*names, testing::Contains(testing::HasSubstr("Listener:notes")));
    const auto port = ports->openOutput("listener:NOTES");
    ASSERT_TRUE(port) << port.error();
    EXPECT_THAT((*port)->name(), testing::HasSubstr("Listener:notes"));
    EXPECT_EQ((*port)->send(std::array<std::uint8_t, 3>{0x92, 60, 100}).error(), "");
    EXPECT_EQ((*port)->send(std::array<std::uint8_t, 2>{0xC2, 5}).error(), "");
    EXPECT_EQ(listener.readLine(), "92 3C 64");
    EXPECT_EQ(listener.readLine(), "C2 05");
    EXPECT_EQ(listener.waitForEnd(), 0);
}

TEST(MIDIServersTest, OpensAPortForOtherPrograms)
{
    const SoundServersFolder servers(SoundServersFolder::Kind::shared);
    USE_SERVER(servers, "jack");
    const auto ports = makeMIDIPorts({false, true});
    const auto port = ports->openVirtualOutput("ideas");
    ASSERT_TRUE(port) << port.error();
    EXPECT_EQ((*port)->name(), "ideas");
    EXPECT_EQ((*port)->send(std::array<std::uint8_t, 3>{0x90, 60, 100}).error(), "");
    ChildProcess listing({"jack_lsp", "-s", servers.serverName()});
    std::string all;
    for (std::string line = listing.readLine(); !line.empty(); line = listing.readLine()) {
        all += line + "\n";
    }
    EXPECT_THAT(all, testing::HasSubstr("Volvelle:ideas"));
}

} // namespace volvelle::test
