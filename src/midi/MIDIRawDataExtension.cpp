#include "midi/MIDIRawDataExtension.h"

#include "base/Checked.h"

#include <new>

namespace volvelle {

static_assert(sizeof(MIDIRawDataExtension) == 1024);
static_assert(offsetof(MIDIMetaEventEx, dataLength) == offsetof(MIDIMetaEvent, dataLength));
static_assert(offsetof(MIDIMetaEventEx, data) == offsetof(MIDIMetaEvent, data));
static_assert(offsetof(MIDIRawDataEx, data) == offsetof(MIDIRawData, data));
static_assert(offsetof(MusicEventUserDataEx, data) == offsetof(MusicEventUserData, data));
static_assert(offsetof(MIDIPacketEx, length) == offsetof(MIDIPacket, length));
static_assert(offsetof(MIDIPacketEx, data) == offsetof(MIDIPacket, data));

namespace {

// Copies what fits, and returns how much that is.
template <class Room>
std::uint32_t fill(Room& room, const std::vector<std::uint8_t>& data)
{
    const std::size_t count = std::min(data.size(), room.size());
    std::copy_n(data.begin(), count, room.begin());
    return static_cast<std::uint32_t>(count);
}

} // namespace

MyMIDIMetaEvent::MyMIDIMetaEvent(const std::vector<std::uint8_t>& data)
{
    ptr->dataLength = fill(ext.data.bytes, data);
}

MyMIDIRawData::MyMIDIRawData(const std::vector<std::uint8_t>& data)
{
    ptr->length = fill(ext.data.bytes, data);
}

MyMusicEventUserData::MyMusicEventUserData(const std::vector<std::uint8_t>& data)
{
    ptr->length = fill(ext.data.bytes, data);
}

MyMIDIPacket::MyMIDIPacket(const std::vector<std::uint8_t>& data)
{
    ptr->length = static_cast<std::uint16_t>(fill(ext.data, data));
}

MyMetaEvent::MyMetaEvent(std::uint8_t type, const std::vector<std::uint8_t>& data)
    : size(checkedAdd(checkedCast<int>(data.size()), 12)), mem(new std::uint8_t[data.size() + 12]())
{
    auto* head = new (mem) MIDIMetaEvent;
    head->metaEventType = type;
    head->dataLength = static_cast<std::uint32_t>(data.size());
    std::ranges::copy(data, mem + offsetof(MIDIMetaEvent, data));
}

MyMetaEvent::~MyMetaEvent()
{
    delete[] mem;
}

void MyMetaEvent::withMIDIMetaEventPtr(const std::function<void(const MIDIMetaEvent*)>& body) const
{
    body(reinterpret_cast<const MIDIMetaEvent*>(mem));
}

void test_MyMetaEvent()
{
    const MyMetaEvent event(0x7F, {0, 0, 0});
    event.withMIDIMetaEventPtr([](const MIDIMetaEvent*) {});
}

} // namespace volvelle
