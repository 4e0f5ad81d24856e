#include "cli/sound/RenderPart.h"

#include "services/audiodevice/AudioSink.h"
#include "services/audiograph/SequencerEvents.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace volvelle {

namespace {

constexpr double blocksPerSecond = AudioSource::sampleRate / RenderPart::blockFrames;
constexpr double shortestPart = 10.0; // seconds
constexpr double longestPart = 300.0; // seconds
constexpr double chokingBeats = 8.0;  // in which a struck drum may still end another
constexpr std::uint8_t drumChannel = 9;
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

double lengthOf(const SequencerEvents& events)
{
    double beats = 0.0;
    for (const SequencerTrackInfo& track : events.tracks) {
        beats = std::max(beats, track.lengthInBeats);
    }
    return events.tempo.seconds(beats);
}

// The notes of a track by their place, so that they can be put back changed.
struct PlacedNote {
    double position = 0.0;
    MIDINoteMessage note;
};

// Deletes the notes that are not the part's, and gathers those that are to come back softly.
OSStatus deleteNotes(const RenderPart& part, const MusicTrack& track, std::vector<PlacedNote>& soft)
{
    MusicEventIterator iterator;
    OSStatus status = NewMusicEventIterator(track, iterator);
    bool hasEvent = false;
    while (status == noErr && (status = MusicEventIteratorHasCurrentEvent(iterator, hasEvent)) == noErr &&
           hasEvent) {
        double position = 0.0;
        MusicEventType type = kMusicEventType_NULL;
        const void* payload = nullptr;
        std::uint32_t size = 0;
        status = MusicEventIteratorGetEventInfo(iterator, position, type, payload, size);
        const bool isOurs = position >= part.beginBeats && position < part.endBeats;
        if (status != noErr || type != kMusicEventType_MIDINoteMessage || isOurs) {
            status = status == noErr ? MusicEventIteratorNextEvent(iterator) : status;
            continue;
        }
        const MIDINoteMessage& note = *static_cast<const MIDINoteMessage*>(payload);
        const bool isSoonAfter = position >= part.endBeats && position < part.endBeats + chokingBeats;
        if (isSoonAfter && note.channel == drumChannel) {
            soft.push_back({position, note});
            soft.back().note.velocity = inaudible;
        }
        status = MusicEventIteratorDeleteEvent(iterator);
    }
    return status == kAudioToolboxErr_EndOfTrack ? noErr : status;
}

OSStatus keepNotesOf(const RenderPart& part, const MusicTrack& track)
{
    std::vector<PlacedNote> soft;
    OSStatus status = deleteNotes(part, track, soft);
    for (const PlacedNote& placed : soft) {
        status = status == noErr ? MusicTrackNewMIDINoteEvent(track, placed.position, placed.note) : status;
    }
    return status;
}

} // namespace

std::vector<RenderPart> renderParts(const MusicSequence& sequence, int cores)
{
    SequencerEvents events;
    if (events.read(sequence) != noErr) {
        return {};
    }
    const double seconds = lengthOf(events);
    const int count = numberOfParts(seconds, cores);
    std::vector<RenderPart> parts(1);
    for (int i = 1; i < count; ++i) {
        const double beat = std::ceil(events.tempo.beats(seconds * i / count));
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
    return parts;
}

OSStatus keepNotesOf(const RenderPart& part, const MusicSequence& sequence)
{
    std::uint32_t count = 0;
    OSStatus status = MusicSequenceGetTrackCount(sequence, count);
    for (std::uint32_t i = 0; i < count && status == noErr; ++i) {
        MusicTrack track;
        status = MusicSequenceGetIndTrack(sequence, i, track);
        status = status == noErr ? keepNotesOf(part, track) : status;
    }
    return status;
}

} // namespace volvelle
