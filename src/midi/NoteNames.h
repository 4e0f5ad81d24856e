#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace volvelle {

// The names of the 128 keys, "C-2" to "G8", 60 is "C3". [any]
class NoteNames {
public:
    NoteNames();

    std::vector<std::string> values;

    // The first row whose text is exactly `key`, -1 for none.
    int getKeyNumber(std::string_view key) const;

    // True for the keys 0 to 127 whose name holds "#".
    bool isBlackKey(int key) const;
};

// The one instance, made at the first call.
const NoteNames& noteNames();

} // namespace volvelle
