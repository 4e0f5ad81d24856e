#include "services/musicsequence/smf/StandardMIDIFileLoader.h"

#include "services/musicsequence/MusicSequenceObject.h"
#include "services/musicsequence/MusicTrackObject.h"
#include "services/musicsequence/smf/StandardMIDIFileReader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <utility>

namespace volvelle {

namespace {

// A record as the payload of an event.
template <class Record>
std::uint64_t packed(const Record& record)
{
    std::uint64_t payload = 0;
    std::memcpy(&payload, &record, sizeof(record));
    return payload;
}

// No event ends behind its file track, whose end is the length of what it feeds; tempos alone lengthen the
// tempo track themselves.
class Loader {
public:
    Loader(MusicSequenceObject& owner, const SMFFile& source) : sequence(owner), file(source), tempo(&owner)
    {
    }

    void load(bool channelsToTracks);

private:
    void loadTracks();
    void loadChannels();
    MusicTrackObject& channelTrack(const SMFEvent& event);
    void add(const SMFEvent& event, MusicTrackObject& track);
    void addNote(const SMFEvent& event, MusicTrackObject& track);
    void addMeta(const SMFEvent& event, MusicTrackObject& track);
    void addRawData(const SMFEvent& event, MusicTrackObject& track);
    void collectChannels();
    void finish();

    double beats(std::uint64_t tick) const { return static_cast<double>(tick) / file.division; }

    MusicTrack newTrack() { return std::make_shared<MusicTrackObject>(&sequence); }

    std::size_t firstTrack() const { return hasTempoTrack() ? 1 : 0; }

    bool hasTempoTrack() const;
    bool hasChannels() const;

