#pragma once

#include "app/circle/MIDICircleViewBase.h"

#include <functional>
#include <memory>

namespace volvelle {

// The control that shows the circle, without its window. [main]
class MIDICircleView {
public:
    explicit MIDICircleView(const CGRect& frame = {});
    virtual ~MIDICircleView() = default;

    // Handed on to `baseClass` at every change.
    virtual MIDICircleViewDelegate* delegate() const;
    virtual void setDelegate(MIDICircleViewDelegate* value);

    const std::unique_ptr<MIDICircleViewBase> baseClass;

    bool isHidden = false;
    CGRect bounds;
    UIColor backgroundColor = UIColor::clearColor();

    // Asks the window to draw again.
    std::function<void()> setNeedsDisplay = [] {};

    // Draws all of the bounds, whatever the rectangle; nothing while hidden.
    virtual void draw(const CGRect& rect);

    // Only draws again; the value is not kept.
    virtual void setFocus(bool focus);

    // 1 makes `colorContrast` and `colorMain` black and the inverse white; 0 the other way.
    virtual void setContrast(double contrast);
    virtual void setProgress(double beats);

private:
    MIDICircleViewDelegate* ownDelegate = nullptr;
};

} // namespace volvelle
