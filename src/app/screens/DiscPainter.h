#pragma once

#include "app/circle/DiscContent.h"
#include "app/circle/DiscGeometry.h"
#include "app/circle/MIDICircleViewBase.h"
#include "app/screens/Tokens.h"

#include <QImage>
#include <QPainter>

#include <optional>
#include <stop_token>

namespace volvelle {

// Paints the disc that the notes lie on, a square from 0, 0 on. What stands still is kept as a picture, and
// made anew with another side, theme, document or pixel ratio; a second one has the chords as well, and is
// made anew with each that begins to sound. [any]
class DiscPainter {
public:
    // `side`: lengths. The painter must be neither turned nor scaled but by its device.
    void paint(QPainter& painter, const DiscContent& content, double side, Theme theme);

    // Where the circle's canvas goes.
    static CGRect canvas(const DiscContent& content, double side);

private:
    // What the kept picture shows.
    struct Ground {
        DiscContent content;
        double side = 0.0;
        double ratio = 0.0;
        Theme theme = Theme::dark;

        // But for what moves.
        bool isOf(const DiscContent& drawn, double drawnSide, double drawnRatio, Theme drawnTheme) const;
    };

    // Brings pictures and geometry up to date.
    const DiscGeometry& keep(const DiscContent& content, double side, double ratio, Theme theme);
    void paintChords(const DiscGeometry& disc, bool isSmall, double side, const Tokens& tokens);

    std::optional<Ground> ground;
    std::optional<DiscGeometry> geometry;
    QImage still;
    QImage named;                                    // with the chords
    std::optional<DiscGeometry::Sector> namedSector; // that sounds there, as the next
    std::optional<std::size_t> namedChord;
};

// A whole disc with its notes: `side` lengths wide, each `ratio` pixels. The notes of a small one are never
// thick. One that is asked to stop lacks notes.
QImage discImage(const DiscContent& content, MIDICircleViewBase& circle, int side, double ratio, Theme theme,
                 const std::stop_token& stop = {});

} // namespace volvelle
