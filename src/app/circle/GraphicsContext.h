#pragma once

#include "app/circle/CGAffineTransform.h"
#include "app/circle/CircleDrawing.h"

#include <cstddef>
#include <vector>

namespace volvelle {

// Keeps what is drawn as plain values in the coordinates of the device. Strokes have round ends. [any] Each
// thread has a current one of its own.
class GraphicsContext {
public:
    // The context of the present draw call; none is a fatal stop.
    static GraphicsContext& current();

    // Makes a context the current one as long as it lives.
    class Current {
    public:
        explicit Current(GraphicsContext& context);
        ~Current();
        Current(const Current&) = delete;
        Current& operator=(const Current&) = delete;

    private:
        GraphicsContext* before;
    };

    CircleDrawing drawing;

    // States are saved and restored in pairs; a restore without a save is a fatal stop.
    void saveGState();
    void restoreGState();
    void translateCTM(double x, double y);
    void scaleCTM(double x, double y);
    void rotateCTM(double angle); // radians, clockwise
    void clipToRect(const CGRect& rect);
    void strokeLine(CGPoint from, CGPoint to, double width, const UIColor& color);

    // Clockwise from `startAngle`; both angles in radians.
    void strokeArc(CGPoint centre, double radius, double startAngle, double sweep, double width,
                   const UIColor& color);

private:
    struct State {
        CGAffineTransform ctm;
        std::size_t clips = 0; // how many of the clips hold
    };

    // A rectangle in the units of its transform.
    struct Clip {
        CGAffineTransform ctm;
        CGRect rect;
    };

    State state;
    std::vector<State> saved;
    std::vector<Clip> clips;

    static bool holds(const Clip& clip, CGPoint centre, double reach);
    static CircleClip corners(const Clip& clip);
};

} // namespace volvelle
