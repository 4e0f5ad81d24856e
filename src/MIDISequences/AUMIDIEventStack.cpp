#include "MIDISequences/AUMIDIEventStack.h"

#include "base/Checked.h"

namespace volvelle {

namespace {

std::shared_ptr<AUMIDIEventEx> scratchEvent()
{
    const std::vector<std::uint8_t> bytes(AUMIDIEventEx::MAXBYTES);
    return std::make_shared<AUMIDIEventEx>(AURenderEventMIDI, bytes, AUMIDIEventEx::MAXBYTES, 0);
}

} // namespace

AUMIDIEventStack::AUMIDIEventStack() : items(MAXEVENTS, scratchEvent()) {}

std::shared_ptr<AUMIDIEventEx> AUMIDIEventStack::next()
{
    if (items.empty()) {
        return scratchEvent();
    }
    if (currentIndex >= static_cast<int>(items.size())) {
        currentIndex = 0;
    }
    return checkedAt(items, currentIndex++);
}

} // namespace volvelle
