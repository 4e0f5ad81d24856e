#include "phrases/PhraseEventWriter.h"

namespace volvelle {

void writePhraseEvent(MIDISequence16& target, const PhraseEvent& event, double offset)
{
    const double position = event.position + offset;
    switch (event.type) {
    case PhraseEvent::noteOn:
        return target.createNoteEvent(position, event.channel, event.number, event.value, event.value2,
                                      static_cast<float>(event.duration));
    case PhraseEvent::controller:
        return target.createControllerEvent(position, event.channel, event.number, event.value);
    case PhraseEvent::programChange:
        return target.createProgramChangeEvent(position, event.channel, event.number);
    case PhraseEvent::pitchWheel:
        return target.createPitchWheelEvent(position, event.channel, event.number, event.value);
    case PhraseEvent::afterTouch:
        return target.createAfterTouchEvent(position, event.channel, event.number);
    default:
        return;
    }
}

} // namespace volvelle
