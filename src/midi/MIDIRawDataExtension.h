#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

// Records of variable length with room for 1024 bytes after their heads, and the objects that fill them from
// an array of bytes. Longer arrays lose their tail without a message. An object is made, filled once, handed
// to one call by its head pointer and dropped; its pointers point into itself, so it neither moves nor is
// copied.
namespace volvelle {

// The room after a head.
struct MIDIRawDataExtension {
    std::array<std::uint8_t, 1024> bytes{};
};

// MARK: Records, each beginning with the head of the service's own

struct MIDIMetaEventEx {
    MIDIMetaEventEx() = default;
    MIDIMetaEventEx(const MIDIMetaEventEx&) = delete;
    MIDIMetaEventEx& operator=(const MIDIMetaEventEx&) = delete;

    std::uint8_t metaEventType = 0;
    std::uint8_t unused1 = 0;
    std::uint8_t unused2 = 0;
    std::uint8_t unused3 = 0;
    std::uint32_t dataLength = 0;
    MIDIRawDataExtension data;
    MIDIRawDataExtension* ptr = &data;
};

struct MIDIRawDataEx {
    MIDIRawDataEx() = default;
    MIDIRawDataEx(const MIDIRawDataEx&) = delete;
    MIDIRawDataEx& operator=(const MIDIRawDataEx&) = delete;

    std::uint32_t length = 0;
    MIDIRawDataExtension data;
    MIDIRawDataExtension* ptr = &data;
};

struct MusicEventUserDataEx {
    MusicEventUserDataEx() = default;
    MusicEventUserDataEx(const MusicEventUserDataEx&) = delete;
    MusicEventUserDataEx& operator=(const MusicEventUserDataEx&) = delete;

    std::uint32_t length = 0;
    MIDIRawDataExtension data;
    MIDIRawDataExtension* ptr = &data;
};

// The head of a packet; the bytes stand right after the length.
struct MIDIPacket {
    std::uint64_t timeStamp = 0;
    std::uint16_t length = 0;
    std::uint8_t data[1] = {};
};

// A packet with room for four bytes and no more.
struct MIDIPacketEx {
    MIDIPacketEx() = default;

    MIDIPacketEx(std::uint64_t timeStamp, std::uint16_t length, const std::array<std::uint8_t, 4>& data)
        : timeStamp(timeStamp), length(length), data(data)
    {
    }

    std::uint64_t timeStamp = 0;
    std::uint16_t length = 0;
    std::array<std::uint8_t, 4> data{};
};

using MIDIMetaEventPtr = MIDIMetaEvent*;
using MIDIRawDataPtr = MIDIRawData*;
using MusicEventUserDataPtr = MusicEventUserData*;
using MIDIPacketPtr = MIDIPacket*;

// MARK: Owning objects

// The caller sets the type of the record afterwards, through `ptr`.
class MyMIDIMetaEvent {
public:
    MyMIDIMetaEvent() = default;
    explicit MyMIDIMetaEvent(const std::vector<std::uint8_t>& data);
    MyMIDIMetaEvent(const MyMIDIMetaEvent&) = delete;
    MyMIDIMetaEvent& operator=(const MyMIDIMetaEvent&) = delete;

    MIDIMetaEventEx ext;
    MIDIMetaEvent* const ptr = reinterpret_cast<MIDIMetaEventPtr>(&ext);
    std::uint8_t* const dataPtr = ext.data.bytes.data();
};

class MyMIDIRawData {
public:
    MyMIDIRawData() = default;
    explicit MyMIDIRawData(const std::vector<std::uint8_t>& data);
    MyMIDIRawData(const MyMIDIRawData&) = delete;
    MyMIDIRawData& operator=(const MyMIDIRawData&) = delete;

    MIDIRawDataEx ext;
    MIDIRawData* const ptr = reinterpret_cast<MIDIRawDataPtr>(&ext);
    std::uint8_t* const dataPtr = ext.data.bytes.data();
};

class MyMusicEventUserData {
public:
    MyMusicEventUserData() = default;
    explicit MyMusicEventUserData(const std::vector<std::uint8_t>& data);
    MyMusicEventUserData(const MyMusicEventUserData&) = delete;
    MyMusicEventUserData& operator=(const MyMusicEventUserData&) = delete;

    MusicEventUserDataEx ext;
    MusicEventUserData* const ptr = reinterpret_cast<MusicEventUserDataPtr>(&ext);
    std::uint8_t* const dataPtr = ext.data.bytes.data();
};

// Takes what its room of four bytes holds.
class MyMIDIPacket {
public:
    explicit MyMIDIPacket(const std::vector<std::uint8_t>& data);
    MyMIDIPacket(const MyMIDIPacket&) = delete;
    MyMIDIPacket& operator=(const MyMIDIPacket&) = delete;

    MIDIPacketEx ext;
    MIDIPacket* const ptr = reinterpret_cast<MIDIPacketPtr>(&ext);
    std::uint8_t* const dataPtr = ext.data.data();
};

// A meta record in a block of its own, of any length.
class MyMetaEvent {
public:
    MyMetaEvent(std::uint8_t type, const std::vector<std::uint8_t>& data);
    ~MyMetaEvent();
    MyMetaEvent(const MyMetaEvent&) = delete;
    MyMetaEvent& operator=(const MyMetaEvent&) = delete;

    const int size;          // bytes in the block: the data's count plus 12
    std::uint8_t* const mem; // the block, freed with the object

    // Calls `body` with the block read as a record.
    void withMIDIMetaEventPtr(const std::function<void(const MIDIMetaEvent*)>& body) const;
};

// Calls `body` with each byte of any sequence of bytes.
template <class Bytes>
void iterate(const Bytes& value, const std::function<void(std::uint8_t)>& body)
{
    std::for_each(std::begin(value), std::end(value), body);
}

// Makes a meta record of three zero bytes and hands it to an empty function.
void test_MyMetaEvent();

} // namespace volvelle
