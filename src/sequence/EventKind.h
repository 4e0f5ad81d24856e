#pragma once

#include "midi/EventNodes.h"
#include "sequence/NodePlace.h"
#include "services/musicsequence/MusicSequence.h"

#include <array>
#include <concepts>
#include <cstdint>
#include <memory>
#include <string_view>

namespace volvelle {

class MIDISequence;
class SequenceFoundDelegate;

// The type of the record that holds a node's event in a track.
template <class Node>
constexpr MusicEventType recordType()
{
    if constexpr (std::derived_from<Node, MetaEvent>) {
        return kMusicEventType_Meta;
    } else if constexpr (std::derived_from<Node, SystemExclusiveEvent>) {
        return kMusicEventType_MIDIRawData;
    } else if constexpr (std::derived_from<Node, UserEvent>) {
        return kMusicEventType_User;
    } else if constexpr (std::derived_from<Node, MidiNoteEvent>) {
        return kMusicEventType_MIDINoteMessage;
    } else if constexpr (std::derived_from<Node, TempoEvent>) {
        return kMusicEventType_ExtendedTempo;
    } else if constexpr (std::derived_from<Node, AParameterEvent>) {
        return kMusicEventType_Parameter;
    } else if constexpr (std::derived_from<Node, AAUPresetEvent>) {
        return kMusicEventType_AUPreset;
    } else if constexpr (std::derived_from<Node, UnknownEvent>) {
        return kMusicEventType_NULL;
    } else {
        return kMusicEventType_MIDIChannelMessage;
    }
}

// Nodes that a record of a status and up to two data bytes holds.
template <class Node>
concept ShortMessageNode = recordType<Node>() == kMusicEventType_MIDIChannelMessage;

// The fields of a node that are the data bytes of its message, in their order.
template <ShortMessageNode Node>
constexpr auto dataBytes(Node& node)
{
    if constexpr (requires { node.bend; }) {
        return std::array{&node.bend.msb, &node.bend.lsb};
    } else if constexpr (requires { node.number; }) {
        return std::array{&node.number, &node.value};
    } else if constexpr (requires { node.msb; }) {
        return std::array{&node.msb, &node.lsb};
    } else if constexpr (requires { node.value; }) {
        return std::array{&node.value};
    } else {
        return std::array<decltype(&node.channel), 0>{};
    }
}

// What a sequence knows of the events of one class.
template <class Node>
struct EventKind {
    static constexpr MusicEventType record = recordType<Node>();
    static constexpr bool isMeta = record == kMusicEventType_Meta;

    std::uint8_t code = 0; // status byte without channel, or meta type; 0 for a record without such a byte
    EventTarget target = EventTarget::firstTrack;
    std::string_view failure; // stands between "Es konnte " and " erzeugt werden."; empty if never written
    void (MIDISequence::*message)(const std::shared_ptr<Node>&) = nullptr; // writes it; null for none
    void (SequenceFoundDelegate::*found)(const std::shared_ptr<Node>&) = nullptr;

    // Notes and the other messages of a channel, whose failure text ends with the channel.
    constexpr bool hasChannel() const { return !isMeta && code >= STATUS_NOTEOFF && code < STATUS_SYSEX; }
};

} // namespace volvelle
