#pragma once

#include "midi/EventNodes.h"
#include "midi/SequenceNode.h"
#include "sequence/EventKind.h"
#include "sequence/FlatEvent.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

namespace volvelle {

// Turns the nodes of a tree into realtime events, at 120 beats per minute. The tree must not change while the
// flattener lives.
class SequenceFlattener {
public:
    SequenceFlattener(const SequenceNode& tree, double samplerate);

    // Ascending by time and by rank, else in the order of the tree, after `tempoEvents` of equal times. Each
    // element's id is its index.
    std::vector<std::shared_ptr<AUMIDIEventEx>>
    events(std::span<const std::shared_ptr<AUMIDIEventEx>> tempoEvents, std::uint8_t cable) const;

    // The same without tempo events.
    std::vector<AUMIDIEvent> records() const;

private:
    FlatEvent& append(const EventNode& node, std::initializer_list<std::uint8_t> head);
    void add(const EventNode& node);
    void addNote(const MidiNoteEvent& note);
    // False where the node is none.
    bool addChannelEvent(const EventNode& node);
    template <ShortMessageNode Node>
    void addMessage(const Node& message, std::uint8_t status);
    void addMeta(const MetaEvent& meta);
    void addUserData(const UserEvent& user);

    double samplesPerBeat;
    std::vector<FlatEvent> flatEvents; // in the order of the tree
};

} // namespace volvelle
