#include "app/control/RemoteCommands.h"
#include "tests/app/control/ScreenFixture.h"

namespace volvelle::test {

namespace {

class RemoteCommandsTest : public LogicScreens {
protected:
    RemoteCommandsTest() { makeRoot(); }

    void openSlowTide() { root->presentDocument(writeDocument("Slow tide.mid")); }
};

TEST_F(RemoteCommandsTest, WithoutADocumentNothingCanBeDone)
{
    const RemoteCommands remote(root);
    remote.play();
    remote.stop();
    remote.playOrStop();
    remote.next();
    EXPECT_FALSE(remote.isAvailable());
    EXPECT_FALSE(remote.isPlaying());
    EXPECT_EQ(remote.position(), 0.0);
    EXPECT_EQ(remote.length(), 0.0);
    EXPECT_EQ(remote.title(), "");
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(RemoteCommandsTest, ADocumentIsPlayedAndStopped)
{
    openSlowTide();
    const RemoteCommands remote(root);
    EXPECT_TRUE(remote.isAvailable());
    EXPECT_EQ(remote.title(), "Slow tide");
    EXPECT_EQ(remote.length(), 1.25);
    goOn(0.5);
    EXPECT_NEAR(remote.position(), 0.5, 0.1);
    remote.play();
    EXPECT_NEAR(remote.position(), 0.5, 0.1);
    remote.stop();
    EXPECT_FALSE(remote.isPlaying());
    EXPECT_EQ(remote.position(), 0.0);
    remote.stop();
    EXPECT_FALSE(remote.isPlaying());
    remote.play();
    EXPECT_TRUE(remote.isPlaying());
    remote.playOrStop();
    EXPECT_FALSE(remote.isPlaying());
}

TEST_F(RemoteCommandsTest, TheNextIsANewArrangement)
{
    openSlowTide();
    RemoteCommands(root).next();
    EXPECT_NE(up()->document()->data, smallFile());
    EXPECT_TRUE(RemoteCommands(root).isPlaying());
}

TEST_F(RemoteCommandsTest, ADocumentThatWasLeftIsOutOfReach)
{
    openSlowTide();
    up()->onButtonDone();
    EXPECT_FALSE(RemoteCommands(root).isAvailable());
    const RemoteCommands remote(root);
    root.reset();
    EXPECT_FALSE(remote.isAvailable());
    EXPECT_EQ(remote.length(), 0.0);
}

} // namespace

} // namespace volvelle::test
