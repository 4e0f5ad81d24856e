#pragma once

#include "base/Checked.h"
#include "base/MainQueue.h"
#include "sequence/EventKinds.h"

#include <memory>
#include <string_view>

namespace volvelle {

// Writes events into the tree and the tracks of a sequence, and tells its listener later, on the main thread.
// Lives as long as one call.
class SequenceWriter {
public:
    explicit SequenceWriter(MIDISequence& owner) : sequence(owner) {}

    // Makes a node of the values and takes it.
    template <class Node, class... Values>
    void create(double position, const Values&... values);

    // Adds a node to the tree's track of its channel and hands it to the sequence's message operation.
    template <class Node>
    void take(const std::shared_ptr<Node>& event);
    template <class Node>
    void addToTree(const std::shared_ptr<Node>& event);

    // Writes a node into the music track whose index is its channel, or into a given one. A system exclusive
    // without bytes is not written.
    template <class Node>
    void write(const std::shared_ptr<Node>& event);
    template <class Node>
    void write(const std::shared_ptr<Node>& event, const EventKind<Node>& kind, const MusicTrack& track);

    // Hands a node of any class to the message operation of its status, or of its meta type, and reports it.
    void writeByCode(const std::shared_ptr<EventNode>& event);
    void writeAll(const PatternNode& node, const MusicTrack& track);
    // The tempo track of the tree in place of all tempos.
    void writeTempoTrack();

private:
    enum class Outcome { written, otherClass, noKind };

    static bool isWritten(const SystemExclusiveEvent& event);

    static bool isWritten(const EventNode& /*event*/) { return true; }

    [[nodiscard]] static OSStatus put(const MusicTrack& track, const MidiNoteEvent& event);
    [[nodiscard]] static OSStatus put(const MusicTrack& track, const SystemExclusiveEvent& event);
    [[nodiscard]] static OSStatus put(const MusicTrack& track, const MetaEvent& event);
    template <ShortMessageNode Node>
    [[nodiscard]] static OSStatus put(const MusicTrack& track, const Node& event);

    Outcome writeAs(const std::shared_ptr<EventNode>& event, bool isMeta, std::uint8_t code);
    void writeMeta(const std::shared_ptr<EventNode>& event, std::uint8_t type);
    void writeStatus(const std::shared_ptr<EventNode>& event);

    MusicTrack trackOf(const EventNode& event);
    void reportFailure(OSStatus status, const EventNode& event, std::string_view failure, bool hasChannel);
    template <class Node>
    void notifyLater(const std::shared_ptr<Node>& event, const EventKind<Node>& kind);

    MIDISequence& sequence;
};

template <class Node, class... Values>
void SequenceWriter::create(double position, const Values&... values)
{
    take(std::make_shared<Node>(position, values...));
}

template <class Node>
void SequenceWriter::take(const std::shared_ptr<Node>& event)
{
    addToTree(event);
    (sequence.*EventKinds::of<Node>().message)(event);
}

template <class Node>
void SequenceWriter::addToTree(const std::shared_ptr<Node>& event)
{
    required(required(sequence.sequenceNode).getTrack(event->channel)).addEvent(event);
}

template <class Node>
void SequenceWriter::write(const std::shared_ptr<Node>& event)
{
    if (const MusicTrack track = trackOf(required(event))) {
        if (isWritten(*event)) {
            write(event, EventKinds::of<Node>(), track);
        }
        sequence.ensureSongLength(event->position);
    }
}

template <class Node>
void SequenceWriter::write(const std::shared_ptr<Node>& event, const EventKind<Node>& kind,
                           const MusicTrack& track)
{
    if (const OSStatus status = put(track, *event); status != noErr) {
        reportFailure(status, *event, kind.failure, kind.hasChannel());
    } else {
        notifyLater(event, kind);
    }
}

template <ShortMessageNode Node>
OSStatus SequenceWriter::put(const MusicTrack& track, const Node& event)
{
    MIDIChannelMessage message{event.getStausByte(), 0, 0, 0};
    const auto bytes = dataBytes(event);
    if constexpr (bytes.size() > 0) {
        message.data1 = *bytes[0];
    }
    if constexpr (bytes.size() > 1) {
        message.data2 = *bytes[1];
    }
    return MusicTrackNewMIDIChannelEvent(track, event.position, message);
}

template <class Node>
void SequenceWriter::notifyLater(const std::shared_ptr<Node>& event, const EventKind<Node>& kind)
{
    const auto listener = sequence.delegate.lock();
    if (!listener) {
        return;
    }
    const auto self = sequence.weak_from_this().lock();
    if (!self) {
        fatalStop("A sequence with a listener must be held by a shared pointer");
    }
    const auto found = kind.found;
    mainQueue().post([self, listener, event, found] { (required(self->delegate.lock()).*found)(event); });
}

} // namespace volvelle
