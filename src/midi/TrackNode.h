#pragma once

#include "midi/PatternNode.h"

namespace volvelle {

// A track: a pattern with patterns of its own.
class TrackNode : public PatternNode {
public:
    TrackNode();

    bool isTempoTrack = false;
    std::vector<std::shared_ptr<PatternNode>> patterns;

    // As in PatternNode, but links the event to this track and leaves its `pattern` alone.
    std::int64_t addEvent(const std::shared_ptr<EventNode>& event) override;

    // Empties events and patterns.
    virtual void clear();

    // The first pattern with that id, a new one where there is none: never null.
    virtual std::shared_ptr<PatternNode> getPattern(std::uint16_t id) const;

    // Appends the pattern, links it and its events to this track, takes one number off SequenceNode::counter
    // and returns the pattern's id.
    virtual std::uint16_t addPattern(const std::shared_ptr<PatternNode>& pattern);

    // Remove the first pattern with that id, the pattern itself, the pattern at that index (out of range: a
    // fatal stop). The first two tell whether there was one.
    virtual bool removePatternWithID(std::uint16_t id);
    virtual bool removePattern(const PatternNode& event);
    virtual void removePatternAtIndex(int index);

    virtual int getPatternCount() const;
    virtual std::vector<std::shared_ptr<PatternNode>> patternChildren() const;

    // As getPattern.
    virtual std::shared_ptr<PatternNode> patternChildWithUID(std::uint16_t uid) const;

    // An index out of range is a fatal stop.
    virtual std::shared_ptr<PatternNode> patternChildAtIndex(int index) const;

    virtual void clearPatterns();

    void dumpout() const override;

    std::string_view className() const override { return "TrackNode"; }
};

} // namespace volvelle
