#include "phrases/ChordEvent.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

TEST(ChordEvent, ANewChordHasNoRuleAndNoNotes)
{
    const ChordEvent chord;
    EXPECT_EQ(chord.nrule, nullptr);
    EXPECT_EQ(chord.position, 0.0);
    EXPECT_EQ(chord.duration, 0.0);
    EXPECT_TRUE(chord.notes.empty());
}

} // namespace
} // namespace volvelle
