#pragma once

#include "app/circle/DiscContent.h"
#include "app/circle/DiscGeometry.h"
#include "app/circle/MIDICircleViewBase.h"
#include "app/screens/Tokens.h"

#include <QImage>
#include <QPainter>

#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace volvelle {

// Paints the disc that the notes lie on, a square from 0, 0 on. What stands still is kept as a picture, and
// made anew with another side, theme, document or pixel ratio; a second one has the chords as well, and is
// made anew with each that begins to sound, its hub with each beat. [any]
class DiscPainter {
public:
    // `side`: lengths. The painter must be neither turned nor scaled but by its device. True where the
    // picture was made anew.
    bool paint(QPainter& painter, const DiscContent& content, double side, Theme theme);

    // Brings what moves to the content's position ahead of painting it. What this changes, in lengths.
    QRegion move(const DiscContent& content);

    // Where the circle's canvas goes.
    static CGRect canvas(const DiscContent& content, double side);

private:
    // What the kept picture shows.
    struct Ground {
        DiscContent content;
        double side = 0.0;
        double ratio = 0.0;
        Theme theme = Theme::dark;
        DiscGeometry geometry;

        // But for what moves.
        bool isOf(const DiscContent& drawn, double drawnSide, double drawnRatio, Theme drawnTheme) const;
    };

    // What the second picture shows.
    struct Shown {
        std::optional<DiscGeometry::Sector> sounding;
        std::optional<std::size_t> chord;
        std::string name, position; // in the hub

        bool operator==(const Shown&) const = default;
    };

    static Shown shownBy(const DiscGeometry& disc);

    // Brings pictures and geometry up to date; true where all is new.
    bool keep(const DiscContent& content, double side, double ratio, Theme theme);
    // Moves the geometry and paints the second picture's changes; gives them, in lengths.
    QRegion keepShown(const DiscContent& content);
    // The second picture within a frame of all, or of the hub.
    void paintShown(const QRect& changed);

    // In lengths: all of the disc, and the least frame around a part of a ring, so many units more at each
    // side.
    QRect all() const;
    QRect frame(const DiscGeometry::Sector& sector, double inner, double outer, double more = 0.0) const;

    std::unique_ptr<Ground> ground; // null before it was painted
    QImage still;
    QImage named; // with chords and hub
    Shown shown;
};

// A whole disc with its notes: `side` lengths wide, each `ratio` pixels. The notes of a small one are never
// thick. One that is asked to stop lacks notes.
QImage discImage(const DiscContent& content, MIDICircleViewBase& circle, int side, double ratio, Theme theme,
                 const std::stop_token& stop = {});

} // namespace volvelle
