#include "services/musicsequence/smf/SMFLoader.h"

#include "services/musicsequence/MusicSequenceObject.h"
#include "services/musicsequence/MusicTrackObject.h"
#include "services/musicsequence/smf/SMFReader.h"
#include "wire/MIDIConstants.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <exception>
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

// How much of a track is filled by events.
struct Room {
    std::size_t events = 0;
    std::size_t words = 0; // of the arena

    void include(const SMFEvent& event)
    {
        if (event.kind != SMFEventKind::tempo) {
            ++events;
            words += event.recordWords();
        }
    }
};

// No event ends after its file track, whose end is the length of what it feeds; tempos alone lengthen the
// tempo track themselves.
class Loader {
public:
    Loader(MusicSequenceObject& owner, SMFFile& source) : sequence(owner), file(source), tempo(&owner) {}

    void load(bool channelsToTracks);

private:
    void makeRoomForTempos();
    void loadTracks();
    void loadChannels();
    void makeChannels();
    void add(const SMFEvent& event, MusicTrackObject& track);
    void addNote(const SMFEvent& event, MusicTrackObject& track);
    std::byte* blank(const SMFEvent& event, MusicEventType type, MusicTrackObject& track);
    void addMeta(const SMFEvent& event, MusicTrackObject& track);
    void addRawData(const SMFEvent& event, MusicTrackObject& track);
    void collectChannels();
    void finish();

    double beats(std::uint64_t tick) const { return static_cast<double>(tick) / file.division; }

    MusicTrack newTrack(const Room& room);

    static std::size_t channelOf(const SMFEvent& event)
    {
        return event.isOfChannel() ? event.status & 0x0FU : 16U;
    }

    std::size_t firstTrack() const { return hasTempoTrack() ? 1 : 0; }

    bool hasTempoTrack() const;
    bool hasChannels() const;

    MusicSequenceObject& sequence;
    SMFFile& file;
    MusicTrackObject tempo;
    std::vector<MusicTrack> tracks;
    std::array<MusicTrack, 17> channels; // the last for what has no channel
};

void Loader::load(bool channelsToTracks)
{
    makeRoomForTempos();
    if (hasTempoTrack()) {
        for (const SMFEvent& event : file.eventsOf(file.tracks.front())) {
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

void Loader::makeRoomForTempos()
{
    const auto isTempo = [](const SMFEvent& event) { return event.kind == SMFEventKind::tempo; };
    std::size_t count = 0;
    for (const SMFTrack& track : file.tracks) {
        count += static_cast<std::size_t>(std::ranges::count_if(file.eventsOf(track), isTempo));
    }
    tempo.events.reserve(count, 0);
}

MusicTrack Loader::newTrack(const Room& room)
{
    auto track = std::make_shared<MusicTrackObject>(&sequence);
    track->events.reserve(room.events, room.words);
    return track;
}

void Loader::loadTracks()
{
    tracks.reserve(file.tracks.size());
    for (std::size_t i = firstTrack(); i < file.tracks.size(); ++i) {
        const SMFTrack& source = file.tracks[i];
        Room room;
        for (const SMFEvent& event : file.eventsOf(source)) {
            room.include(event);
        }
        const MusicTrack track = newTrack(room);
        for (const SMFEvent& event : file.eventsOf(source)) {
            add(event, *track);
        }
        track->length = std::max(track->length, beats(source.end));
        tracks.push_back(track);
    }
}

void Loader::loadChannels()
{
    makeChannels();
    for (std::size_t i = firstTrack(); i < file.tracks.size(); ++i) {
        const SMFTrack& source = file.tracks[i];
        const double end = beats(source.end);
        for (const SMFEvent& event : file.eventsOf(source)) {
            if (event.kind == SMFEventKind::tempo) {
                add(event, tempo);
                continue;
            }
            MusicTrackObject& track = *channels[channelOf(event)];
            add(event, track);
            track.length = std::max(track.length, end);
        }
    }
    collectChannels();
}

void Loader::makeChannels()
{
    std::array<Room, 17> rooms;
    for (std::size_t i = firstTrack(); i < file.tracks.size(); ++i) {
        for (const SMFEvent& event : file.eventsOf(file.tracks[i])) {
            rooms[channelOf(event)].include(event);
        }
    }
    for (std::size_t i = 0; i < rooms.size(); ++i) {
        channels[i] = rooms[i].events > 0 ? newTrack(rooms[i]) : nullptr;
    }
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

std::byte* Loader::blank(const SMFEvent& event, MusicEventType type, MusicTrackObject& track)
{
    const auto size = static_cast<std::uint32_t>(event.recordSize());
    return static_cast<std::byte*>(track.events.appendBlank(beats(event.tick), type, size));
}

void Loader::addMeta(const SMFEvent& event, MusicTrackObject& track)
{
    constexpr std::size_t head = offsetof(MIDIMetaEvent, data);
    auto* const record = blank(event, kMusicEventType_Meta, track);
    const MIDIMetaEvent start{event.data1, 0, 0, 0, event.length, {}};
    std::memcpy(record, &start, sizeof(start));
    std::memcpy(record + head, file.bytes.data() + event.end, event.length);
}

void Loader::addRawData(const SMFEvent& event, MusicTrackObject& track)
{
    constexpr std::size_t head = offsetof(MIDIRawData, data);
    const std::uint32_t lead = event.lead();
    auto* const record = blank(event, kMusicEventType_MIDIRawData, track);
    const MIDIRawData start{event.length + lead, {STATUS_SYSEX}};
    std::memcpy(record, &start, head + lead);
    std::memcpy(record + head + lead, file.bytes.data() + event.end, event.length);
}

void Loader::finish()
{
    sequence.replaceTracks(std::move(tracks));
    sequence.tempoTrack->events.exchange(tempo.events);
    sequence.tempoTrack->length = tempo.length;
    sequence.loadWarnings = std::move(file.warnings);
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
           std::ranges::all_of(file.eventsOf(file.tracks.front()), isTempo);
}

bool Loader::hasChannels() const
{
    const auto hasChannel = [this](const SMFTrack& track) {
        return std::ranges::any_of(file.eventsOf(track), &SMFEvent::isOfChannel);
    };
    return std::ranges::any_of(file.tracks, hasChannel);
}

} // namespace

OSStatus loadSMF(MusicSequenceObject& sequence, std::span<const std::uint8_t> bytes,
                 MusicSequenceLoadFlags flags)
try {
    SMFFile file;
    if (const OSStatus status = readSMF(bytes, file); status != noErr) {
        return status;
    }
    Loader(sequence, file).load((flags & kMusicSequenceLoadSMF_ChannelsToTracks) != 0);
    return noErr;
} catch (const std::exception&) {
    return fileIOErr;
}

} // namespace volvelle
