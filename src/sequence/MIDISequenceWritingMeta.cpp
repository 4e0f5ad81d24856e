#include "sequence/SequenceLog.h"
#include "sequence/SequenceWriter.h"

namespace volvelle {

void MIDISequence::createMetaSequenceNumberEvent(double position, std::uint16_t value)
{
    SequenceWriter(*this).create<MetaSequenceNumberEvent>(position, value);
}

void MIDISequence::createMetaSequenceNumberMessage(const std::shared_ptr<MetaSequenceNumberEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaTextEvent(double position, std::string_view text)
{
    SequenceWriter(*this).create<MetaTextEvent>(position, text);
}

void MIDISequence::createMetaTextMessage(const std::shared_ptr<MetaTextEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaCopyrightEvent(double position, std::string_view text)
{
    SequenceWriter(*this).create<MetaCopyrightEvent>(position, text);
}

void MIDISequence::createMetaCopyrightMessage(const std::shared_ptr<MetaCopyrightEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaTrackNameEvent(double position, std::string_view text)
{
    SequenceWriter(*this).create<MetaTrackNameEvent>(position, text);
}

void MIDISequence::createMetaTrackNameMessage(const std::shared_ptr<MetaTrackNameEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaInstrumentNameEvent(double position, std::string_view text)
{
    SequenceWriter(*this).create<MetaInstrumentNameEvent>(position, text);
}

void MIDISequence::createMetaInstrumentNameMessage(const std::shared_ptr<MetaInstrumentNameEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaLyricsEvent(double position, std::string_view text)
{
    SequenceWriter(*this).create<MetaLyricsEvent>(position, text);
}

void MIDISequence::createMetaLyricsMessage(const std::shared_ptr<MetaLyricsEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaMarkerEvent(double position, std::string_view text)
{
    SequenceWriter(*this).create<MetaMarkerEvent>(position, text);
}

void MIDISequence::createMetaMarkerMessage(const std::shared_ptr<MetaMarkerEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaCuePointEvent(double position, std::string_view text)
{
    SequenceWriter(*this).create<MetaCuePointEvent>(position, text);
}

void MIDISequence::createMetaCuePointMessage(const std::shared_ptr<MetaCuePointEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaProgramNameEvent(double position, std::string_view text)
{
    SequenceWriter(*this).create<MetaProgramNameEvent>(position, text);
}

void MIDISequence::createMetaProgramNameMessage(const std::shared_ptr<MetaProgramNameEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaDeviceNameEvent(double position, std::string_view text)
{
    SequenceWriter(*this).create<MetaDeviceNameEvent>(position, text);
}

void MIDISequence::createMetaDeviceNameMessage(const std::shared_ptr<MetaDeviceNameEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaChannelPrefixEvent(double position, std::uint8_t prefix)
{
    SequenceWriter(*this).create<MetaChannelPrefixEvent>(position, prefix);
}

void MIDISequence::createMetaChannelPrefixMessage(const std::shared_ptr<MetaChannelPrefixEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaMidiPortEvent(double position, std::uint8_t port)
{
    SequenceWriter(*this).create<MetaMidiPortEvent>(position, port);
}

void MIDISequence::createMetaMidiPortMessage(const std::shared_ptr<MetaMidiPortEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaEndOfTrackEvent(double position)
{
    SequenceWriter(*this).create<MetaEndOfTrackEvent>(position);
}

void MIDISequence::createMetaEndOfTrackMessage(const std::shared_ptr<MetaEndOfTrackEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaSetTempoEvent(double position, std::uint8_t value1, std::uint8_t value2,
                                           std::uint8_t value3)
{
    SequenceWriter(*this).create<MetaSetTempoEvent>(position, value1, value2, value3);
}

void MIDISequence::createMetaSetTempoMessage(const std::shared_ptr<MetaSetTempoEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaSMTPOffsetEvent(double position, std::uint8_t hours, std::uint8_t minutes,
                                             std::uint8_t seconds, std::uint8_t frames, std::uint8_t fract)
{
    SequenceWriter(*this).create<MetaSMTPOffsetEvent>(position, hours, minutes, seconds, frames, fract);
}

void MIDISequence::createMetaSMTPOffsetMessage(const std::shared_ptr<MetaSMTPOffsetEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaTimeSignatureEvent(double position, std::uint8_t numerator,
                                                std::uint8_t denumerator, std::uint8_t _8th,
                                                std::uint8_t _32nd)
{
    SequenceWriter(*this).create<MetaTimeSignatureEvent>(position, numerator, denumerator, _8th, _32nd);
}

void MIDISequence::createMetaTimeSignatureMessage(const std::shared_ptr<MetaTimeSignatureEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaKeySignatureEvent(double position, std::uint8_t sf, std::uint8_t mi)
{
    SequenceWriter(*this).create<MetaKeySignatureEvent>(position, sf, mi);
}

void MIDISequence::createMetaKeySignatureMessage(const std::shared_ptr<MetaKeySignatureEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaSequencerSpecificEvent(double position, std::uint32_t length,
                                                    const std::vector<std::uint8_t>& data)
{
    SequenceWriter(*this).create<MetaSequencerSpecificEvent>(position, length, data);
}

void MIDISequence::createMetaSequencerSpecificMessage(
    const std::shared_ptr<MetaSequencerSpecificEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createMetaEvent(double position, int length, const std::vector<std::uint8_t>& data,
                                   std::uint8_t type)
{
    const MusicTrack track = getTrack(0);
    if (!track) {
        logLine("Fehler: Die Spur ist undefiniert.");
        return;
    }
    if (data.empty()) {
        logLine("MIDISequence::Warnung: Es befinden sich keine Einträge im übergebenen Daten Objekt.");
    } else if (length >= 4) {
        const auto event = std::make_shared<MetaEvent>();
        event->position = position;
        event->type = type;
        event->setData(checkedCast<std::uint32_t>(length), data);
        SequenceWriter writer(*this);
        writer.addToTree(event);
        writer.write(event, EventKinds::plainMeta, track);
    }
    ensureSongLength(position);
}

} // namespace volvelle
