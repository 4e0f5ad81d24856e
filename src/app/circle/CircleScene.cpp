#include "app/circle/CircleScene.h"

#include "app/circle/GraphicsContext.h"
#include "base/Checked.h"
#include "wire/ShortMessage.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace volvelle {

CircleScene::Change CircleScene::update(MIDICircleViewBase& circle, const CGRect& frame,
                                        ResizingBehavior resizing)
{
    const bool hasDelegate = circle.delegate != nullptr;
    const Ground newGround{frame,
                           resizing.rawValue(),
                           hasDelegate,
                           hasDelegate ? circle.delegate->getBeatCount() : 0.0,
                           circle.progressionValue,
                           circle.getChannelColors()};
    std::vector<Note> newNotes = notesOf(circle);
    const bool all = !(newGround == ground && newNotes == notes);
    ground = newGround;
    notes = std::move(newNotes);
    std::vector<int> wasThick = std::exchange(thick, thickAt(circle.currentBeat));
    if (all) {
        drawing = record(circle, frame, resizing);
        return {true, {}, {}};
    }
    std::vector<int> changed;
    std::ranges::set_symmetric_difference(wasThick, thick, std::back_inserter(changed));
    return redraw(circle, frame, resizing, std::move(changed));
}

CircleScene::Change CircleScene::redraw(MIDICircleViewBase& circle, const CGRect& frame,
                                        ResizingBehavior resizing, std::vector<int> arcs)
{
    if (arcs.empty()) {
        return {};
    }
    std::vector<int> events;
    events.reserve(arcs.size());
    for (const int arc : arcs) {
        events.push_back(checkedAt(notes, arc).event);
    }
    circle.chosen = &events;
    CircleDrawing drawn = record(circle, frame, resizing);
    circle.chosen = nullptr;
    for (std::size_t i = 0; i < arcs.size(); ++i) {
        std::swap(checkedAt(drawing.arcs, arcs[i]), checkedAt(drawn.arcs, i));
    }
    return {false, std::move(arcs), std::move(drawn.arcs)};
}

std::vector<CircleScene::Note> CircleScene::notesOf(MIDICircleViewBase& circle)
{
    std::vector<Note> found;
    if (circle.delegate == nullptr) {
        return found;
    }
    const auto events = circle.delegate->getEvents();
    found.reserve(events.size());
    for (int i = 0; std::cmp_less(i, events.size()); ++i) {
        const AUMIDIEventEx& event = required(checkedAt(events, i));
        const std::uint8_t* bytes = event.pEvent()->data;
        if (kindOf(bytes[0]) == STATUS_NOTEON) {
            found.push_back({i, bytes[0], bytes[1], bytes[2], event.beats, event.duration});
        }
    }
    return found;
}

std::vector<int> CircleScene::thickAt(double position) const
{
    std::vector<int> found;
    for (int i = 0; std::cmp_less(i, notes.size()); ++i) {
        if (MIDICircleViewBase::isThick(checkedAt(notes, i).start, position)) {
            found.push_back(i);
        }
    }
    return found;
}

CircleDrawing CircleScene::record(MIDICircleViewBase& circle, const CGRect& frame, ResizingBehavior resizing)
{
    GraphicsContext context;
    const GraphicsContext::Current current(context);
    circle.drawSymbolMain(frame, resizing);
    return std::move(context.drawing);
}

} // namespace volvelle
