#pragma once

#include "services/musicsequence/MusicEvent.h"
#include "services/musicsequence/MusicSequence.h"
#include "services/musicsequence/PayloadArena.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace volvelle {

enum class SMFEventKind : std::uint8_t {
    note,
    message, // of a channel
    tempo,
    meta,      // any other; its type stands in data1
    exclusive, // after an F0
    packet     // after an F7
};

// An event of a file track.
struct SMFEvent {
    std::uint64_t tick = 0;
    std::uint64_t end = 0; // note: its end in ticks; tempo: microseconds a beat; meta, exclusive, packet: the
                           // place of the bytes in the file
    std::uint32_t length = 0; // note: its release velocity; meta, exclusive, packet: how many bytes
    SMFEventKind kind = SMFEventKind::message;
    std::uint8_t status = 0; // note: 0x90 and the channel
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;

    bool isOfChannel() const { return kind == SMFEventKind::note || kind == SMFEventKind::message; }

    // The bytes of the record that it becomes in a track.
    std::size_t recordSize() const
    {
        switch (kind) {
        case SMFEventKind::note:
            return sizeof(MIDINoteMessage);
        case SMFEventKind::message:
            return sizeof(MIDIChannelMessage);
        case SMFEventKind::tempo:
            return sizeof(ExtendedTempoEvent);
        case SMFEventKind::meta:
            return std::max(offsetof(MIDIMetaEvent, data) + length, sizeof(MIDIMetaEvent));
        default:
            return std::max(offsetof(MIDIRawData, data) + lead() + length, sizeof(MIDIRawData));
        }
    }

    // How many bytes stand in the record before those of the file: the F0 that the file does not repeat.
    std::uint32_t lead() const { return kind == SMFEventKind::exclusive ? 1 : 0; }

    // The words of its record in the arena of a track.
    std::size_t recordWords() const
    {
        const std::size_t size = recordSize();
        return size <= MusicEvent::inlineRoom ? 0 : PayloadArena::wordsFor(size);
    }
};

static_assert(sizeof(SMFEvent) == 24);

} // namespace volvelle
