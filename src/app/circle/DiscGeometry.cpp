#include "app/circle/DiscGeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace volvelle {

namespace {

constexpr double turn = 2.0 * std::numbers::pi;
constexpr double leastGap = 4.0; // pixels from tick to tick

// A beat count and a bar that angles can be made of.
bool hasTurn(const DiscContent& content)
{
    return std::isfinite(content.beats) && content.beats > 0.0;
}

std::string shortNumber(double value)
{
    const double tenths = std::round(value * 10.0);
    std::string number = std::to_string(std::lround(tenths) / 10);
    if (const long rest = std::lround(tenths) % 10; rest != 0) {
        number += "." + std::to_string(rest);
    }
    return number;
}

} // namespace

DiscGeometry::DiscGeometry(const DiscContent& content, double side) : unit(unitOf(content, side))
{
    const double tip = 254.5;
    const double half = std::max(5.5, 5.5 / unit);
    index = {{{0.0, -tip}, {half, -tip - 10.0}, {-half, -tip - 10.0}}};
    if (content.isSmall) {
        return;
    }
    for (int key = 36; key <= 96; key += 12) {
        octaves.push_back(2.0 * (key + 24));
    }
    if (hasTurn(content)) {
        makeTicks(content);
        makeChords(content);
    }
    move(content);
}

void DiscGeometry::move(const DiscContent& content)
{
    wedge = elapsed = sounding = std::nullopt;
    soundingChord = std::nullopt;
    chordName.clear();
    if (content.isSmall) {
        return;
    }
    makeTexts(content);
    if (hasTurn(content)) {
        findChord(content);
        makeMoving(content);
    }
}

double DiscGeometry::unitOf(const DiscContent& content, double side)
{
    return side / (content.isSmall ? smallSideUnits : sideUnits);
}

CGPoint DiscGeometry::place(double angle, double radius)
{
    return {radius * std::sin(angle), -radius * std::cos(angle)};
}

CGRect DiscGeometry::around(const Sector& sector, double inner, double outer)
{
    const double end = sector.start + sector.sweep;
    std::vector<CGPoint> points{place(sector.start, inner), place(sector.start, outer), place(end, inner),
                                place(end, outer)};
    constexpr double quarter = turn / 4.0;
    for (double side = std::ceil(sector.start / quarter); side * quarter < end; ++side) {
        points.push_back(place(side * quarter, outer));
    }
    const auto [left, right] = std::ranges::minmax(points, {}, &CGPoint::x);
    const auto [top, bottom] = std::ranges::minmax(points, {}, &CGPoint::y);
    return {left.x, top.y, right.x - left.x, bottom.y - top.y};
}

double DiscGeometry::angle(double beats, const DiscContent& content)
{
    return std::clamp(beats / content.beats, 0.0, 1.0) * turn;
}

void DiscGeometry::makeTicks(const DiscContent& content)
{
    const double pixels = turn * scaleInner * unit / content.beats; // a beat
    if (unit * sideUnits >= 400.0 && content.beats <= 32.0) {
        addTicks(content.beats, 0.25, Step::sixteenth, 259.5);
    }
    if (pixels >= leastGap) {
        addTicks(content.beats, 1.0, Step::beat, 263.5);
    }
    double bar = content.beatsPerBar > 0.0 ? content.beatsPerBar : 4.0;
    while (bar * pixels < leastGap) {
        bar *= 2.0;
    }
    addTicks(content.beats, bar, Step::bar, scaleOuter);
}

// A tick where a longer one stands is taken out again.
void DiscGeometry::addTicks(double beats, double step, Step kind, double outer)
{
    for (int i = 0; i * step < beats; ++i) {
        const double place = i * step / beats * turn;
        std::erase_if(ticks, [&](const Tick& tick) { return std::abs(tick.angle - place) < 1e-9; });
        ticks.push_back({place, kind, outer});
        if (kind == Step::bar) {
            spokes.push_back(place);
        }
    }
}

void DiscGeometry::makeChords(const DiscContent& content)
{
    for (std::size_t i = 0; i < content.chords.size(); ++i) {
        const double start = content.chords[i].position;
        const double end = i + 1 < content.chords.size() ? content.chords[i + 1].position : content.beats;
        if (!(start >= 0.0 && start < content.beats && end > start)) {
            continue;
        }
        const double length = std::min(end, content.beats) - start;
        const double middle = angle(start + (length < 4.0 ? length / 2.0 : 2.0), content);
        const Sector sector{angle(start, content), angle(length, content)};
        chords.push_back({start, end, sector, content.chords[i].name, middle, std::cos(middle) < -1e-9,
                          sector.sweep * nameRadius});
    }
}

void DiscGeometry::findChord(const DiscContent& content)
{
    const auto next = std::ranges::upper_bound(chords, content.position, {}, &Chord::begin);
    if (next == chords.begin() || !(content.position < (next - 1)->end)) {
        return;
    }
    const Chord& chord = *(next - 1);
    soundingChord = static_cast<std::size_t>(next - chords.begin()) - 1;
    chordName = chord.name;
    sounding = content.isPlaying ? std::optional(chord.sector) : std::nullopt;
}

void DiscGeometry::makeTexts(const DiscContent& content)
{
    if (!content.hasTexts) {
        return;
    }
    const double bar = content.beatsPerBar > 0.0 ? content.beatsPerBar : 4.0;
    const double position = std::isfinite(content.position) ? std::clamp(content.position, 0.0, 1e9) : 0.0;
    const double bars = std::floor(std::min(position / bar, 1e9));
    positionText = std::to_string(std::lround(bars) + 1) + "." +
                   std::to_string(std::lround(std::floor(std::min(position - bars * bar, 1e9))) + 1);
    tempoText = std::isfinite(content.tempo) ? shortNumber(std::clamp(content.tempo, 0.0, 1e6)) + " bpm" : "";
}

void DiscGeometry::makeMoving(const DiscContent& content)
{
    if (!content.isPlaying || !std::isfinite(content.position)) {
        return;
    }
    elapsed = Sector{0.0, angle(content.position, content)};
    if (content.position >= 0.0 && content.position < content.beats) {
        const double start = angle(content.position, content);
        wedge = Sector{start, angle(content.position + 1.0, content) - start};
    }
}

} // namespace volvelle
