#include "MIDISequences/AUMIDIEventEx.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"

#include <algorithm>
#include <new>

namespace volvelle {

namespace {

constexpr int headSize = 24; // bytes of a record

// The bytes of a block for so many MIDI bytes, which the record's length must be able to tell.
int blockSize(std::uint32_t dataLength)
{
    return checkedCast<std::uint16_t>(dataLength) + headSize;
}

} // namespace

AUMIDIEventEx::AUMIDIEventEx(std::uint32_t dataLength)
    : size(blockSize(dataLength)),
      mem(new std::uint8_t[std::size_t{dataLength} + headSize]()),
      _event(new(mem) AUMIDIEvent),
      _data(mem + offsetof(AUMIDIEvent, data)),
      _datacount(dataLength)
{
    _event->length = static_cast<std::uint16_t>(dataLength);
}

AUMIDIEventEx::AUMIDIEventEx(AURenderEventType type, const std::uint8_t* raw, std::uint32_t length,
                             std::int64_t time)
    : AUMIDIEventEx(length)
{
    _event->eventType = type;
    _event->eventSampleTime = time;
    std::copy_n(raw, length, _data);
}

AUMIDIEventEx::AUMIDIEventEx(AURenderEventType type, const std::vector<std::uint8_t>& bytes,
                             std::uint32_t length, std::int64_t time)
    : AUMIDIEventEx(type, bytes.data(), checkedCast<std::uint32_t>(bytes.size()), time)
{
    if (bytes.size() < length) {
        safeprint("WARNING: The length parameter ", length, " is not equal to the data length ", bytes.size(),
                  ".");
    }
}

AUMIDIEventEx::AUMIDIEventEx(const AUMIDIEvent& ev, std::uint16_t length)
    : AUMIDIEventEx(std::uint32_t{length})
{
    *_event = ev;
    _event->length = length;
    const auto* source = reinterpret_cast<const std::uint8_t*>(&ev) + offsetof(AUMIDIEvent, data);
    std::copy_n(source, length, _data);
}

AUMIDIEventEx::AUMIDIEventEx(const AUMIDIEventEx& e) : AUMIDIEventEx(e.length())
{
    *_event = *e._event;
    std::copy_n(e._data, _datacount, _data);
}

AUMIDIEventEx::AUMIDIEventEx(const std::vector<std::uint8_t>& bytes)
    : AUMIDIEventEx(AURenderEventMIDI, bytes, checkedCast<std::uint32_t>(bytes.size()), 0)
{
}

AUMIDIEventEx::~AUMIDIEventEx()
{
    delete[] mem;
}

AUMIDIEvent AUMIDIEventEx::event() const
{
    return required(_event);
}

void AUMIDIEventEx::setEvent(const AUMIDIEvent& value)
{
    required(_event) = value;
}

AUMIDIEvent* AUMIDIEventEx::pEvent() const
{
    return &required(_event);
}

std::uint8_t* AUMIDIEventEx::data() const
{
    return &required(_data);
}

void AUMIDIEventEx::setData(std::uint8_t* /*value*/) {}

std::vector<std::uint8_t> AUMIDIEventEx::array() const
{
    const std::uint8_t* bytes = data();
    return {bytes, bytes + _datacount};
}

std::uint32_t AUMIDIEventEx::length() const
{
    return _datacount;
}

void AUMIDIEventEx::with(const std::function<void(const AUMIDIEvent*)>& body) const
{
    body(pEvent());
}

void AUMIDIEventEx::InitializeWith(const AUMIDIEvent& aumi)
{
    if (aumi.length > MAXBYTES) {
        return;
    }
    setEvent(aumi);
    if (aumi.length > 3) {
        copy(reinterpret_cast<const std::uint8_t*>(&aumi) + offsetof(AUMIDIEvent, data), aumi.length);
    }
}

void AUMIDIEventEx::copy(const std::uint8_t* from, std::uint32_t length)
{
    if (length > _datacount) {
        return;
    }
    std::copy_n(from, length, data());
    _datacount = length;
}

std::string AUMIDIEventEx::toHex() const
{
    std::string result;
    for (const std::uint8_t byte : array()) {
        result += hexadecimal(byte, ' ');
    }
    return result;
}

std::string AUMIDIEventEx::toText() const
{
    return latinText(array());
}

} // namespace volvelle
