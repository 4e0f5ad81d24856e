#include "midi/TrackNode.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"
#include "midi/SequenceNode.h"

#include <algorithm>

namespace volvelle {

TrackNode::TrackNode()
{
    text = "Spur Beschreibung";
    name = "Spur Name";
}

std::int64_t TrackNode::addEvent(const std::shared_ptr<EventNode>& event)
{
    EventNode& node = required(event);
    node.uid = SequenceNode::counter;
    SequenceNode::counter = checkedAdd(SequenceNode::counter, 1);
    node.track = this;
    events.push_back(event);
    return node.uid;
}

void TrackNode::clear()
{
    clearEvents();
    clearPatterns();
}

std::shared_ptr<PatternNode> TrackNode::getPattern(std::uint16_t patternId) const
{
    const auto found = std::ranges::find_if(
        patterns, [patternId](const auto& pattern) { return required(pattern).id == patternId; });
    return found == patterns.end() ? std::make_shared<PatternNode>() : *found;
}

std::uint16_t TrackNode::addPattern(const std::shared_ptr<PatternNode>& pattern)
{
    PatternNode& node = required(pattern);
    SequenceNode::counter = checkedAdd(SequenceNode::counter, 1);
    node.sequence = sequence;
    node.track = this;
    patterns.push_back(pattern);
    for (const auto& event : node.events) {
        required(event).track = this;
    }
    return node.id;
}

bool TrackNode::removePatternWithID(std::uint16_t patternId)
{
    const auto found = std::ranges::find_if(
        patterns, [patternId](const auto& pattern) { return required(pattern).id == patternId; });
    if (found == patterns.end()) {
        return false;
    }
    patterns.erase(found);
    return true;
}

bool TrackNode::removePattern(const PatternNode& event)
{
    const auto found =
        std::ranges::find_if(patterns, [&event](const auto& pattern) { return pattern.get() == &event; });
    if (found == patterns.end()) {
        return false;
    }
    patterns.erase(found);
    return true;
}

void TrackNode::removePatternAtIndex(int index)
{
    checkedAt(patterns, index);
    patterns.erase(patterns.begin() + index);
}

int TrackNode::getPatternCount() const
{
    return checkedCast<int>(patterns.size());
}

std::vector<std::shared_ptr<PatternNode>> TrackNode::patternChildren() const
{
    return patterns;
}

std::shared_ptr<PatternNode> TrackNode::patternChildWithUID(std::uint16_t uid) const
{
    return getPattern(uid);
}

std::shared_ptr<PatternNode> TrackNode::patternChildAtIndex(int index) const
{
    return checkedAt(patterns, index);
}

void TrackNode::clearPatterns()
{
    patterns.clear();
}

void TrackNode::dumpout() const
{
    directPrint("\tsequence: ", sequence == nullptr ? "nil" : sequence->className(), ".");
    directPrint("\tisTempoTrack: ", isTempoTrack, ".");
    directPrint("\tchannel: ", channel, ".");
    directPrint("\n\tDie Anzahl der Events ist ", events.size(), ".");
    directPrint("\tEvents:");
    for (const auto& event : events) {
        directPrint("\n\t\tEvent ", required(event).className(), ":");
    }
    directPrint("\n\tDie Anzahl der Patterns ist ", patterns.size(), ".");
    directPrint("\tPatterns:");
    for (const auto& pattern : patterns) {
        directPrint("\n\t\tPattern ", required(pattern).className(), ":");
    }
}

} // namespace volvelle
