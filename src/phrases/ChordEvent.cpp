#include "phrases/ChordEvent.h"

namespace volvelle {

ChordEvent::ChordEvent() = default;

ChordEvent::~ChordEvent() = default;

} // namespace volvelle
