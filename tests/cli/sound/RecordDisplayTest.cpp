#include "cli/sound/RecordDisplay.h"

#include <gtest/gtest.h>
#include <vector>

namespace volvelle {
namespace {

TEST(RecordDisplay, TheLineTellsTimeEventsAndTheNotesThatSound)
{
    EXPECT_EQ(recordLine(0.0, 0, {}), "0.0 seconds  0 events  -");
    EXPECT_EQ(recordLine(12.39, 45, std::vector<int>{60, 64, 67}), "12.3 seconds  45 events  C3 E3 G3");
    EXPECT_EQ(recordLine(3600.0, 1, std::vector<int>{1, 127}), "3600.0 seconds  1 events  C#-2 G8");
}

} // namespace
} // namespace volvelle