    MusicSequenceObject& sequence;
    const SMFFile& file;
    MusicTrackObject tempo;
    std::vector<MusicTrack> tracks;
    std::array<MusicTrack, 17> channels; // the last for what has no channel
};

void Loader::load(bool channelsToTracks)
{
    if (hasTempoTrack()) {
        for (const SMFEvent& event : file.tracks.front().events) {
            add(event, tempo);
        }
        tempo.length = std::max(tempo.length, beats(file.tracks.front().end));
    }
    if (channelsToTracks && hasChannels()) {
        loadChannels();
    } else {
        loadTracks();
    }
    finish();
}

void Loader::loadTracks()
{
    for (std::size_t i = firstTrack(); i < file.tracks.size(); ++i) {
        const SMFTrack& source = file.tracks[i];
        const MusicTrack track = newTrack();
        track->events.reserve(source.events.size());
        for (const SMFEvent& event : source.events) {
            add(event, *track);
        }
        track->length = std::max(track->length, beats(source.end));
        tracks.push_back(track);
    }
}

void Loader::loadChannels()
{
    for (std::size_t i = firstTrack(); i < file.tracks.size(); ++i) {
        const SMFTrack& source = file.tracks[i];
        const double end = beats(source.end);
        for (const SMFEvent& event : source.events) {
            if (event.kind == SMFEventKind::tempo) {
                add(event, tempo);
                continue;
            }
            MusicTrackObject& track = channelTrack(event);
            add(event, track);
            track.length = std::max(track.length, end);
        }
    }
    collectChannels();
}

MusicTrackObject& Loader::channelTrack(const SMFEvent& event)
{
    MusicTrack& track = channels[event.isOfChannel() ? event.status & 0x0FU : 16U];
    if (track == nullptr) {
        track = newTrack();
    }
    return *track;
}

void Loader::collectChannels()
{
    for (const MusicTrack& track : channels) {
        if (track != nullptr) {
            tracks.push_back(track);
        }
    }
}

void Loader::add(const SMFEvent& event, MusicTrackObject& track)
{
    switch (event.kind) {
    case SMFEventKind::note:
        addNote(event, track);
        break;
    case SMFEventKind::message:
        track.events.appendShort(beats(event.tick), kMusicEventType_MIDIChannelMessage,
                                 sizeof(MIDIChannelMessage),
                                 packed(MIDIChannelMessage{event.status, event.data1, event.data2, 0}));
        break;
    case SMFEventKind::tempo: {
        const ExtendedTempoEvent record{60.0e6 / static_cast<double>(event.end)};
        tempo.append(beats(event.tick), kMusicEventType_ExtendedTempo, sizeof(record), &record,
                     sizeof(record));
        break;
    }
    case SMFEventKind::meta:
        addMeta(event, track);
        break;
    default:
        addRawData(event, track);
    }
}

void Loader::addNote(const SMFEvent& event, MusicTrackObject& track)
{
    const MIDINoteMessage note{static_cast<std::uint8_t>(event.status & 0x0FU), event.data1, event.data2,
                               static_cast<std::uint8_t>(event.length),
                               static_cast<float>(beats(event.end - event.tick))};
    track.events.appendShort(beats(event.tick), kMusicEventType_MIDINoteMessage, sizeof(note), packed(note));
}

void Loader::addMeta(const SMFEvent& event, MusicTrackObject& track)
{
    constexpr std::size_t head = offsetof(MIDIMetaEvent, data);
    const std::size_t size = std::max(head + event.length, sizeof(MIDIMetaEvent));
    auto* const record = static_cast<std::byte*>(
        track.events.appendBlank(beats(event.tick), kMusicEventType_Meta, static_cast<std::uint32_t>(size)));
    const MIDIMetaEvent start{event.data1, 0, 0, 0, event.length, {}};
    std::memcpy(record, &start, sizeof(start));
    std::memcpy(record + head, file.bytes.data() + event.end, event.length);
}

void Loader::addRawData(const SMFEvent& event, MusicTrackObject& track)
{
    constexpr std::size_t head = offsetof(MIDIRawData, data);
    const std::uint32_t lead = event.kind == SMFEventKind::exclusive ? 1 : 0;
    const std::size_t size = std::max(head + lead + event.length, sizeof(MIDIRawData));
    auto* const record = static_cast<std::byte*>(track.events.appendBlank(
        beats(event.tick), kMusicEventType_MIDIRawData, static_cast<std::uint32_t>(size)));
    const MIDIRawData start{event.length + lead, {0xF0}};
    std::memcpy(record, &start, head + lead);
    std::memcpy(record + head + lead, file.bytes.data() + event.end, event.length);
}

void Loader::finish()
{
    sequence.replaceTracks(std::move(tracks));
    sequence.tempoTrack->events.replace(tempo.events);
    sequence.tempoTrack->length = tempo.length;
    sequence.loadWarnings = file.warnings;
    sequence.loadDivision = static_cast<std::int16_t>(file.division);
    sequence.tempoTrack->timeResolution = sequence.loadDivision;
    for (const MusicTrack& track : sequence.tracks) {
        track->timeResolution = sequence.loadDivision;
    }
}

bool Loader::hasTempoTrack() const
{
    const auto isTempo = [](const SMFEvent& event) { return event.kind == SMFEventKind::tempo; };
    return file.format == 1 && file.tracks.size() >= 2 &&
           std::ranges::all_of(file.tracks.front().events, isTempo);
}

bool Loader::hasChannels() const
{
    const auto hasChannel = [](const SMFTrack& track) {
        return std::ranges::any_of(track.events, &SMFEvent::isOfChannel);
    };
    return std::ranges::any_of(file.tracks, hasChannel);
}

} // namespace

OSStatus loadStandardMIDIFile(MusicSequenceObject& sequence, std::span<const std::uint8_t> bytes,
                              MusicSequenceLoadFlags flags)
{
    SMFFile file;
    if (const OSStatus status = readStandardMIDIFile(bytes, file); status != noErr) {
        return status;
    }
    Loader(sequence, file).load((flags & kMusicSequenceLoadSMF_ChannelsToTracks) != 0);
    return noErr;
}

} // namespace volvelle
