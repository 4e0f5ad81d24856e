#pragma once

// What the operations that write events have in common. For the sources of this folder.

#include "base/Checked.h"
#include "base/MainQueue.h"
#include "sequence/MIDISequence.h"
#include "sequence/SequenceLog.h"

namespace volvelle {

inline constexpr std::string_view noPayloadText =
    "MIDISequence::Warnung: Es befinden sich keine Einträge im übergebenen Daten Objekt.";
inline constexpr std::string_view unsharedText =
    "A sequence with a listener must be held by a shared pointer";
inline constexpr std::string_view undefinedTrackText = "MIDISequence::Fehler: Die Spur ist undefiniert.";

template <class Node>
void MIDISequence::addToTree(const std::shared_ptr<Node>& node)
{
    required(required(sequenceNode).getTrack(node->channel)).addEvent(node);
}

template <class Node>
void MIDISequence::notifyLater(const std::shared_ptr<Node>& event,
                               void (SequenceFoundDelegate::*found)(const std::shared_ptr<Node>&))
{
    const auto listener = delegate.lock();
    if (!listener) {
        return;
    }
    const auto self = weak_from_this().lock();
    if (!self) {
        fatalStop(unsharedText);
    }
    mainQueue().post([self, listener, event, found] { (required(self->delegate.lock()).*found)(event); });
}

template <class Node, class Failure, class Write>
void MIDISequence::writeMessage(const std::shared_ptr<Node>& event, const Failure& failure,
                                void (SequenceFoundDelegate::*found)(const std::shared_ptr<Node>&),
                                Write write)
{
    const MusicTrack track = getTrack(required(event).channel);
    if (!track) {
        logLine(undefinedTrackText);
        return;
    }
    if (const OSStatus status = write(track); status != noErr) {
        logLine("MIDISequence::Fehler: ", status, ". \n", failure());
        checkStatus(status);
    } else {
        notifyLater(event, found);
    }
    ensureSongLength(event->position);
}

} // namespace volvelle
