#include "inspection/FileDescription.h"

#include "base/PlainText.h"
#include "base/Text.h"
#include "services/files/SafeFile.h"
#include "services/musicsequence/TrackWalk.h"
#include "wire/ShortMessage.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace volvelle {

namespace {

using Name = std::pair<std::uint8_t, std::string_view>;

constexpr std::array<Name, 18> metaNames{{
    {META_SEQUENCENUMBER, "sequence number"},
    {META_TEXT, "text"},
    {META_COPYRIGHT, "copyright"},
    {META_TRACKNAME, "track name"},
    {META_INSTRUMENTNAME, "instrument name"},
    {META_LYRICS, "lyrics"},
    {META_MARKER, "marker"},
    {META_CUEPOINT, "cue point"},
    {META_PROGRAMNAME, "program name"},
    {META_DEVICENAME, "device name"},
    {META_CHANNELPREFIX, "channel prefix"},
    {META_MIDIPORT, "port"},
    {META_EOT, "end of track"},
    {META_SETTEMPO, "tempo"},
    {META_SMTPOFFSET, "SMPTE offset"},
    {META_TIMESIGNATURE, "time signature"},
    {META_KEYSIGNATURE, "key signature"},
    {META_SPECIFIC, "sequencer specific"},
}};

constexpr std::array<Name, 5> channelNames{{
    {STATUS_PPRESSURE, "polyphonic pressure"},
    {STATUS_CONTROLLER, "controller"},
    {STATUS_PROGRAM, "program"},
    {STATUS_CPRESSURE, "pressure"},
    {STATUS_PITCHBEND, "pitch bend"},
}};

template <std::size_t size>
std::string nameOf(const std::array<Name, size>& names, std::uint8_t code, std::string_view other)
{
    const auto name = std::ranges::find(names, code, &Name::first);
    return std::string(name == names.end() ? other : name->second);
}

bool isTextType(std::uint8_t type)
{
    return type >= META_TEXT && type <= 0x0F;
}

class TrackReader {
public:
    explicit TrackReader(FoundTrack& target) : track(target) {}

    void read(const TrackEvent& event)
    {
        switch (event.type) {
        case kMusicEventType_MIDINoteMessage:
            return readNote(event);
        case kMusicEventType_MIDIChannelMessage:
            return readChannelMessage(event);
        case kMusicEventType_Meta:
            return readMeta(event);
        case kMusicEventType_MIDIRawData: {
            const auto& record = event.record<MIDIRawData>();
            return add(event, "system exclusive", std::nullopt, {record.data, record.data + record.length});
        }
        default:
            return add(event, concat("type ", event.type), std::nullopt, {});
        }
    }

    void finish()
    {
        const bool isOne = !channels.empty() && std::ranges::all_of(channels, [this](int channel) {
            return channel == channels.front();
        });
        if (isOne) {
            track.channel = channels.front();
        }
    }

private:
    void readNote(const TrackEvent& event)
    {
        const auto& note = event.record<MIDINoteMessage>();
        track.notes.push_back({event.time, static_cast<double>(note.duration), note.note, note.velocity,
                               note.releaseVelocity, note.channel});
        noteChannel(note.channel);
    }

    void readChannelMessage(const TrackEvent& event)
    {
        const auto& message = event.record<MIDIChannelMessage>();
        if (message.status >= STATUS_SYSEX) {
            return add(event, "system message", std::nullopt, {message.status, message.data1, message.data2});
        }
        std::vector<std::uint8_t> data{message.data1};
        if (dataLength(message.status) == 2) {
            data.push_back(message.data2);
        }
        const int channel = channelOf(message.status);
        noteChannel(channel);
        add(event, nameOf(channelNames, kindOf(message.status), "channel message"), channel, std::move(data));
    }

    void readMeta(const TrackEvent& event)
    {
        const auto& record = event.record<MIDIMetaEvent>();
        add(event, nameOf(metaNames, record.metaEventType, concat("meta ", record.metaEventType)),
            std::nullopt, {record.data, record.data + record.dataLength});
        if (!isTextType(record.metaEventType)) {
            return;
        }
        const auto& data = track.events.back().data;
        const std::string text = utf8Text(std::string(data.begin(), data.end()));
        track.events.back().text = text;
        if (record.metaEventType == META_TRACKNAME && track.name.empty()) {
            track.name = text;
        }
    }

