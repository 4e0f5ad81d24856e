#pragma once

#include "app/circle/CircleScene.h"

#include <QImage>
#include <QPainter>

#include <stop_token>

namespace volvelle {

// Paints a circle. Its notes stay in a picture; where some become thick or thin, all that touch these places
// are painted anew, in the order of the events and each once. [any]
class CirclePainter {
public:
    // Paints all of it from nothing, but of many thousands of arcs those that `chooseArcs` chooses. Asked to
    // stop, it leaves out the rest.
    static void paint(QPainter& painter, const CircleDrawing& drawing, const std::stop_token& stop = {});

    // Paints the circle as `drawSymbolMain` draws it, by way of the picture. It is made anew where anything
    // but the position has changed: beats, events, colours, frame, or what a length is in pixels. True where
    // that was so.
    bool paint(QPainter& painter, MIDICircleViewBase& circle, const CGRect& frame, ResizingBehavior resizing);

    // Brings the picture to the circle's position ahead of painting it in the same place. What this changes,
    // in pixels of the device; nothing where no note becomes thick or thin.
    QRegion move(MIDICircleViewBase& circle, const CGRect& frame, ResizingBehavior resizing);

private:
    // Where the picture's pixels stand.
    struct Grid {
        QTransform transform; // from lengths to pixels of the picture
        QPoint origin;        // of the picture, pixels of the device
        QSize size;           // pixels

        // Whether the same picture serves.
        bool isLike(const Grid& other) const;
    };

    static constexpr int tile = 8;          // pixels
    static constexpr int mostPixels = 8192; // of a picture's side; without one beyond

    CircleScene scene;
    Grid grid;
    QImage picture;
    int columns = 0;                     // of tiles
    std::vector<bool> chosen;            // of the arcs
    std::vector<std::vector<int>> tiles; // that each chosen arc may touch

    static Grid gridOf(const QPainter& painter, MIDICircleViewBase& circle, const CGRect& frame,
                       ResizingBehavior resizing);
    void paintAll();
    // Takes the tiles that these arcs touched and now touch; gives them, in pixels of the picture.
    QRegion paintChanged(const std::vector<int>& changed);
    std::vector<int> tilesOf(const CircleArc& arc) const;
    QRegion region(const std::vector<bool>& marked) const;
};

} // namespace volvelle
