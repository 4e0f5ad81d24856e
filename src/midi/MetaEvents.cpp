#include "midi/MetaEvents.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"

#include <utility>

namespace volvelle {

namespace {

constexpr std::string_view numberMessage = "Fehler: Das Sequenznummer Event ist nicht initialisiert.";
constexpr std::string_view prefixMessage = "Fehler: Das Prefix Event ist nicht initialisiert.";
constexpr std::string_view tempoMessage = "Fehler: Das Tempo Event ist nicht initialisiert.";
constexpr std::string_view offsetMessage = "Fehler: Das SMTP Event ist nicht initialisiert.";
constexpr std::string_view signatureMessage = "Fehler: Das Signatur Event ist nicht initialisiert.";

constexpr std::size_t tempoSize = 3;
constexpr std::size_t offsetSize = 5;
constexpr std::size_t timeSize = 4;
constexpr std::size_t keySize = 2;

} // namespace

void MetaEvent::dumpout() const
{
    UserEvent::dumpout();
    dumpPayload();
}

MetaTextFamilyEvent::MetaTextFamilyEvent(std::uint8_t type, double position, std::string_view text)
    : MetaEvent(type, 0, position)
{
    setText(text);
}

std::string MetaTextFamilyEvent::getText() const
{
    return toText();
}

void MetaTextFamilyEvent::setText(std::string_view text)
{
    replaceData({text.begin(), text.end()});
}

MetaSequenceNumberEvent::MetaSequenceNumberEvent(double position, std::uint16_t number)
    : MetaEvent(META_SEQUENCENUMBER, 2, position)
{
    setSequenceNumber(number);
}

std::uint16_t MetaSequenceNumberEvent::getSequenceNumber() const
{
    return holds(2, numberMessage) ? static_cast<std::uint16_t>(data[0] + 256 * data[1]) : std::uint16_t{0};
}

void MetaSequenceNumberEvent::setSequenceNumber(std::uint16_t number)
{
    replaceData({static_cast<std::uint8_t>(number % 256), static_cast<std::uint8_t>(number / 256)});
}

void MetaSequenceNumberEvent::dumpout() const
{
    MetaEvent::dumpout();
    safeprint("\t\tnumber: ", getSequenceNumber(), ".");
}

MetaChannelPrefixEvent::MetaChannelPrefixEvent(double position, std::uint8_t value)
    : MetaEvent(META_CHANNELPREFIX, 1, position)
{
    setPrefix(value);
}

std::uint8_t MetaChannelPrefixEvent::getPrefix() const
{
    return holds(1, prefixMessage) ? data[0] : std::uint8_t{0};
}

void MetaChannelPrefixEvent::setPrefix(std::uint8_t value)
{
    replaceData({value});
}

MetaMidiPortEvent::MetaMidiPortEvent(double position, std::uint8_t value)
    : MetaEvent(META_MIDIPORT, 1, position)
{
    setPort(value);
}

std::uint8_t MetaMidiPortEvent::getPort() const
{
    return holds(1, prefixMessage) ? data[0] : std::uint8_t{0};
}

void MetaMidiPortEvent::setPort(std::uint8_t value)
{
    replaceData({value});
}

MetaSetTempoEvent::MetaSetTempoEvent(double position, std::uint8_t value1, std::uint8_t value2,
                                     std::uint8_t value3)
    : MetaEvent(META_SETTEMPO, tempoSize, position)
{
    setTempo(value1, value2, value3);
}

Tempo MetaSetTempoEvent::getTempo() const
{
    holds(tempoSize, tempoMessage);
    return {};
}

std::string MetaSetTempoEvent::getTempoV() const
{
    if (!holds(tempoSize, tempoMessage)) {
        return {};
    }
    const Tempo tempo = getTempo();
    return concat(tempo.b1, ", ", tempo.b2, ", ", tempo.b3);
}

void MetaSetTempoEvent::setTempo(std::uint8_t value1, std::uint8_t value2, std::uint8_t value3)
{
    replaceData({value1, value2, value3});
}

MetaSMTPOffsetEvent::MetaSMTPOffsetEvent(double position, std::uint8_t hours, std::uint8_t minutes,
                                         std::uint8_t seconds, std::uint8_t frames, std::uint8_t fract)
    : MetaEvent(META_SMTPOFFSET, offsetSize, position)
{
    setOffset(hours, minutes, seconds, frames, fract);
}

SMTPOffset MetaSMTPOffsetEvent::getOffset() const
{
    if (!holds(offsetSize, offsetMessage)) {
        return {};
    }
    return {data[0], data[1], data[2], data[3], data[4]};
}

std::string MetaSMTPOffsetEvent::getOffsetV() const
{
    if (!holds(offsetSize, offsetMessage)) {
        return {};
    }
    return concat(data[0], ":", data[1], ":", data[2], ":", data[3], ":", data[4]);
}

void MetaSMTPOffsetEvent::setOffset(std::uint8_t hours, std::uint8_t minutes, std::uint8_t seconds,
                                    std::uint8_t frames, std::uint8_t fract)
{
    replaceData({hours, minutes, seconds, frames, fract});
}

MetaTimeSignatureEvent::MetaTimeSignatureEvent(double position, std::uint8_t numerator,
                                               std::uint8_t denumerator, std::uint8_t _8th,
                                               std::uint8_t _32nd)
    : MetaEvent(META_TIMESIGNATURE, timeSize, position)
{
    setSignature(numerator, denumerator, _8th, _32nd);
}

TimeSignature MetaTimeSignatureEvent::getSignature() const
{
    if (!holds(timeSize, signatureMessage)) {
        return {};
    }
    return {data[0], checkedCast<std::uint8_t>(data[1] * data[1]), data[2], data[3]};
}

std::string MetaTimeSignatureEvent::getSignatureV() const
{
    if (!holds(timeSize, signatureMessage)) {
        return {};
    }
    const TimeSignature signature = getSignature();
    return concat(signature.numerator, "/", signature.denumerator, ", ", signature._8th, ", ",
                  signature._32nd);
}

void MetaTimeSignatureEvent::setSignature(std::uint8_t numerator, std::uint8_t denumerator, std::uint8_t _8th,
                                          std::uint8_t _32nd)
{
    replaceData({numerator, denumerator, _8th, _32nd});
}

MetaKeySignatureEvent::MetaKeySignatureEvent(double position, std::uint8_t sf, std::uint8_t mi)
    : MetaEvent(META_KEYSIGNATURE, keySize, position)
{
    setSignature(sf, mi);
}

KeySignature MetaKeySignatureEvent::getSignature() const
{
    if (!holds(keySize, signatureMessage)) {
        return {};
    }
    return {data[0], data[1]};
}

std::string MetaKeySignatureEvent::getSignatureV() const
{
    if (!holds(keySize, signatureMessage)) {
        return {};
    }
    return concat(data[1], ", ", data[0]);
}

void MetaKeySignatureEvent::setSignature(std::uint8_t sf, std::uint8_t mi)
{
    replaceData({sf, mi});
}

MetaSequencerSpecificEvent::MetaSequencerSpecificEvent(double position, std::uint32_t length,
                                                       std::vector<std::uint8_t> data)
    : MetaEvent(META_SPECIFIC, 0, position)
{
    UserEvent::setData(length, std::move(data));
}

MetaUnknownEvent::MetaUnknownEvent(double position, std::uint32_t length, std::vector<std::uint8_t> data)
    : MetaEvent(META_UNKNOWN, 0, position)
{
    UserEvent::setData(length, std::move(data));
}

} // namespace volvelle
