#include "services/musicsequence/smf/SMFTimeBase.h"

#include "base/Text.h"

#include <algorithm>
#include <cmath>

namespace volvelle {

namespace {

constexpr double ticksASecond = 960.0; // 480 a beat at 120 beats a minute
constexpr double greatestTick = 1.0e18;
constexpr std::uint64_t mostBeats = 100'000'000'000;

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

void limitTime(SMFFile& file, SMFWarnings& warnings)
{
    const std::uint64_t last = mostBeats * static_cast<std::uint64_t>(file.division);
    std::size_t dropped = 0;
    for (SMFTrack& track : file.tracks) {
        auto events = file.eventsOf(track);
        const auto beyond = std::ranges::partition_point(
            events, [last](const SMFEvent& event) { return event.tick <= last; });
        const auto kept = static_cast<std::size_t>(beyond - events.begin());
        dropped += track.count - kept;
        track.count = kept;
        track.end = std::min(track.end, last);
        for (SMFEvent& event : file.eventsOf(track)) {
            event.end = event.kind == SMFEventKind::note ? std::min(event.end, last) : event.end;
        }
    }
    if (dropped > 0) {
        warnings.add(counted(dropped, "event beyond 100,000,000,000 beats was left out.",
                             "events beyond 100,000,000,000 beats were left out."));
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
