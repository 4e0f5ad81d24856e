#include "scores/ChordName.h"

#include "scores/PitchNames.h"

namespace volvelle::scores {

namespace {

struct ChordType {
    std::string_view name;
    std::vector<int> intervals;
};

const std::vector<ChordType>& chordTypes()
{
    static const std::vector<ChordType> types = {
        {"8", {0}},
        {"5", {0, 7}},
        {"M", {0, 4, 7}},
        {"m", {0, 3, 7}},
        {"o", {0, 3, 6}},
        {"+", {0, 4, 8}},
        {"sus2", {0, 2, 7}},
        {"sus4", {0, 5, 7}},
        {"-5", {0, 4, 6}},
        {"6", {0, 4, 7, 9}},
        {"m6", {0, 3, 7, 9}},
        {"7", {0, 4, 7, 10}},
        {"m7", {0, 3, 7, 10}},
        {"o7", {0, 3, 6, 9}},
    };
    return types;
}

} // namespace

unsigned ChordName::tones() const
{
    unsigned bits = 0;
    for (const int interval : intervals)
        bits |= 1u << ((root + interval) % 12);
    return bits;
}

std::optional<ChordName> chordNamed(std::string_view name)
{
    const std::size_t letters = name.size() > 1 && name[1] == '#' ? 2 : 1;
    const auto root = pitchClass(name.substr(0, letters));
    if (!root)
        return std::nullopt;
    for (const auto& type : chordTypes())
        if (type.name == name.substr(letters))
            return ChordName{*root, type.intervals};
    return std::nullopt;
}

std::string chordDetected(unsigned tones)
{
    std::string found;
    for (const auto& type : chordTypes())
        for (int root = 0; root < 12; ++root)
            if (ChordName{root, type.intervals}.tones() == tones)
                found = std::string(pitchClassName(root)) + std::string(type.name);
    return found;
}

} // namespace volvelle::scores
