#include "services/audiodevice/PortListeners.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace volvelle::test {

using Address = std::pair<int, int>;

TEST(PortListenersTest, TheAddressOfAPortStandsAtTheEndOfItsName)
{
    EXPECT_EQ(sequencerAddressOf("Keys:Keys MIDI 1 24:0"), Address(24, 0));
    EXPECT_EQ(sequencerAddressOf("A:b 1:2 128:13"), Address(128, 13));
}

TEST(PortListenersTest, ANameWithoutAnAddressHasNone)
{
    for (const char* name :
         {"", "24:0", "Speaker:keys", "a b", "a 24:", "a :0", "a 24:0x", "a 2 4:", "a:b 24"}) {
        EXPECT_FALSE(sequencerAddressOf(name)) << name;
    }
}

TEST(PortListenersTest, APortThatCannotBeAskedForIsTakenForHeard)
{
    EXPECT_TRUE(PortListeners().hasThisProcess("Speaker:keys"));
}

TEST(PortListenersTest, NobodyHearsAPortThatIsNotThere)
{
    if (access("/dev/snd/seq", R_OK | W_OK) != 0) {
        GTEST_SKIP() << "this machine has no MIDI sequencer";
    }
    EXPECT_FALSE(PortListeners().hasThisProcess("No such port 191:99"));
}

} // namespace volvelle::test
