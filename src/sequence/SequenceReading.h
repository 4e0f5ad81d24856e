#pragma once

// The arms of MIDISequence::iterateEvents. For the sources of this folder.

#include "base/Checked.h"
#include "sequence/MIDISequence.h"
#include "services/musicsequence/TrackWalk.h"

namespace volvelle {

// Turns the events of one track into nodes, puts each into the tree and tells the listener. Lives as long as
// one walk.
class SequenceReading {
public:
    // `index` is the track's index in the tree, -1 the tempo track.
    SequenceReading(MIDISequence& sequence, int index, MIDISequence::ChannelAssignment& assignment);

    void read(const TrackEvent& event);

private:
    template <class Node>
    using Found = void (SequenceFoundDelegate::*)(const std::shared_ptr<Node>&);

    enum class Target { ownTrack, firstTrack, tempoTrack };

    TrackNode& node(Target target);

    // A new node with the position of the event.
    template <class Node>
    static std::shared_ptr<Node> nodeAt(const TrackEvent& event);

    template <class Node>
    void take(const std::shared_ptr<Node>& event, Target target, Found<Node> found);

    void readNote(const TrackEvent& event);
    void readTempo(const TrackEvent& event);
    void readUserData(const TrackEvent& event);
    void readRawData(const TrackEvent& event);
    void readParameter(const TrackEvent& event);
    void readPreset(const TrackEvent& event);
    void readUnknown(const TrackEvent& event);

    void readMeta(const TrackEvent& event);
    template <class Node>
    void readMetaAs(const TrackEvent& event, Target target, Found<Node> found);

    void readChannel(const TrackEvent& event);
    void readSystem(const TrackEvent& event);
    template <class Node>
    void takeChannelEvent(const std::shared_ptr<Node>& event, const TrackEvent& source, Found<Node> found);
    template <class Node>
    void takeSystemEvent(const TrackEvent& source, Found<Node> found);

    MIDISequence& sequence;
    int index;
    MIDISequence::ChannelAssignment& assignment;
};

template <class Node>
std::shared_ptr<Node> SequenceReading::nodeAt(const TrackEvent& event)
{
    auto node = std::make_shared<Node>();
    node->position = event.time;
    return node;
}

template <class Node>
void SequenceReading::take(const std::shared_ptr<Node>& event, Target target, Found<Node> found)
{
    node(target).addEvent(event);
    if (const auto listener = sequence.delegate.lock()) {
        (listener.get()->*found)(event);
    }
}

} // namespace volvelle
