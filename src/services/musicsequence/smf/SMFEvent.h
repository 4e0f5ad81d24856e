#pragma once

#include <cstdint>

namespace volvelle {

enum class SMFEventKind : std::uint8_t {
    note,
    message, // of a channel
    tempo,
    meta,      // any other; its type stands in data1
    exclusive, // behind an F0
    packet     // behind an F7
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
};

static_assert(sizeof(SMFEvent) == 24);

} // namespace volvelle
