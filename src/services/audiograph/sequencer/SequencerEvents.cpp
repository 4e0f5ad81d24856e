#include "services/audiograph/sequencer/SequencerEvents.h"

#include "wire/SystemExclusive.h"

#include <algorithm>
#include <limits>
#include <set>
#include <tuple>
#include <utility>

namespace volvelle {

namespace {

OSStatus readLength(const MusicTrack& track, double& length)
{
    std::uint32_t size = sizeof(length);
    return MusicTrackGetProperty(track, kSequenceTrackProperty_TrackLength, &length, size);
}

} // namespace

OSStatus SequencerEvents::read(const MusicSequence& sequence)
{
    MusicTrack track;
    std::uint32_t count = 0;
    OSStatus status = MusicSequenceGetTempoTrack(sequence, track);
    status = status == noErr ? readTempo(track) : status;
    status = status == noErr ? readTrack(track, 0) : status;
    status = status == noErr ? MusicSequenceGetTrackCount(sequence, count) : status;
    count = std::min<std::uint32_t>(count, std::numeric_limits<std::uint16_t>::max());
    tracks.resize(count + 1U);
    for (std::uint32_t i = 0; i < count && status == noErr; ++i) {
        status = MusicSequenceGetIndTrack(sequence, i, track);
        status = status == noErr ? readTrack(track, static_cast<std::uint16_t>(i + 1)) : status;
    }
    order();
    findStates();
    findPrograms();
    return status;
}

OSStatus SequencerEvents::readTempo(const MusicTrack& track)
{
    return forEachEvent(track, [this](const TrackEvent& event) {
        if (event.type == kMusicEventType_ExtendedTempo) {
            tempo.add(event.time, event.record<ExtendedTempoEvent>().bpm);
        }
    });
}

OSStatus SequencerEvents::readTrack(const MusicTrack& track, std::uint16_t index)
{
    const OSStatus status =
        forEachEvent(track, [this, index](const TrackEvent& event) { readEvent(event, index); });
    return status == noErr ? readLength(track, tracks[index].lengthInBeats) : status;
}

void SequencerEvents::readEvent(const TrackEvent& event, std::uint16_t index)
{
    switch (event.type) {
    case kMusicEventType_MIDINoteMessage:
        return readNote(event.time, event.record<MIDINoteMessage>(), index);
    case kMusicEventType_MIDIChannelMessage:
        return readMessage(event.time, event.record<MIDIChannelMessage>(), index);
    case kMusicEventType_MIDIRawData:
        return readLong(event.time, event.record<MIDIRawData>(), index);
    case kMusicEventType_Meta:
        return readMeta(event.record<MIDIMetaEvent>());
    default:
        return;
    }
}

void SequencerEvents::readNote(double beat, const MIDINoteMessage& note, std::uint16_t index)
{
    const auto channel = static_cast<std::uint8_t>(note.channel & 0x0F);
    SequencerEvent event;
    event.seconds = tempo.seconds(beat);
    event.partner = std::max(event.seconds, tempo.seconds(beat + static_cast<double>(note.duration)));
    event.track = index;
    event.kind = SequencerEvent::noteOn;
    event.releaseVelocity = note.releaseVelocity;
    event.bytes = {statusOf(STATUS_NOTEON, channel), note.note, std::max<std::uint8_t>(note.velocity, 1)};
    events.push_back(event);
    std::swap(event.seconds, event.partner);
    event.kind = SequencerEvent::noteOff;
    event.bytes = {statusOf(STATUS_NOTEOFF, channel), note.note, note.releaseVelocity};
    events.push_back(event);
    tracks[index].channels = static_cast<std::uint16_t>(tracks[index].channels | 1U << channel);
}

void SequencerEvents::readMessage(double beat, const MIDIChannelMessage& message, std::uint16_t index)
{
    if (!isChannelStatus(message.status)) {
        return;
    }
    const ShortMessage bytes{message.status, message.data1, message.data2};
    const bool isEnd =
        isController(bytes, CONTROLLER_ALL_SOUND_OFF) || isController(bytes, CONTROLLER_NOTES_OFF);
    SequencerEvent event;
    event.seconds = tempo.seconds(beat);
    event.track = index;
    event.kind = kindOf(bytes) >= STATUS_PPRESSURE && !isEnd ? SequencerEvent::state : SequencerEvent::other;
    event.bytes = bytes;
    events.push_back(event);
    tracks[index].channels = static_cast<std::uint16_t>(tracks[index].channels | 1U << channelOf(bytes));
}

void SequencerEvents::readLong(double beat, const MIDIRawData& data, std::uint16_t index)
{
    if (data.length < 2 || data.data[0] != STATUS_SYSEX || data.data[data.length - 1] != STATUS_EOX) {
        return;
    }
    SequencerEvent event;
    event.seconds = tempo.seconds(beat);
    event.track = index;
    event.kind = SequencerEvent::longMessage;
    event.longIndex = static_cast<std::uint32_t>(longMessages.size());
    longMessages.emplace_back(data.data, data.data + data.length);
    events.push_back(event);
}

void SequencerEvents::readMeta(const MIDIMetaEvent& meta)
{
    std::string* text = meta.metaEventType == META_TRACKNAME   ? &title
                        : meta.metaEventType == META_COPYRIGHT ? &copyright
                                                               : nullptr;
    if (text != nullptr && text->empty()) {
        text->assign(meta.data, meta.data + meta.dataLength);
    }
}

// Exclusives stand on a track of their own, after those of the channels: a reset comes before what is set
// after it at the same time.
void SequencerEvents::order()
{
    const auto isLater = [](const SequencerEvent& event) {
        return event.kind != SequencerEvent::longMessage;
    };
    std::ranges::stable_sort(
        events, {}, [&](const SequencerEvent& event) { return std::pair(event.seconds, isLater(event)); });
}

// Note-ons count where a key to glide from waits for them.
void SequencerEvents::findStates()
{
    std::uint16_t waiting = 0; // channels
    for (const SequencerEvent& event : events) {
        const bool isExclusive = event.kind == SequencerEvent::longMessage;
        const auto channel = static_cast<std::uint16_t>(isExclusive ? 0 : 1U << channelOf(event.bytes));
        if (isController(event.bytes, CONTROLLER_PORTAMENTO_KEY)) {
            waiting = static_cast<std::uint16_t>(waiting | channel);
        }
        const bool isGlide = event.kind == SequencerEvent::noteOn && (waiting & channel) != 0;
        if (isGlide) {
            waiting = static_cast<std::uint16_t>(waiting & ~channel);
        }
        if (event.kind == SequencerEvent::state || isExclusive || isGlide) {
            states.push_back({event.seconds, event.longIndex, event.track, event.bytes});
        }
    }
}

void SequencerEvents::findPrograms()
{
    using Key = std::tuple<std::uint16_t, int, int, int, int>;
    std::set<Key> found;
    std::vector<std::array<SequencerProgram, channelCount>> currents(tracks.size());
    for (const SequencerEvent& event : events) {
        if (event.kind == SequencerEvent::longMessage) {
            if (effectOf(longMessages[event.longIndex]) == ExclusiveEffect::reset) {
                currents.assign(tracks.size(), {});
            }
            continue;
        }
        const auto channel = static_cast<std::uint8_t>(channelOf(event.bytes));
        SequencerProgram& current = currents[event.track][channel];
        const bool isProgram = kindOf(event.bytes) == STATUS_PROGRAM;
        if (isController(event.bytes, CONTROLLER_BANKSELECT_MSB)) {
            current.bankMSB = event.bytes[2];
        } else if (isController(event.bytes, CONTROLLER_BANKSELECT_LSB)) {
            current.bankLSB = event.bytes[2];
        } else if (isProgram) {
            current.program = event.bytes[1];
        }
        current.track = event.track;
        current.channel = channel;
        const bool isUse = isProgram || event.kind == SequencerEvent::noteOn;
        if (isUse && found.insert({current.track, channel, current.bankMSB, current.bankLSB, current.program})
                         .second) {
            programs.push_back(current);
        }
    }
}

SequencerEvents SequencerEvents::with(std::vector<SequencerEvent> others) const
{
    SequencerEvents result;
    result.events = std::move(others);
    result.states = states;
    result.longMessages = longMessages;
    result.tracks = tracks;
    result.tempo = tempo;
    result.title = title;
    result.copyright = copyright;
    result.order();
    result.findPrograms();
    return result;
}

std::size_t SequencerEvents::firstFrom(double seconds) const noexcept
{
    const auto first = std::lower_bound(events.begin(), events.end(), seconds,
                                        [](const SequencerEvent& e, double s) { return e.seconds < s; });
    return static_cast<std::size_t>(first - events.begin());
}

} // namespace volvelle
