#include "rendering/PartNotes.h"

#include "wire/DeviceChannels.h"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace volvelle {

namespace {

constexpr double chokingBeats = 8.0;  // in which a struck drum may still end another
constexpr std::uint8_t inaudible = 1; // velocity

// When a part begins, ends, and no longer chokes, in seconds: as a sequencer that starts at its beats has it.
struct PartSpan {
    PartSpan(const RenderPart& part, const TempoMap& tempo) : begin(tempo.seconds(part.beginBeats))
    {
        if (std::isfinite(part.endBeats)) {
            end = tempo.seconds(part.endBeats);
            choking = tempo.seconds(part.endBeats + chokingBeats);
        }
    }

    bool holds(double seconds) const { return seconds >= begin && seconds < end; }

    double begin;
    double end = std::numeric_limits<double>::infinity();
    double choking = end;
};

// How a note after a part ends what the part left sounding: where a pedal holds that, a release does not.
enum class Ending : std::uint8_t { none, release, strike };

// What of a piece sounds on where a part ends: a key that is struck again then ends what it sounded before.
class KeysAtEnd {
public:
    explicit KeysAtEnd(const PartSpan& span) : end(span.end), choking(span.choking) {}

    void take(const SequencerEvent& event)
    {
        now.apply(event.bytes);
        if (event.seconds < end) {
            atEnd.apply(event.bytes);
        }
    }

    void takeOwn(const SequencerEvent& note)
    {
        struck.set(place(note));
        held.set(place(note), note.partner > end);
    }

    // Of a note after the part: how it ends one of the part.
    Ending endingBy(const SequencerEvent& note)
    {
        const int channel = channelOf(note.bytes);
        const bool isDrum = channel == drumChannel && note.seconds < choking;
        const bool isHeld = held.test(place(note));
        const bool hangs = struck.test(place(note)) && hasPedal(atEnd[channel]);
        struck.reset(place(note));
        held.reset(place(note));
        if (isDrum || hangs || (isHeld && hasPedal(now[channel]))) {
            return Ending::strike;
        }
        return isHeld ? Ending::release : Ending::none;
    }

private:
    static std::size_t place(const SequencerEvent& note)
    {
        return static_cast<std::size_t>(channelOf(note.bytes)) << 7U | (note.bytes[1] & 0x7FU);
    }

    static bool hasPedal(const ChannelState& channel)
    {
        return std::ranges::any_of(holdPedals, [&](int pedal) { return channel.controller(pedal) >= 64; });
    }

    double end;     // seconds, as the next
    double choking; // up to here
    DeviceChannels atEnd;
    DeviceChannels now;
    std::bitset<std::size_t{16} * 128> struck;
    std::bitset<std::size_t{16} * 128> held;
};

SequencerEvent releaseOf(const SequencerEvent& note, double begin, double end)
{
    SequencerEvent release = note;
    release.kind = SequencerEvent::noteOff;
    release.seconds = end;
    release.partner = begin;
    release.bytes = {statusOf(STATUS_NOTEOFF, channelOf(note.bytes)), note.bytes[1], note.releaseVelocity};
    return release;
}

// The note is not heard, or as soft as can be; what it releases began in the part.
void addEnding(std::vector<SequencerEvent>& events, SequencerEvent note, Ending ending, const PartSpan& part)
{
    if (ending == Ending::release) {
        events.push_back(releaseOf(note, part.begin, note.seconds));
    } else if (ending == Ending::strike) {
        note.bytes[2] = inaudible;
        events.push_back(note);
        events.push_back(releaseOf(note, note.seconds, note.partner));
    }
}

} // namespace

SequencerEvents notesOf(const RenderPart& part, const SequencerEvents& piece)
{
    const PartSpan span(part, piece.tempo);
    KeysAtEnd keys(span);
    std::vector<SequencerEvent> kept;
    for (const SequencerEvent& event : piece.events) {
        if (event.kind == SequencerEvent::noteOff) {
            const bool isEarlier = event.partner < span.begin && event.seconds > span.begin;
            if (isEarlier || span.holds(event.partner)) {
                kept.push_back(event);
            }
            continue;
        }
        if (event.kind != SequencerEvent::noteOn) {
            if (event.kind != SequencerEvent::longMessage) {
                keys.take(event);
            }
            kept.push_back(event);
        } else if (span.holds(event.seconds)) {
            keys.takeOwn(event);
            kept.push_back(event);
        } else if (event.seconds >= span.end) {
            addEnding(kept, event, keys.endingBy(event), span);
        }
    }
    return piece.with(std::move(kept));
}

} // namespace volvelle
