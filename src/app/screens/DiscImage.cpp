#include "app/screens/DiscImage.h"

#include "app/circle/GraphicsContext.h"
#include "app/circle/MIDICircleViewBase.h"
#include "app/screens/CirclePainter.h"
#include "app/screens/DiscPainter.h"

#include <cmath>

namespace volvelle {

namespace {

constexpr double faintness = 0.17; // of white notes

QImage clearImage(int side, double ratio)
{
    const int pixels = static_cast<int>(std::lround(side * ratio));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    return image;
}

} // namespace

QImage smallDiscImage(MIDICircleViewDelegate& music, int side, double ratio, Theme theme,
                      const std::stop_token& stop)
{
    MIDICircleViewBase circle;
    circle.makeColors();
    circle.delegate = &music;
    DiscContent content;
    content.beats = music.getBeatCount();
    content.isSmall = true;
    return discImage(content, circle, side, ratio, theme, stop);
}

QImage faintDiscImage(MIDICircleViewDelegate& music, int side, double ratio, Theme theme)
{
    MIDICircleViewBase circle;
    circle.makeColors();
    circle.delegate = &music;
    circle.currentBeat = -1.0;
    DiscContent content;
    content.beats = music.getBeatCount();
    content.hasTexts = false;
    QImage image = clearImage(side, ratio);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    DiscPainter().paint(painter, content, side, theme);
    GraphicsContext context;
    const GraphicsContext::Current current(context);
    circle.drawSymbolMain(DiscPainter::canvas(content, side), ResizingBehavior::fitInside);
    for (CircleArc& arc : context.drawing.arcs) {
        arc.color = {1.0, 1.0, 1.0, faintness};
    }
    CirclePainter::paint(painter, context.drawing);
    return image;
}

QImage documentDiscImage(MIDICircleViewDelegate& music, const DocumentOverview& overview,
                         std::optional<double> beat, int side, double ratio, Theme theme)
{
    MIDICircleViewBase circle;
    circle.makeColors();
    circle.delegate = &music;
    circle.currentBeat = beat.value_or(0.0);
    DiscContent content = discContentOf(overview, music.getBeatCount());
    content.position = circle.currentBeat;
    content.isPlaying = beat.has_value();
    return discImage(content, circle, side, ratio, theme);
}

DiscContent discContentOf(const DocumentOverview& overview, double beats)
{
    DiscContent content;
    content.beats = beats;
    content.beatsPerBar = DocumentOverview::beatsPerBar;
    content.tempo = overview.bpm;
    for (const DocumentOverview::Chord& chord : overview.chords) {
        content.chords.push_back({chord.position, chord.name});
    }
    return content;
}

} // namespace volvelle
