#include "services/musicsequence/smf/SMFTimeBase.h"

#include <algorithm>
#include <cmath>

namespace volvelle {

namespace {

constexpr double ticksASecond = 960.0; // 480 a beat at 120 beats a minute
constexpr double greatestTick = 1.0e18;

std::uint64_t scaled(std::uint64_t tick, double factor)
{
    return static_cast<std::uint64_t>(
        std::llround(std::min(static_cast<double>(tick) * factor, greatestTick)));
}

void dropTempos(SMFFile& file, SMFTrack& track)
{
    std::size_t kept = 0;
    for (const SMFEvent& event : file.eventsOf(track)) {
        if (event.kind != SMFEventKind::tempo) {
            file.events[track.first + kept++] = event;
        }
    }
    track.count = kept;
}

void scale(SMFFile& file, SMFTrack& track, double factor)
{
    dropTempos(file, track);
    for (SMFEvent& event : file.eventsOf(track)) {
        event.tick = scaled(event.tick, factor);
        event.end = event.kind == SMFEventKind::note ? scaled(event.end, factor) : event.end;
    }
    track.end = scaled(track.end, factor);
}

} // namespace

void applyTimeBase(int division, SMFFile& file, SMFWarnings& warnings)
{
    const int frames = 256 - division / 256;
    const int ticksAFrame = division % 256;
    file.division = 480;
    if (division == 0) {
        warnings.add("The file does not say how long a beat is; 480 ticks a beat were assumed.");
    } else if (division < 0x8000) {
        file.division = division;
    } else if (ticksAFrame == 0) {
        warnings.add("The file's time code has no ticks; 480 ticks a beat were assumed.");
    } else {
        const double rate = frames == 29 ? 30000.0 / 1001.0 : frames;
        warnings.add("The file counts time in frames; it was read at 120 beats a minute.");
        for (SMFTrack& track : file.tracks) {
            scale(file, track, ticksASecond / (rate * ticksAFrame));
        }
    }
}

void layTracksInARow(SMFFile& file)
{
    std::uint64_t start = 0;
    for (SMFTrack& track : file.tracks) {
        for (SMFEvent& event : file.eventsOf(track)) {
            event.tick += start;
            event.end += event.kind == SMFEventKind::note ? start : 0;
        }
        track.end += start;
        start = track.end;
    }
}

} // namespace volvelle
