#include "rendering/PartNotes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace volvelle {

namespace {

constexpr double chokingBeats = 8.0;  // in which a struck drum may still end another
constexpr std::uint8_t inaudible = 1; // velocity

// Each of them ends the others: scratches, hi-hats, whistles, guiros, cuicas, triangles and surdos.
constexpr std::array<std::array<int, 3>, 7> drumsThatChoke{
    {{29, 30, 30}, {42, 44, 46}, {71, 72, 72}, {73, 74, 74}, {78, 79, 79}, {80, 81, 81}, {86, 87, 87}}};

// When a part begins, ends, and no longer chokes, in seconds: as a sequencer that starts at its beats has it.
struct PartSpan {
    PartSpan(const RenderPart& part, const TempoMap& tempo) : begin(tempo.seconds(part.beginBeats))
    {
        if (std::isfinite(part.endBeats)) {
            end = tempo.seconds(part.endBeats);
            ringing = tempo.seconds(std::max(0.0, part.endBeats - chokingBeats));
            choking = tempo.seconds(part.endBeats + chokingBeats);
        }
    }

    bool holds(double seconds) const { return seconds >= begin && seconds < end; }

    double begin;
    double end = std::numeric_limits<double>::infinity();
    double ringing = end; // from here on
    double choking = end; // up to here
};

// The drums that ring where a part ends, until one of them is struck after it.
class RingingDrums {
public:
    explicit RingingDrums(const PartSpan& span) : span(span) {}

    void takeOwn(const SequencerEvent& note)
    {
        if (note.seconds >= span.ringing) {
            setRinging(note, true);
        }
    }

    // Of a note after the part.
    bool isChokedBy(const SequencerEvent& note)
    {
        return note.seconds < span.choking && setRinging(note, false);
    }

private:
    // What was so before.
    bool setRinging(const SequencerEvent& note, bool isRinging)
    {
        if (channelOf(note.bytes) != drumChannel) {
            return false;
        }
        const auto isOne = [&note](const auto& drums) {
            return std::ranges::find(drums, int{note.bytes[1]}) != drums.end();
        };
        const auto found = std::ranges::find_if(drumsThatChoke, isOne);
        return found != drumsThatChoke.end() &&
               std::exchange(ringing[static_cast<std::size_t>(found - drumsThatChoke.begin())], isRinging);
    }

    const PartSpan& span;
    std::array<bool, drumsThatChoke.size()> ringing{};
};

// A note-on as soft as can be, and its end.
void addSoftly(std::vector<SequencerEvent>& events, SequencerEvent note)
{
    note.bytes[2] = inaudible;
    events.push_back(note);
    std::swap(note.seconds, note.partner);
    note.kind = SequencerEvent::noteOff;
    note.bytes = {statusOf(STATUS_NOTEOFF, channelOf(note.bytes)), note.bytes[1], note.releaseVelocity};
    events.push_back(note);
}

} // namespace

SequencerEvents notesOf(const RenderPart& part, const SequencerEvents& piece)
{
    const PartSpan span(part, piece.tempo);
    RingingDrums drums(span);
    std::vector<SequencerEvent> kept;
    for (const SequencerEvent& event : piece.events) {
        if (event.kind == SequencerEvent::noteOff) {
            if (span.holds(event.partner)) {
                kept.push_back(event);
            }
        } else if (event.kind != SequencerEvent::noteOn) {
            kept.push_back(event);
        } else if (span.holds(event.seconds)) {
            drums.takeOwn(event);
            kept.push_back(event);
        } else if (event.seconds >= span.end && drums.isChokedBy(event)) {
            addSoftly(kept, event);
        }
    }
    return piece.with(std::move(kept));
}

} // namespace volvelle
