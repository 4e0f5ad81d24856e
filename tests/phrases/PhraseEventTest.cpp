#include "phrases/PhraseEvent.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

TEST(PhraseEvent, ANewEventHasNoNumberAndNoKindYet)
{
    const PhraseEvent event;
    EXPECT_EQ(event.id, -1);
    EXPECT_EQ(event.type, 0);
    EXPECT_EQ(event.channel, 0);
    EXPECT_EQ(event.number, 0);
    EXPECT_EQ(event.position, 0.0);
    EXPECT_EQ(event.duration, 0.0);
    EXPECT_EQ(event.value, 100);
    EXPECT_EQ(event.value2, 0);
}

TEST(PhraseEvent, TheKindsHaveTheirNumbers)
{
    EXPECT_EQ(PhraseEvent::noteOn, 1);
    EXPECT_EQ(PhraseEvent::noteOff, 2);
    EXPECT_EQ(PhraseEvent::controller, 3);
    EXPECT_EQ(PhraseEvent::programChange, 4);
    EXPECT_EQ(PhraseEvent::pitchWheel, 5);
    EXPECT_EQ(PhraseEvent::afterTouch, 6);
}

} // namespace
} // namespace volvelle
