#include "midi/METATags.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace volvelle {

namespace {

struct TagName {
    METATags tag;
    std::string_view name;
};

constexpr std::array<TagName, 23> tagNames = {{
    {METATags::META_SEQUENCENUMBER, "Meta Sequencer Number"},
    {METATags::META_TEXTf, "Meta Text"},
    {METATags::META_COPYRIGHT, "Meta Copyright"},
    {METATags::META_TRACKNAME, "Meta Track Name"},
    {METATags::META_INSTRUMENTNAME, "Meta Instrument Name"},
    {METATags::META_LYRICS, "Meta Lyrics"},
    {METATags::META_MARKER, "Meta Marker"},
    {METATags::META_CUEPOINT, "Meta Cue Point"},
    {METATags::META_PROGRAMNAME, "Meta Program Name"},
    {METATags::META_DEVICENAME, "Meta Device Name"},
    {METATags::META_CHANNELPREFIX, "Meta Channel Preix"},
    {METATags::META_MIDIPORT, "Meta MIDI Port"},
    {METATags::META_EOT, "Meta End Of Track"},
    {METATags::META_SETTEMPO, "Meta Set Tempo"},
    {METATags::META_SMTPOFFSET, "Meta SMTPE Offset"},
    {METATags::META_TIMESIGNATURE, "Meta Time Signature"},
    {METATags::META_KEYSIGNATURE, "Meta Kex"},
    {METATags::META_SPECIFIC, "Meta Sequencer Specific"},
    {METATags::META_SYSEX, "Meta SysEx"},
    {METATags::META_UNKNOWN, "Meta Unknown"},
    {METATags::META_EXTENDEDNOTE, "Meta Extended Note"},
    {METATags::META_AUPARAMETER, "Meta AU Parameter"},
    {METATags::META_AUPRESET, "Meta AU Preset"},
}};

const TagName* find(std::uint8_t number)
{
    const auto* found =
        std::ranges::find(tagNames, number, [](const TagName& entry) { return entry.tag.rawValue(); });
    return found == tagNames.end() ? nullptr : found;
}

} // namespace

std::optional<METATags> METATags::fromRawValue(std::uint8_t rawValue)
{
    const TagName* found = find(rawValue);
    return found == nullptr ? std::nullopt : std::optional(found->tag);
}

std::string METATags::getName(std::uint8_t number)
{
    const TagName* found = find(number);
    return found == nullptr ? "Meta Unknown" : std::string(found->name);
}

} // namespace volvelle
