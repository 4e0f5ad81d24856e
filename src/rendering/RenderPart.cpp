#include "rendering/RenderPart.h"

#include "rendering/BoundSpans.h"

#include "audio/FileTempo.h"
#include "base/realtime/AudioSink.h"
#include "services/audiograph/sequencer/SequencerEvents.h"
#include "services/musicsequence/TrackWalk.h"
#include "wire/DeviceChannels.h"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <limits>

namespace volvelle {

namespace {

constexpr double blocksPerSecond = AudioSource::sampleRate / RenderPart::blockFrames;
constexpr double shortestPart = 10.0;                                              // seconds
constexpr double longestPart = 300.0;                                              // seconds
constexpr double longestLength = RenderPart::longestPiece / blocksPerSecond + 1.0; // seconds
constexpr double chokingBeats = 8.0;  // in which a struck drum may still end another
constexpr std::uint8_t inaudible = 1; // velocity

int numberOfParts(double seconds, int cores)
{
    if (cores == 1) {
        return 1;
    }
    const double most = std::floor(seconds / shortestPart);
    const double rounds = std::ceil(seconds / longestPart / cores);
    return static_cast<int>(std::clamp(rounds * cores, 1.0, std::max(1.0, most)));
}

double beatsOf(const SequencerEvents& events)
{
    double beats = 0.0;
    for (const SequencerTrackInfo& track : events.tracks) {
        beats = std::max(beats, track.lengthInBeats);
    }
    return beats;
}

double lengthOf(const SequencerEvents& events)
{
    return std::min(events.tempo.seconds(beatsOf(events)), longestLength);
}

// The notes of a track by their place, so that they can be put back changed.
struct PlacedNote {
    double position = 0.0;
    MIDINoteMessage note;
};

// What of a track sounds on where its part ends: a key that is struck again then ends what it sounded before.
class KeysAtEnd {
public:
    explicit KeysAtEnd(const RenderPart& ofPart) : part(ofPart) {}

    void take(double position, const MIDIChannelMessage& message)
    {
        if (position < part.endBeats && isChannelStatus(message.status)) {
            channels.apply({message.status, message.data1, message.data2});
        }
    }

    void takeOwn(double position, const MIDINoteMessage& note)
    {
        struck.set(place(note));
        held.set(place(note), position + static_cast<double>(note.duration) > part.endBeats);
    }

    // Of a note after the part: whether it ends one of the part.
    bool ends(double position, const MIDINoteMessage& note)
    {
        const bool isDrum = note.channel == drumChannel && position < part.endBeats + chokingBeats;
        const bool isAgain = held.test(place(note)) || (struck.test(place(note)) && hasPedal(note.channel));
        struck.reset(place(note));
        held.reset(place(note));
        return isDrum || isAgain;
    }

private:
    static std::size_t place(const MIDINoteMessage& note)
    {
        return static_cast<std::size_t>(note.channel & 0x0FU) << 7U | (note.note & 0x7FU);
    }

    bool hasPedal(int channel) const
    {
        return std::ranges::any_of(
            holdPedals, [&](int pedal) { return channels[channel & 0x0F].controller(pedal) >= 64; });
    }

    const RenderPart& part;
    DeviceChannels channels;
    std::bitset<std::size_t{16} * 128> struck;
    std::bitset<std::size_t{16} * 128> held;
};

// Deletes the notes that are not the part's, and gathers those that are to come back softly.
OSStatus deleteNotes(const RenderPart& part, const MusicTrack& track, std::vector<PlacedNote>& soft)
{
    KeysAtEnd keys(part);
    return eraseEventsIf(track, [&](const TrackEvent& event) {
        if (event.type == kMusicEventType_MIDIChannelMessage) {
            keys.take(event.time, event.record<MIDIChannelMessage>());
        }
        if (event.type != kMusicEventType_MIDINoteMessage) {
            return false;
        }
        const auto& note = event.record<MIDINoteMessage>();
        if (event.time >= part.beginBeats && event.time < part.endBeats) {
            keys.takeOwn(event.time, note);
            return false;
        }
        if (event.time >= part.endBeats && keys.ends(event.time, note)) {
            soft.push_back({event.time, note});
            soft.back().note.velocity = inaudible;
        }
        return true;
    });
}

OSStatus eraseNotesOutside(const RenderPart& part, const MusicTrack& track)
{
    std::vector<PlacedNote> soft;
    OSStatus status = deleteNotes(part, track, soft);
    for (const PlacedNote& placed : soft) {
        status = status == noErr ? MusicTrackNewMIDINoteEvent(track, placed.position, placed.note) : status;
    }
    return status;
}

// The first beat from `beat` on where no note hangs on others, else that beat.
double seamFrom(double beat, const SequencerEvents& events, const BoundSpans& bound)
{
    constexpr double farthest = 32.0; // beats
    for (double seam = beat; seam < beat + farthest; seam += 1.0) {
        if (!bound.holds(events.tempo.seconds(seam))) {
            return seam;
        }
    }
    return beat;
}

} // namespace

std::vector<RenderPart> cutIntoParts(const MusicSequence& sequence, int cores)
{
    SequencerEvents events;
    if (events.read(sequence) != noErr) {
        return {};
    }
    const double seconds = lengthOf(events);
    const int count = numberOfParts(seconds, cores);
    const BoundSpans bound(events);
    std::vector<RenderPart> parts(1);
    for (int i = 1; i < count; ++i) {
        const double beat = seamFrom(std::ceil(events.tempo.beats(seconds * i / count)), events, bound);
        const double block = std::floor(events.tempo.seconds(beat) * blocksPerSecond);
        RenderPart part;
        part.beginBlock = static_cast<std::int64_t>(block);
        part.beginBeats = events.tempo.beats(block / blocksPerSecond);
        if (part.beginBlock > parts.back().beginBlock) {
            parts.back().endBlock = part.beginBlock;
            parts.back().endBeats = part.beginBeats;
            parts.push_back(part);
        }
    }
    parts.back().endBlock = static_cast<std::int64_t>(std::ceil(seconds * blocksPerSecond));
    parts.back().endBeats = std::numeric_limits<double>::infinity();
    for (RenderPart& part : parts) {
        part.lastBlock = parts.back().endBlock + RenderPart::longestTail;
    }
    return parts;
}

RenderPart sequencedPart(const MusicSequence& sequence)
{
    SequencerEvents events;
    FileTempo tempo;
    RenderPart part;
    part.isSequenced = true;
    if (events.read(sequence) == noErr && tempo.read(sequence) == noErr) {
        const double blocks = std::ceil(tempo.frameAt(beatsOf(events)) / RenderPart::blockFrames);
        part.endBlock = 1 + static_cast<std::int64_t>(std::min(blocks, longestLength * blocksPerSecond));
    }
    part.endBeats = std::numeric_limits<double>::infinity();
    part.lastBlock = part.endBlock + RenderPart::longestTail;
    return part;
}

OSStatus eraseNotesOutside(const RenderPart& part, const MusicSequence& sequence)
{
    std::uint32_t count = 0;
    OSStatus status = MusicSequenceGetTrackCount(sequence, count);
    for (std::uint32_t i = 0; i < count && status == noErr; ++i) {
        MusicTrack track;
        status = MusicSequenceGetIndTrack(sequence, i, track);
        status = status == noErr ? eraseNotesOutside(part, track) : status;
    }
    return status;
}

} // namespace volvelle
