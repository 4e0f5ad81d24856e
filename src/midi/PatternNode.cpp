#include "midi/PatternNode.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"
#include "midi/SequenceNode.h"

#include <algorithm>

namespace volvelle {

PatternNode::PatternNode()
{
    ++patternCount;
}

std::shared_ptr<EventNode> PatternNode::getEvent(std::int64_t uid) const
{
    const auto found =
        std::ranges::find_if(events, [uid](const auto& event) { return required(event).uid == uid; });
    return found == events.end() ? std::make_shared<EventNode>() : *found;
}

std::int64_t PatternNode::addEvent(const std::shared_ptr<EventNode>& event)
{
    EventNode& node = required(event);
    node.uid = SequenceNode::counter;
    SequenceNode::counter = checkedAdd(SequenceNode::counter, 1);
    node.pattern = this;
    events.push_back(event);
    return node.uid;
}

bool PatternNode::removeEventWithUID(std::int64_t uid)
{
    const auto found =
        std::ranges::find_if(events, [uid](const auto& event) { return required(event).uid == uid; });
    if (found == events.end()) {
        return false;
    }
    events.erase(found);
    return true;
}

bool PatternNode::removeEvent(const EventNode& event)
{
    const auto found =
        std::ranges::find_if(events, [&event](const auto& other) { return other.get() == &event; });
    if (found == events.end()) {
        return false;
    }
    events.erase(found);
    return true;
}

void PatternNode::removeEventAtIndex(int index)
{
    checkedAt(events, index);
    events.erase(events.begin() + index);
}

int PatternNode::getEventCount() const
{
    return checkedCast<int>(events.size());
}

bool PatternNode::isEmpty() const
{
    return events.empty();
}

std::vector<std::shared_ptr<MidiNoteEvent>> PatternNode::getNotes(double begin, double end) const
{
    return getElementsOfClass<MidiNoteEvent>(begin, end);
}

std::vector<std::shared_ptr<MidiNoteEvent>> PatternNode::getNotesBetween(std::uint8_t high, std::uint8_t low,
                                                                         double begin, double end) const
{
    auto notes = getNotes(begin, end);
    std::erase_if(notes, [high, low](const auto& note) { return note->number < low || note->number > high; });
    return notes;
}

std::vector<std::shared_ptr<MidiControllerEvent>> PatternNode::getControllers(std::uint8_t number,
                                                                              double begin, double end) const
{
    auto controllers = getElementsOfClass<MidiControllerEvent>(begin, end);
    std::erase_if(controllers, [number](const auto& controller) { return controller->number != number; });
    return controllers;
}

std::vector<std::shared_ptr<EventNode>> PatternNode::eventChildren() const
{
    return events;
}

std::shared_ptr<EventNode> PatternNode::eventChildWithUID(std::int64_t uid) const
{
    return getEvent(uid);
}

std::shared_ptr<EventNode> PatternNode::eventChildAtIndex(int index) const
{
    return checkedAt(events, index);
}

void PatternNode::clearEvents()
{
    events.clear();
}

void PatternNode::dumpout() const
{
    directPrint("\tsequence: ", sequence == nullptr ? "nil" : sequence->className(), ".");
    directPrint("\ttrack: ", track == nullptr ? "nil" : track->className(), ".");
    directPrint("\tid: ", id, ".");
    directPrint("\tchannel: ", channel, ".");
    directPrint("\toffset: ", offset, ".");
    directPrint("\tbars: ", bars, ".");
    directPrint("\tbeats: ", beats, ".");
    directPrint("\tloop: ", loop, ".");
    directPrint("\tmute: ", mute, ".");
    directPrint("\tsolo: ", solo, ".");
    directPrint("\n\tDie Anzahl der Events ist ", events.size(), ".");
    directPrint("\tEvents:");
    for (const auto& event : events) {
        directPrint("\n\t\tEvent ", required(event).className(), ":");
    }
}

} // namespace volvelle
