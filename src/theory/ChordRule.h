#pragma once

#include <string>
#include <vector>

namespace volvelle {

// One chord shape in one key. Plain data: who keeps a rule that was found makes a copy of it.
class ChordRule {
public:
    virtual ~ChordRule() = default;

    int index = -1;        // its number in the catalogue, -1 for a rule that stands alone
    std::string shortName; // "C#m7"
    std::string longName;  // "C# Minor 7th"
    int inversion = 0;     // reserved
    std::vector<int> rule; // pitch classes 0 to 11, root first, in the order of the intervals
};

} // namespace volvelle
