#include "app/circle/MIDICircleViewBase.h"

#include "app/circle/GraphicsContext.h"
#include "base/Checked.h"
#include "wire/ShortMessage.h"

#include <algorithm>
#include <numbers>

namespace volvelle {

namespace {

constexpr double thin = 2.0;   // units
constexpr double thick = 10.0; // units
constexpr double centre = 256.0;
constexpr CGRect square{-centre, -centre, 2.0 * centre, 2.0 * centre};

// Saves the state of the context, and restores it at its end.
class SavedState {
public:
    explicit SavedState(GraphicsContext& context) : context(context) { context.saveGState(); }

    ~SavedState() { context.restoreGState(); }

    SavedState(const SavedState&) = delete;
    SavedState& operator=(const SavedState&) = delete;

private:
    GraphicsContext& context;
};

// The canvas in a frame, as long as it lives.
class CanvasMapping {
public:
    CanvasMapping(const CGRect& frame, ResizingBehavior resizing, MIDICircleViewBase& instance)
        : context(GraphicsContext::current()), saved(context)
    {
        const CGRect target = resizing.apply(MIDICircleViewBase::canvas, frame, instance);
        context.translateCTM(target.x, target.y);
        context.scaleCTM(target.width / MIDICircleViewBase::canvas.width,
                         target.height / MIDICircleViewBase::canvas.height);
    }

    GraphicsContext& context;

private:
    SavedState saved;
};

double radians(double degrees)
{
    return degrees * std::numbers::pi / 180.0;
}

void clipToCanvas(GraphicsContext& context)
{
    context.clipToRect(square);
    context.translateCTM(-centre, -centre);
}

} // namespace

const std::array<UIColor, channelCount>& MIDICircleViewBase::getChannelColors() const
{
    return channelColors;
}

void MIDICircleViewBase::makeColors()
{
    UIColor::HSB parts = colorChannel.getHSB();
    for (std::size_t i = 0; i < channelColors.size(); ++i) {
        parts.hue = static_cast<double>(i) * 0.0625;
        channelColors.at(i) = UIColor::fromHSB(parts, colorChannel.alpha);
    }
}

void MIDICircleViewBase::drawSymbolNote(const CGRect& frame, ResizingBehavior resizing, double width,
                                        double noteNumberValue, double noteLengthValue, double noteStartValue,
                                        const UIColor& color)
{
    const CanvasMapping mapping(frame, resizing, *this);
    beatLength = newBeatLength();
    const double rotation = -(360.0 / beatLength * noteStartValue);
    const SavedState turned(mapping.context);
    mapping.context.translateCTM(centre, centre);
    mapping.context.rotateCTM(-radians(rotation));
    const SavedState clipped(mapping.context);
    clipToCanvas(mapping.context);
    drawSymbolNoteShape(canvas, ResizingBehavior::stretch, width, noteNumberValue, noteLengthValue, color);
}

void MIDICircleViewBase::drawSymbolNoteShape(const CGRect& frame, ResizingBehavior resizing, double width,
                                             double noteNumberValue, double noteLengthValue,
                                             const UIColor& color)
{
    const CanvasMapping mapping(frame, resizing, *this);
    beatLength = newBeatLength();
    const double diameter = noteNumberValue * 4.0;
    const double length = std::min(std::max(noteLengthValue, 0.0), beatLength);
    const SavedState turned(mapping.context);
    mapping.context.translateCTM(centre, centre);
    mapping.context.rotateCTM(radians(-90.0));
    mapping.context.strokeArc({0.0, 0.0}, diameter / 2.0, 0.0, radians(length * (360.0 / beatLength)), width,
                              color);
}

void MIDICircleViewBase::drawSymbolNotes(const CGRect& frame, ResizingBehavior resizing)
{
    const CanvasMapping mapping(frame, resizing, *this);
    mapping.context.strokeLine({centre, 9.0}, {centre, 246.0}, 0.5, UIColor::redColor());
    if (delegate == nullptr) {
        return;
    }
    const auto events = delegate->getEvents();
    if (chosen != nullptr) {
        for (const int index : *chosen) {
            drawEvent(required(checkedAt(events, index)));
        }
        return;
    }
    for (const auto& event : events) {
        drawEvent(required(event));
    }
}

void MIDICircleViewBase::drawEvent(const AUMIDIEventEx& event)
{
    const std::uint8_t* bytes = event.pEvent()->data;
    if (kindOf(bytes[0]) != STATUS_NOTEON) {
        return;
    }
    GraphicsContext& context = GraphicsContext::current();
    const double opacity = bytes[2] * 0.007874015748031496;
    noteWidth = isThick(event.beats, currentBeat) ? thick : thin;
    const SavedState moved(context);
    context.translateCTM(centre, centre);
    const SavedState clipped(context);
    clipToCanvas(context);
    drawSymbolNote(canvas, ResizingBehavior::stretch, noteWidth, bytes[1] + 24.0, event.duration, event.beats,
                   channelColors.at(static_cast<std::size_t>(channelOf(bytes[0]))).withAlpha(opacity));
}

void MIDICircleViewBase::drawSymbolMain(const CGRect& frame, ResizingBehavior resizing)
{
    const CanvasMapping mapping(frame, resizing, *this);
    const SavedState turned(mapping.context);
    mapping.context.translateCTM(centre, centre);
    mapping.context.rotateCTM(progressionValue * 360.0 * std::numbers::pi / -180.0);
    const SavedState clipped(mapping.context);
    clipToCanvas(mapping.context);
    drawSymbolNotes(canvas, ResizingBehavior::stretch);
}

float MIDICircleViewBase::getScalingFactor() const
{
    return static_cast<float>(scaling.width);
}

bool MIDICircleViewBase::isThick(double start, double position)
{
    return start >= position && start < position + 1.0;
}

double MIDICircleViewBase::newBeatLength()
{
    return delegate == nullptr ? usualBeats : delegate->getBeatCount();
}

} // namespace volvelle
