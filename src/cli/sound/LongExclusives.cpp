#include "cli/sound/LongExclusives.h"

#include "midi/MIDIRawDataExtension.h"
#include "services/musicsequence/TrackWalk.h"
#include "wire/MIDIConstants.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <vector>

namespace volvelle {

namespace {

bool isCutOff(const TrackEvent& event)
{
    if (event.type != kMusicEventType_MIDIRawData) {
        return false;
    }
    const auto& raw = event.record<MIDIRawData>();
    const std::uint8_t* const bytes = raw.data;
    return raw.length == sizeof(MIDIRawDataExtension) && bytes[raw.length - 1] != STATUS_EOX;
}

bool isLong(const AUMIDIEventEx& event)
{
    return event.event().data[0] == STATUS_SYSEX && event.length() > sizeof(MIDIRawDataExtension);
}

OSStatus put(const AUMIDIEventEx& event, MIDIRecorder& sequence)
{
    std::vector<std::uint8_t> block(sizeof(MIDIRawData) + event.length());
    auto* record = new (block.data()) MIDIRawData;
    record->length = event.length();
    std::copy_n(event.data(), event.length(), block.data() + offsetof(MIDIRawData, data));
    return MusicTrackNewMIDIRawDataEvent(sequence.getTrack(0),
                                         sequence.samplesToBeats(event.event().eventSampleTime), record);
}

} // namespace

OSStatus restoreLongExclusives(AUMIDIRecorder& recorder)
{
    MIDIRecorder& sequence = *recorder.recorder;
    OSStatus status = eraseEventsIf(sequence.getTrack(0), isCutOff);
    for (const auto& event : recorder.getEvents()) {
        if (status == noErr && isLong(*event)) {
            status = put(*event, sequence);
        }
    }
    return status;
}

} // namespace volvelle
