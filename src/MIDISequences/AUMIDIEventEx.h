#pragma once

#include "MIDISequences/AURenderEvent.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace volvelle {

// The owned form of a render event: one block holds the record and its MIDI bytes, whatever their number.
// Held by std::shared_ptr; pointers to the record and its bytes are valid as long as the object. Making one
// allocates and is for any thread; more than 65,535 bytes are a fatal stop. InitializeWith and the readers
// are realtime. [any]
class AUMIDIEventEx {
public:
    // A record of that type and sample time with all bytes of the array. An array shorter than `length` is
    // told in the log, a longer one is not.
    AUMIDIEventEx(AURenderEventType type, const std::vector<std::uint8_t>& bytes, std::uint32_t length,
                  std::int64_t time);

    // The same with `length` bytes from `raw`.
    AUMIDIEventEx(AURenderEventType type, const std::uint8_t* raw, std::uint32_t length, std::int64_t time);

    // A copy of the record, its link included, with `length` bytes. Behind the data of `ev` there must be as
    // many.
    AUMIDIEventEx(const AUMIDIEvent& ev, std::uint16_t length);

    // A copy of the record and the bytes; `id`, `beats`, `duration` and `meta` are not copied, and so none is
    // made unasked.
    explicit AUMIDIEventEx(const AUMIDIEventEx& e);

    // A MIDI event of that array at sample time 0.
    explicit AUMIDIEventEx(const std::vector<std::uint8_t>& bytes);

    virtual ~AUMIDIEventEx();
    AUMIDIEventEx& operator=(const AUMIDIEventEx&) = delete;

    static constexpr std::uint32_t MAXBYTES = 256;

    const int size;          // bytes in the block: the data's length plus 24
    std::uint8_t* const mem; // the block, freed with the object

private:
    AUMIDIEvent* _event;
    std::uint8_t* _data;
    std::uint32_t _datacount; // valid bytes

public:
    int id = 0;               // free identity for lists of events
    double beats = 0.0;       // position in beats
    double duration = 0.0;    // beats
    std::uint8_t meta = 0x7F; // meta type; 0x7F means none

    // A copy of the record without the bytes after it; the setter overwrites head and the first three bytes.
    virtual AUMIDIEvent event() const;
    virtual void setEvent(const AUMIDIEvent& value);

    virtual AUMIDIEvent* pEvent() const;

    // The MIDI bytes. The setter does nothing.
    virtual std::uint8_t* data() const;
    virtual void setData(std::uint8_t* value);

    // The bytes as an array of length() elements.
    virtual std::vector<std::uint8_t> array() const;
    virtual std::uint32_t length() const;

    // Calls `body` with the record.
    virtual void with(const std::function<void(const AUMIDIEvent*)>& body) const;

    // Overwrites record and bytes with those of `aumi`. A record above MAXBYTES changes nothing; one with
    // more bytes than this event holds gives its record but not its bytes; one with up to three bytes leaves
    // length() as it was. [realtime]
    virtual void InitializeWith(const AUMIDIEvent& aumi);

private:
    // Takes `length` bytes unless that is more than the event holds, and then holds that many.
    virtual void copy(const std::uint8_t* from, std::uint32_t length);

public:
    // Each byte as two hexadecimal digits, filled up with a blank, without separators.
    virtual std::string toHex() const;

    // Each byte as the character of that number.
    virtual std::string toText() const;

private:
    explicit AUMIDIEventEx(std::uint32_t dataLength);
};

} // namespace volvelle