    void add(const TrackEvent& event, std::string type, std::optional<int> channel,
             std::vector<std::uint8_t> data)
    {
        track.events.push_back({event.time, std::move(type), channel, std::move(data), std::nullopt});
    }

    void noteChannel(int channel)
    {
        if (channels.empty() || channels.back() != channel) {
            channels.push_back(channel);
        }
    }

    FoundTrack& track;
    std::vector<int> channels; // as they change
};

OSStatus readLength(const MusicTrack& track, double& length)
{
    std::uint32_t size = sizeof length;
    return MusicTrackGetProperty(track, kSequenceTrackProperty_TrackLength, &length, size);
}

OSStatus describeTempo(const MusicSequence& sequence, FileDescription& description)
{
    MusicTrack track;
    OSStatus status = MusicSequenceGetTempoTrack(sequence, track);
    status = status == noErr ? readLength(track, description.length) : status;
    const OSStatus walked = forEachEvent(track, [&description](const TrackEvent& event) {
        if (event.type == kMusicEventType_ExtendedTempo) {
            description.tempo.push_back({event.time, event.record<ExtendedTempoEvent>().bpm});
        }
    });
    return status == noErr ? walked : status;
}

OSStatus describeTrack(const MusicSequence& sequence, std::uint32_t index, FoundTrack& found)
{
    MusicTrack track;
    OSStatus status = MusicSequenceGetIndTrack(sequence, index, track);
    status = status == noErr ? readLength(track, found.length) : status;
    found.index = static_cast<int>(index);
    TrackReader reader(found);
    const OSStatus walked = forEachEvent(track, [&reader](const TrackEvent& event) { reader.read(event); });
    reader.finish();
    return status == noErr ? walked : status;
}

OSStatus describeTracks(const MusicSequence& sequence, FileDescription& description)
{
    std::uint32_t count = 0;
    OSStatus status = MusicSequenceGetTrackCount(sequence, count);
    std::vector<FoundNote> notes;
    for (std::uint32_t i = 0; i < count && status == noErr; ++i) {
        FoundTrack& found = description.tracks.emplace_back();
        status = describeTrack(sequence, i, found);
        description.length = std::max(description.length, found.length);
        notes.insert(notes.end(), found.notes.begin(), found.notes.end());
    }
    std::ranges::stable_sort(notes, {}, &FoundNote::position);
    description.chords = findChords(notes, description.length);
    return status;
}

// The line after the first 20 begins with the number of all others.
void countMoreWarnings(FileDescription& description)
{
    constexpr std::size_t most = 20;
    if (description.warnings.size() > most) {
        const std::string& line = description.warnings.back();
        std::from_chars(line.data(), line.data() + line.size(), description.moreWarnings);
        description.warnings.pop_back();
    }
}

} // namespace

std::string warningLine(const FileDescription& description)
{
    if (description.warnings.empty()) {
        return "";
    }
    std::size_t notes = 0;
    for (const FoundTrack& track : description.tracks) {
        notes += track.notes.size();
    }
    return concat("Warning: ", description.warnings.front(), " Tracks kept: ", description.tracks.size(),
                  ", notes: ", notes, ".",
                  description.warnings.size() > 1 ? " There is more: 'inspect --json' lists it." : "");
}

OSStatus describeFile(const std::filesystem::path& file, FileDescription& description)
{
    std::vector<std::uint8_t> data;
    const OSStatus status = readFile(file, data);
    return status == noErr ? describeData(data, description) : status;
}

OSStatus describeData(const std::vector<std::uint8_t>& data, FileDescription& description)
{
    MusicSequence sequence;
    std::int16_t division = 480;
    OSStatus status = NewMusicSequenceFromData(data, kMusicSequenceLoadSMF_PreserveTracks, sequence);
    status = status == noErr ? MusicSequenceGetLoadDivision(sequence, division) : status;
    description.division = division;
    status = status == noErr ? MusicSequenceGetLoadWarnings(sequence, description.warnings) : status;
    countMoreWarnings(description);
    status = status == noErr ? describeTempo(sequence, description) : status;
    return status == noErr ? describeTracks(sequence, description) : status;
}

} // namespace volvelle
