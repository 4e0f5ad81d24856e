#include "app/circle/CircleScene.h"
#include "app/circle/GraphicsContext.h"
#include "tests/app/circle/FakeSequence.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using Arcs = std::vector<int>;

struct CircleSceneTest : testing::Test {
    CircleSceneTest()
    {
        circle.makeColors();
        circle.delegate = &sequence;
        for (int i = 0; i < 16; ++i) {
            sequence.add({0x90, 60, 100}, 15 - i, 1.0);
            sequence.add({0x80, 60, 0}, 16 - i, 0.0);
        }
        update();
    }

    // Holds what the scene has against a drawing of all.
    CircleScene::Change update()
    {
        CircleScene::Change change = scene.update(circle, frame, resizing);
        GraphicsContext context;
        const GraphicsContext::Current current(context);
        circle.drawSymbolMain(frame, resizing);
        EXPECT_EQ(scene.drawing, context.drawing);
        return change;
    }

    test::FakeSequence sequence;
    MIDICircleViewBase circle;
    CircleScene scene;
    CGRect frame{0, 0, 300, 200};
    ResizingBehavior resizing = ResizingBehavior::fitInside;
};

TEST_F(CircleSceneTest, NothingChangesAsLongAsNothingChanged)
{
    const CircleScene::Change change = update();
    EXPECT_FALSE(change.all);
    EXPECT_TRUE(change.arcs.empty());
}

TEST_F(CircleSceneTest, APositionChangesTheNotesThatBecomeThickOrThin)
{
    circle.currentBeat = 3.5;
    const CircleScene::Change change = update();
    EXPECT_FALSE(change.all);
    EXPECT_EQ(change.arcs, (Arcs{11, 15}));
    ASSERT_EQ(change.before.size(), 2U);
    EXPECT_LT(change.before[0].width, change.before[1].width);
    circle.currentBeat = 4.0;
    EXPECT_TRUE(update().arcs.empty());
    circle.currentBeat = 100.0;
    EXPECT_EQ(update().arcs, Arcs{11});
}

TEST_F(CircleSceneTest, EverythingElseChangesAll)
{
    sequence.events[4]->duration = 2.0;
    EXPECT_TRUE(update().all);
    sequence.events[4]->pEvent()->data[2] = 3;
    EXPECT_TRUE(update().all);
    sequence.events[4]->beats = 0.25;
    EXPECT_TRUE(update().all);
    sequence.events.erase(sequence.events.begin() + 1);
    EXPECT_TRUE(update().all);
    sequence.beats = 20.0;
    EXPECT_TRUE(update().all);
    circle.colorChannel = {0.1, 0.2, 0.3, 0.4};
    circle.makeColors();
    EXPECT_TRUE(update().all);
    frame.width = 400;
    EXPECT_TRUE(update().all);
    resizing = ResizingBehavior::stretch;
    EXPECT_TRUE(update().all);
    circle.progressionValue = 0.3;
    EXPECT_TRUE(update().all);
    circle.delegate = nullptr;
    EXPECT_TRUE(update().all);
    EXPECT_FALSE(update().all);
}

} // namespace
} // namespace volvelle
