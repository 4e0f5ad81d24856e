#include "scores/ChordName.h"

#include "base/Text.h"
#include "scores/PitchNames.h"
#include "theory/EnumMIDIChords.h"

namespace volvelle::scores {

namespace {

constexpr int numberOfTypes = EnumMIDIChords::NUMBEROFCHORDSINKEY;

} // namespace

unsigned ChordName::tones() const
{
    unsigned bits = 0;
    for (const int interval : intervals) {
        bits |= 1u << ((root + interval) % 12);
    }
    return bits;
}

std::optional<ChordName> chordNamed(std::string_view name)
{
    const std::size_t letters = name.size() > 1 && name[1] == '#' ? 2 : 1;
    const auto root = pitchClass(name.substr(0, letters));
    if (!root) {
        return std::nullopt;
    }
    for (int type = 0; type < numberOfTypes; ++type) {
        if (EnumMIDIChords::getShortName(type) == name.substr(letters)) {
            return ChordName{*root, EnumMIDIChords::getRule(type)};
        }
    }
    return std::nullopt;
}

std::string chordTypes()
{
    std::string types;
    for (int type = 0; type < numberOfTypes; ++type) {
        const ChordName highest{11, EnumMIDIChords::getRule(type)};
        const auto& name = EnumMIDIChords::getShortName(type);
        if (chordDetected(highest.tones()) == concat(pitchClassName(highest.root), name)) {
            types += concat(types.empty() ? "" : " ", name);
        }
    }
    return types;
}

std::string chordDetected(unsigned tones)
{
    std::string found;
    for (int type = 0; type < numberOfTypes; ++type) {
        for (int root = 0; root < 12; ++root) {
            if (ChordName{root, EnumMIDIChords::getRule(type)}.tones() == tones) {
                found = std::string(pitchClassName(root)) + EnumMIDIChords::getShortName(type);
            }
        }
    }
    return found;
}

} // namespace volvelle::scores
