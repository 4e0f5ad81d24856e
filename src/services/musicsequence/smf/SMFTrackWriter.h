#pragma once

#include "services/musicsequence/MusicSequence.h"
#include "services/musicsequence/smf/SMFByteWriter.h"

#include <cstdint>
#include <vector>

namespace volvelle {

class MusicTrackObject;

// Writes tracks of a sequence as one track chunk. Notes of one channel and key are ended first in, first out.
class SMFTrackWriter {
public:
    // `resolution` is in ticks a beat.
    SMFTrackWriter(SMFByteWriter& file, int resolution) : writer(file), ticksABeat(resolution) {}

    // Collects the events; to be called in the order in which events of equal ticks stand. False where a time
    // or an event is greater than a file can hold.
    bool add(MusicTrackObject& track);

    // Writes what was collected; false where it is greater than a chunk can be, or the file overfull.
    bool write();

private:
    struct Item {
        std::uint64_t tick = 0;
        std::uint64_t end = 0; // of a note, in ticks
        const void* record = nullptr;
        MusicEventType type = kMusicEventType_NULL;
        std::uint8_t release = 0; // of a note
    };

    struct Off {
        std::uint64_t tick = 0;
        std::size_t item = 0;
        std::uint8_t release = 0;
    };

    bool addItem(double time, MusicEventType type, const void* record);
    bool tickOf(double time, std::uint64_t& result) const;
    void collectOffs();
    void pairOffs();
    void sortOffs();
    void writeItem(const Item& item);
    void writeNote(const Item& item);
    void writeOff(const Off& off);
    void writeMessage(const Item& item);
    void writeMeta(const Item& item);
    void writeTempo(const Item& item);
    void writeRawData(const Item& item);
    void writeStatus(std::uint8_t status, std::uint64_t tick);
    void writeSystem(std::uint8_t status, std::uint64_t tick);
    void writeDelta(std::uint64_t tick);

    SMFByteWriter& writer;
    double ticksABeat;
    std::vector<Item> items;
    std::vector<Off> offs; // of the notes that are longer than nothing
    std::uint64_t endTick = 0;
    bool isSorted = true;
    std::uint64_t now = 0;
    std::uint8_t running = 0;
};

} // namespace volvelle
