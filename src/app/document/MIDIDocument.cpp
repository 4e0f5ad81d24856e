#include "app/document/MIDIDocument.h"

#include "base/Console.h"
#include "base/Text.h"

namespace volvelle {

namespace {

constexpr std::int16_t ticksPerBeat = 480;

} // namespace

std::optional<std::vector<std::uint8_t>> MIDIDocument::sequenceData(const MusicSequence& sequence)
{
    std::vector<std::uint8_t> data;
    const OSStatus status = MusicSequenceFileCreateData(
        sequence, kMusicSequenceFile_MIDIType, kMusicSequenceFileFlags_EraseFile, ticksPerBeat, data);
    if (status != noErr) {
        directPrint(concat("MIDIDocument::sequenceData() : Error: Could not convert music sequence to data. "
                           "Status: ",
                           status));
        return std::nullopt;
    }
    if (data.empty()) {
        return std::nullopt;
    }
    return data;
}

} // namespace volvelle
