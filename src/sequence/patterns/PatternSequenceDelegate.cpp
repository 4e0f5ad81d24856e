#include "sequence/patterns/PatternSequenceDelegate.h"

namespace volvelle {

void PatternSequenceDelegate::sectionCreated(std::uint16_t /*count*/) {}

void PatternSequenceDelegate::sectionDeleted(std::uint16_t /*index*/) {}

} // namespace volvelle
