#include "base/Console.h"
#include "base/Text.h"
#include "services/musicsequence/MusicSequenceObject.h"
#include "services/musicsequence/MusicTrackObject.h"

#include <array>
#include <string>

namespace volvelle {

namespace {

template <class Record>
const Record& as(const void* payload)
{
    return *static_cast<const Record*>(payload);
}

std::string noteText(const MIDINoteMessage& note)
{
    return concat("note, channel ", note.channel, ", number ", note.note, ", velocity ", note.velocity,
                  ", release ", note.releaseVelocity, ", duration ", note.duration);
}

std::string messageText(const MIDIChannelMessage& message)
{
    return concat("message ", hexadecimal(message.status), " ", hexadecimal(message.data1), " ",
                  hexadecimal(message.data2));
}

std::string eventText(MusicEventType type, const void* payload)
{
    switch (type) {
    case kMusicEventType_ExtendedNote:
        return concat("extended note, duration ", as<ExtendedNoteOnEvent>(payload).duration);
    case kMusicEventType_ExtendedTempo:
        return concat("tempo ", as<ExtendedTempoEvent>(payload).bpm);
    case kMusicEventType_User:
        return concat("user data, ", as<MusicEventUserData>(payload).length, " bytes");
    case kMusicEventType_Meta:
        return concat("meta ", hexadecimal(as<MIDIMetaEvent>(payload).metaEventType), ", ",
                      as<MIDIMetaEvent>(payload).dataLength, " bytes");
    case kMusicEventType_MIDINoteMessage:
        return noteText(as<MIDINoteMessage>(payload));
    case kMusicEventType_MIDIChannelMessage:
        return messageText(as<MIDIChannelMessage>(payload));
    case kMusicEventType_MIDIRawData:
        return concat("raw data, ", as<MIDIRawData>(payload).length, " bytes");
    case kMusicEventType_Parameter:
        return concat("parameter ", as<ParameterEvent>(payload).parameterID, ", value ",
                      as<ParameterEvent>(payload).value);
    default:
        return concat("preset ", as<AUPresetEvent>(payload).presetID);
    }
}

void showTrack(const std::string& title, MusicTrackObject& track)
{
    const auto events = track.events.all();
    directPrint(title, ": ", events.size(), " events, length ", track.length);
    for (const MusicEvent& event : events) {
        directPrint("  ", event.time, "  ", eventText(event.type, track.events.payload(event)));
    }
}

} // namespace

void CAShow(const MusicSequence& sequence)
{
    if (sequence == nullptr) {
        directPrint("MusicSequence: none");
        return;
    }
    directPrint("MusicSequence: ", sequence->tracks.size(), " tracks");
    showTrack("Tempo track", *sequence->tempoTrack);
    for (std::size_t i = 0; i < sequence->tracks.size(); ++i) {
        showTrack(concat("Track ", i), *sequence->tracks[i]);
    }
}

} // namespace volvelle
