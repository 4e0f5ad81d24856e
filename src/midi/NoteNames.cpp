#include "midi/NoteNames.h"

#include "base/Text.h"
#include "wire/PitchClassNames.h"

#include <algorithm>

namespace volvelle {

NoteNames::NoteNames()
{
    values.reserve(128);
    for (int key = 0; key < 128; ++key) {
        values.push_back(concat(pitchClassNames[static_cast<std::size_t>(key % 12)], key / 12 - 2));
    }
}

int NoteNames::getKeyNumber(std::string_view key) const
{
    const auto found = std::ranges::find(values, key);
    return found == values.end() ? -1 : static_cast<int>(found - values.begin());
}

bool NoteNames::isBlackKey(int key) const
{
    return key >= 0 && key <= 127 && values[static_cast<std::size_t>(key)].find('#') != std::string::npos;
}

const NoteNames& noteNames()
{
    static const NoteNames names;
    return names;
}

} // namespace volvelle
