#include "app/circle/MIDICircleView.h"

namespace volvelle {

MIDICircleView::MIDICircleView(const CGRect& frame)
    : baseClass(std::make_unique<MIDICircleViewBase>()), bounds{0.0, 0.0, frame.width, frame.height}
{
    baseClass->makeColors();
}

MIDICircleViewDelegate* MIDICircleView::delegate() const
{
    return ownDelegate;
}

void MIDICircleView::setDelegate(MIDICircleViewDelegate* value)
{
    ownDelegate = value;
    baseClass->delegate = value;
}

void MIDICircleView::draw(const CGRect& /*rect*/)
{
    if (!isHidden) {
        baseClass->drawSymbolMain(bounds, ResizingBehavior::fitInside);
    }
}

void MIDICircleView::setFocus(bool /*focus*/)
{
    setNeedsDisplay();
}

void MIDICircleView::setContrast(double contrast)
{
    baseClass->colorContrast = UIColor::gray(1.0 - contrast);
    baseClass->colorContrastInverted = UIColor::gray(contrast);
    baseClass->colorMain = baseClass->colorContrast;
    setNeedsDisplay();
}

void MIDICircleView::setProgress(double beats)
{
    baseClass->currentBeat = beats;
    setNeedsDisplay();
}

} // namespace volvelle
