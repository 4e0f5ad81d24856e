#pragma once

#include "base/Checked.h"
#include "midi/ChannelEvents.h"
#include "services/musicsequence/MusicSequence.h"

#include <memory>
#include <vector>

namespace volvelle {

class SequenceNode;

// Events in the order of adding, and the descriptive texts of a stretch of music. Held by std::shared_ptr;
// the back links `sequence` and `track` never own. A node that is taken out of the pattern keeps its link to
// it for as long as the pattern lives. A null among the events is a fatal stop wherever it is met. Used by
// one thread at a time.
class PatternNode : public LinkTarget {
public:
    PatternNode();
    virtual ~PatternNode() = default;

    // Counts every pattern and track that the thread ever made, and wraps.
    static inline thread_local std::uint16_t patternCount = 1;

    std::uint16_t id = 0; // 0 on every node
    BackLink<SequenceNode> sequence;
    BackLink<TrackNode> track;
    std::uint8_t channel = 0;
    std::vector<std::shared_ptr<EventNode>> events;
    double offset = 0.0;    // beats
    std::uint8_t bars = 1;  // length
    std::uint8_t beats = 4; // per bar
    bool loop = false;
    bool mute = false;
    bool solo = false;
    std::string text = "Pattern Beschreibung";
    std::string copyright = "(C) Volvelle";
    std::string name = "Pattern Name";
    std::string deviceName = "Geraete Name";
    std::string instrumentName = "Instrument Name";
    std::string programName = "Programm Name";
    std::string lyrics = "Songtext";
    std::string marker = "Marker";
    std::string cue = "Abspielmarke";
    MusicTrack link; // the track of a music sequence that this node came from or went to

    // The first event with that uid, a new plain node where there is none: never null.
    virtual std::shared_ptr<EventNode> getEvent(std::int64_t uid) const;

    // Appends the event, gives it the next uid of SequenceNode::counter and returns that.
    virtual std::int64_t addEvent(const std::shared_ptr<EventNode>& event);

    // Remove the first event with that uid, the event itself, the event at that index (out of range: a fatal
    // stop). The first two tell whether there was one.
    virtual bool removeEventWithUID(std::int64_t uid);
    virtual bool removeEvent(const EventNode& event);
    virtual void removeEventAtIndex(int index);

    virtual int getEventCount() const;
    virtual bool isEmpty() const;

    // All events of the class or a class derived from it, in order. `begin` and `end` have no effect, here as
    // in the operations that follow.
    template <class T>
    std::vector<std::shared_ptr<T>> getElementsOfClass(double begin = 0.0, double end = 999999.0) const;

    virtual std::vector<std::shared_ptr<MidiNoteEvent>> getNotes(double begin = 0.0,
                                                                 double end = 999999.0) const;

    // The notes with low <= number <= high.
    virtual std::vector<std::shared_ptr<MidiNoteEvent>>
    getNotesBetween(std::uint8_t high, std::uint8_t low, double begin = 0.0, double end = 999999.0) const;

    virtual std::vector<std::shared_ptr<MidiControllerEvent>>
    getControllers(std::uint8_t number, double begin = 0.0, double end = 999999.0) const;

    virtual std::vector<std::shared_ptr<EventNode>> eventChildren() const;

    // As getEvent.
    virtual std::shared_ptr<EventNode> eventChildWithUID(std::int64_t uid) const;

    // An index out of range is a fatal stop.
    virtual std::shared_ptr<EventNode> eventChildAtIndex(int index) const;

    virtual void clearEvents();

    // Prints the fields and the events to the console, at once.
    virtual void dumpout() const;

    // How the node describes itself.
    virtual std::string_view className() const { return "PatternNode"; }
};

template <class T>
std::vector<std::shared_ptr<T>> PatternNode::getElementsOfClass(double /*begin*/, double /*end*/) const
{
    std::vector<std::shared_ptr<T>> elements;
    for (const auto& event : events) {
        required(event);
        if (auto element = std::dynamic_pointer_cast<T>(event)) {
            elements.push_back(std::move(element));
        }
    }
    return elements;
}

} // namespace volvelle
