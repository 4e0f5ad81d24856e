#pragma once

#include "app/circle/MIDICircleViewDelegate.h"
#include "app/circle/ResizingBehavior.h"
#include "app/circle/UIColor.h"
#include "wire/ShortMessage.h"

#include <array>

namespace volvelle {

// Draws all notes of a sequence as arcs on a clock: the angle is the time, the radius the pitch, the colour
// the channel, the opacity the velocity. It draws on a canvas of 512 by 512 units, mapped to the frame by the
// resizing, and in the current graphics context; none is a fatal stop. [any]
class MIDICircleViewBase {
public:
    virtual ~MIDICircleViewBase() = default;

    using ResizingBehavior = volvelle::ResizingBehavior;
    static constexpr CGRect canvas{0.0, 0.0, 512.0, 512.0};

    MIDICircleViewDelegate* delegate = nullptr; // outlives its use here
    UIColor colorChannel{0.8, 0.4, 0.4, 1.0};   // seed of the channels' colours
    UIColor colorMarker{0.652, 0.8, 0.32, 1.0};
    UIColor colorContrast{0.0, 0.0, 0.0, 1.0};
    UIColor colorContrastInverted{1.0, 1.0, 1.0, 1.0};
    UIColor colorMain{0.753, 0.753, 0.753, 1.0};

private:
    std::array<UIColor, channelCount> channelColors;

public:
    // The colours of the sixteen channels.
    virtual const std::array<UIColor, channelCount>& getChannelColors() const;

    // Sixteen hues go evenly around, each as bright and saturated as the seed.
    virtual void makeColors();

    double beatLength = usualBeats; // of a full turn
    double noteWidth = 2.0;         // units, of the note that is drawn
    double progressionValue = 0.0;  // full turns of the whole picture
    double currentBeat = 0.0;       // position in beats

    // One note in its place.
    virtual void drawSymbolNote(const CGRect& frame = canvas,
                                ResizingBehavior resizing = ResizingBehavior::fitInside,
                                double noteWidth = 5.0, double noteNumberValue = 60.0,
                                double noteLengthValue = 0.25, double noteStartValue = 0.0,
                                const UIColor& color = UIColor::redColor());

    // The arc of a note that starts at twelve.
    virtual void drawSymbolNoteShape(const CGRect& frame = canvas,
                                     ResizingBehavior resizing = ResizingBehavior::fitInside,
                                     double noteWidth = 5.0, double noteNumberValue = 60.0,
                                     double noteLengthValue = 0.25,
                                     const UIColor& color = UIColor::redColor());

    // The hand and all notes.
    virtual void drawSymbolNotes(const CGRect& frame = canvas,
                                 ResizingBehavior resizing = ResizingBehavior::fitInside);

    // The whole picture.
    virtual void drawSymbolMain(const CGRect& frame = canvas,
                                ResizingBehavior resizing = ResizingBehavior::fitInside);

    CGSize scaling{1.0, 1.0}; // factors of the last resizing

    virtual float getScalingFactor() const;

    // Indices of the events to draw, ascending; all where there is none. It is for those who keep the rest.
    const std::vector<int>* chosen = nullptr;

    // Whether a note that starts there is drawn thick at that position; both in beats.
    static bool isThick(double start, double position);

private:
    double newBeatLength();
    void drawEvent(const AUMIDIEventEx& event);
};

} // namespace volvelle
