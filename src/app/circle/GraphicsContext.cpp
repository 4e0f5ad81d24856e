#include "app/circle/GraphicsContext.h"

#include "base/FatalStop.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

thread_local GraphicsContext* currentContext = nullptr;

} // namespace

GraphicsContext& GraphicsContext::current()
{
    if (currentContext == nullptr) {
        fatalStop(implicitNilMessage);
    }
    return *currentContext;
}

GraphicsContext::Current::Current(GraphicsContext& context) : before(std::exchange(currentContext, &context))
{
}

GraphicsContext::Current::~Current()
{
    currentContext = before;
}

void GraphicsContext::saveGState()
{
    saved.push_back(state);
}

void GraphicsContext::restoreGState()
{
    if (saved.empty()) {
        fatalStop(indexMessage);
    }
    state = saved.back();
    saved.pop_back();
    clips.resize(state.clips);
}

void GraphicsContext::translateCTM(double x, double y)
{
    state.ctm = state.ctm.translated(x, y);
}

void GraphicsContext::scaleCTM(double x, double y)
{
    state.ctm = state.ctm.scaled(x, y);
}

void GraphicsContext::rotateCTM(double angle)
{
    state.ctm = state.ctm.rotated(angle);
}

void GraphicsContext::clipToRect(const CGRect& rect)
{
    clips.push_back({state.ctm, rect.standardized()});
    state.clips = clips.size();
}

void GraphicsContext::strokeLine(CGPoint from, CGPoint to, double width, const UIColor& color)
{
    drawing.lines.push_back(
        {state.ctm.apply(from), state.ctm.apply(to), width * state.ctm.scales().width, color});
}

void GraphicsContext::strokeArc(CGPoint centre, double radius, double startAngle, double sweep, double width,
                                const UIColor& color)
{
    const CGSize scale = state.ctm.scales();
    CircleArc arc{state.ctm.apply(centre),
                  radius * scale.width,
                  state.ctm.rotation() + startAngle,
                  sweep,
                  width * scale.width,
                  color,
                  scale.width == scale.height ? 1.0 : scale.height / scale.width,
                  {}};
    for (const Clip& clip : clips) {
        if (holds(clip, arc.centre, arc.radius + arc.width / 2.0)) {
            continue;
        }
        const CircleClip found = corners(clip);
        if (std::ranges::count(arc.clips, found) == 0) {
            arc.clips.push_back(found);
        }
    }
    drawing.arcs.push_back(std::move(arc));
}

// Whether a circle lies inside the rectangle; both are measured before the stretch.
bool GraphicsContext::holds(const Clip& clip, CGPoint centre, double reach)
{
    const CGSize scale = clip.ctm.scales();
    const double across = (centre.x - clip.ctm.tx) / scale.width;
    const double down = (centre.y - clip.ctm.ty) / scale.height;
    const CGPoint place{(clip.ctm.a * across) / scale.width + (clip.ctm.b * down) / scale.height,
                        (clip.ctm.c * across) / scale.width + (clip.ctm.d * down) / scale.height};
    const double own = reach / scale.width;
    const CGRect& rect = clip.rect;
    return place.x - own >= rect.x && place.y - own >= rect.y && place.x + own <= rect.x + rect.width &&
           place.y + own <= rect.y + rect.height;
}

CircleClip GraphicsContext::corners(const Clip& clip)
{
    const CGRect& rect = clip.rect;
    return {clip.ctm.apply({rect.x, rect.y}), clip.ctm.apply({rect.x + rect.width, rect.y}),
            clip.ctm.apply({rect.x + rect.width, rect.y + rect.height}),
            clip.ctm.apply({rect.x, rect.y + rect.height})};
}

} // namespace volvelle
