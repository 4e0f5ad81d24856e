#pragma once

#include "midi/KeySignature.h"
#include "midi/MetaEvent.h"
#include "midi/MetaTextEvents.h"
#include "midi/SMTPOffset.h"
#include "midi/Tempo.h"
#include "midi/TimeSignature.h"

// The meta events with values of their own. A value is read from the payload on request.
namespace volvelle {

// A 16-bit number, low byte first.
class MetaSequenceNumberEvent : public MetaEvent {
public:
    MetaSequenceNumberEvent() : MetaEvent(META_SEQUENCENUMBER, 2, 0.0) {}

    MetaSequenceNumberEvent(double position, std::uint16_t number);

    std::uint16_t getSequenceNumber() const;
    void setSequenceNumber(std::uint16_t number);

    void dumpout() const override;

    std::string_view className() const override { return "MetaSequenceNumberEvent"; }
};

class MetaChannelPrefixEvent : public MetaEvent {
public:
    MetaChannelPrefixEvent() : MetaEvent(META_CHANNELPREFIX, 1, 0.0) {}

    MetaChannelPrefixEvent(double position, std::uint8_t value);

    std::uint8_t getPrefix() const;
    void setPrefix(std::uint8_t value);

    std::string_view className() const override { return "MetaChannelPrefixEvent"; }
};

class MetaMidiPortEvent : public MetaEvent {
public:
    MetaMidiPortEvent() : MetaEvent(META_MIDIPORT, 1, 0.0) {}

    MetaMidiPortEvent(double position, std::uint8_t value);

    std::uint8_t getPort() const;
    void setPort(std::uint8_t value);

    std::string_view className() const override { return "MetaMidiPortEvent"; }
};

class MetaEndOfTrackEvent : public MetaEvent {
public:
    MetaEndOfTrackEvent() : MetaEndOfTrackEvent(0.0) {}

    explicit MetaEndOfTrackEvent(double position) : MetaEvent(META_EOT, 0, position) {}

    std::string_view className() const override { return "MetaEndOfTrackEvent"; }
};

class MetaSetTempoEvent : public MetaEvent {
public:
    MetaSetTempoEvent() : MetaEvent(META_SETTEMPO, 3, 0.0) {}

    MetaSetTempoEvent(double position, std::uint8_t value1, std::uint8_t value2, std::uint8_t value3);

    // All zeros, whatever the payload holds: the tempo of a sequence comes from the tempo track.
    Tempo getTempo() const;

    // "{b1}, {b2}, {b3}" of getTempo.
    std::string getTempoV() const;

    void setTempo(std::uint8_t value1, std::uint8_t value2, std::uint8_t value3);

    std::string_view className() const override { return "MetaSetTempoEvent"; }
};

class MetaSMTPOffsetEvent : public MetaEvent {
public:
    MetaSMTPOffsetEvent() : MetaEvent(META_SMTPOFFSET, 5, 0.0) {}

    MetaSMTPOffsetEvent(double position, std::uint8_t hours, std::uint8_t minutes, std::uint8_t seconds,
                        std::uint8_t frames, std::uint8_t fract);

    SMTPOffset getOffset() const;

    // "{hours}:{minutes}:{seconds}:{frames}:{fract}".
    std::string getOffsetV() const;

    void setOffset(std::uint8_t hours, std::uint8_t minutes, std::uint8_t seconds, std::uint8_t frames,
                   std::uint8_t fract);

    std::string_view className() const override { return "MetaSMTPOffsetEvent"; }
};

class MetaTimeSignatureEvent : public MetaEvent {
public:
    MetaTimeSignatureEvent() : MetaEvent(META_TIMESIGNATURE, 4, 0.0) {}

    MetaTimeSignatureEvent(double position, std::uint8_t numerator, std::uint8_t denumerator,
                           std::uint8_t _8th, std::uint8_t _32nd);

    // The denominator is the square of its byte, so 3 gives 9; a byte of 16 or more is a fatal stop.
    TimeSignature getSignature() const;

    // "{numerator}/{denumerator}, {_8th}, {_32nd}" of getSignature.
    std::string getSignatureV() const;

    // Stores the four bytes unchanged: a set denominator of 4 reads back as 16.
    void setSignature(std::uint8_t numerator, std::uint8_t denumerator, std::uint8_t _8th,
                      std::uint8_t _32nd);

    std::string_view className() const override { return "MetaTimeSignatureEvent"; }
};

class MetaKeySignatureEvent : public MetaEvent {
public:
    MetaKeySignatureEvent() : MetaEvent(META_KEYSIGNATURE, 2, 0.0) {}

    MetaKeySignatureEvent(double position, std::uint8_t sf, std::uint8_t mi);

    KeySignature getSignature() const;

    // "{mi}, {sf}".
    std::string getSignatureV() const;

    void setSignature(std::uint8_t sf, std::uint8_t mi);

    std::string_view className() const override { return "MetaKeySignatureEvent"; }
};

// Raw bytes, taken by setData: `length` is then their number.
class MetaSequencerSpecificEvent : public MetaEvent {
public:
    MetaSequencerSpecificEvent() : MetaEvent(META_SPECIFIC, 0, 0.0) {}

    MetaSequencerSpecificEvent(double position, std::uint32_t length, std::vector<std::uint8_t> data);

    std::string_view className() const override { return "MetaSequencerSpecificEvent"; }
};

class MetaUnknownEvent : public MetaEvent {
public:
    MetaUnknownEvent() : MetaEvent(META_UNKNOWN, 0, 0.0) {}

    MetaUnknownEvent(double position, std::uint32_t length, std::vector<std::uint8_t> data);

    std::string_view className() const override { return "MetaUnknownEvent"; }
};

} // namespace volvelle
