#include "cli/sound/TakeRecorder.h"

#include "midi/MIDIRawDataExtension.h"

#include <algorithm>
#include <cstddef>
#include <new>

namespace volvelle {

void TakeRecorder::sysexAtSamplePosition(std::uint16_t length, const std::vector<std::uint8_t>& data,
                                         std::int64_t position)
{
    if (!isStarted || length <= sizeof(MIDIRawDataExtension)) {
        return MIDIRecorder::sysexAtSamplePosition(length, data, position);
    }
    std::vector<std::uint8_t> block(sizeof(MIDIRawData) + length);
    auto* const record = new (block.data()) MIDIRawData;
    record->length = length;
    std::copy_n(data.begin(), length, block.data() + offsetof(MIDIRawData, data));
    const OSStatus put = MusicTrackNewMIDIRawDataEvent(getTrack(0), samplesToBeats(position), record);
    status = status == noErr ? put : status;
}

} // namespace volvelle
