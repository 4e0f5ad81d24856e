#include "sequence/MIDISequenceWriting.h"

#include "midi/MIDIRawDataExtension.h"

namespace volvelle {

namespace {

OSStatus writeMeta(const MusicTrack& track, const MetaEvent& event)
{
    const MyMIDIMetaEvent record(event.data);
    record.ptr->metaEventType = event.type;
    return MusicTrackNewMetaEvent(track, event.position, record.ptr);
}

auto metaFailure(std::string_view kind)
{
    return [kind] { return concat("Es konnte kein META ", kind, " Event erzeugt werden."); };
}

} // namespace

template <class Node>
void MIDISequence::writeMetaMessage(const std::shared_ptr<Node>& event, std::string_view kind,
                                    void (SequenceFoundDelegate::*found)(const std::shared_ptr<Node>&))
{
    writeMessage(event, metaFailure(kind), found,
                 [&](const MusicTrack& track) { return writeMeta(track, *event); });
}

void MIDISequence::createMetaSequenceNumberEvent(double position, std::uint16_t value)
{
    const auto event = std::make_shared<MetaSequenceNumberEvent>(position, value);
    addToTree(event);
    createMetaSequenceNumberMessage(event);
}

void MIDISequence::createMetaSequenceNumberMessage(const std::shared_ptr<MetaSequenceNumberEvent>& event)
{
    writeMetaMessage(event, "TRACKNUMBER", &SequenceFoundDelegate::foundMetaSequenceNumberEvent);
}

void MIDISequence::createMetaTextEvent(double position, std::string_view text)
{
    const auto event = std::make_shared<MetaTextEvent>(position, text);
    addToTree(event);
    createMetaTextMessage(event);
}

void MIDISequence::createMetaTextMessage(const std::shared_ptr<MetaTextEvent>& event)
{
    writeMetaMessage(event, "DESCRIPTION", &SequenceFoundDelegate::foundMetaTextEvent);
}

void MIDISequence::createMetaCopyrightEvent(double position, std::string_view text)
{
    const auto event = std::make_shared<MetaCopyrightEvent>(position, text);
    addToTree(event);
    createMetaCopyrightMessage(event);
}

void MIDISequence::createMetaCopyrightMessage(const std::shared_ptr<MetaCopyrightEvent>& event)
{
    writeMetaMessage(event, "COPYRIGHT", &SequenceFoundDelegate::foundMetaCopyrightEvent);
}

void MIDISequence::createMetaTrackNameEvent(double position, std::string_view text)
{
    const auto event = std::make_shared<MetaTrackNameEvent>(position, text);
    addToTree(event);
    createMetaTrackNameMessage(event);
}

void MIDISequence::createMetaTrackNameMessage(const std::shared_ptr<MetaTrackNameEvent>& event)
{
    writeMetaMessage(event, "TRACKNAME", &SequenceFoundDelegate::foundMetaTrackNameEvent);
}

void MIDISequence::createMetaInstrumentNameEvent(double position, std::string_view text)
{
    const auto event = std::make_shared<MetaInstrumentNameEvent>(position, text);
    addToTree(event);
    createMetaInstrumentNameMessage(event);
}

void MIDISequence::createMetaInstrumentNameMessage(const std::shared_ptr<MetaInstrumentNameEvent>& event)
{
    writeMetaMessage(event, "INSTRUMENTNAME", &SequenceFoundDelegate::foundMetaInstrumentNameEvent);
}

void MIDISequence::createMetaLyricsEvent(double position, std::string_view text)
{
    const auto event = std::make_shared<MetaLyricsEvent>(position, text);
    addToTree(event);
    createMetaLyricsMessage(event);
}

void MIDISequence::createMetaLyricsMessage(const std::shared_ptr<MetaLyricsEvent>& event)
{
    writeMetaMessage(event, "LYRICS", &SequenceFoundDelegate::foundMetaLyricsEvent);
}

void MIDISequence::createMetaMarkerEvent(double position, std::string_view text)
{
    const auto event = std::make_shared<MetaMarkerEvent>(position, text);
    addToTree(event);
    createMetaMarkerMessage(event);
}

void MIDISequence::createMetaMarkerMessage(const std::shared_ptr<MetaMarkerEvent>& event)
{
    writeMetaMessage(event, "TEXTMARKER", &SequenceFoundDelegate::foundMetaMarkerEvent);
}

void MIDISequence::createMetaCuePointEvent(double position, std::string_view text)
{
    const auto event = std::make_shared<MetaCuePointEvent>(position, text);
    addToTree(event);
    createMetaCuePointMessage(event);
}

void MIDISequence::createMetaCuePointMessage(const std::shared_ptr<MetaCuePointEvent>& event)
{
    writeMetaMessage(event, "CUEPOINT", &SequenceFoundDelegate::foundMetaCuePointEvent);
}

void MIDISequence::createMetaProgramNameEvent(double position, std::string_view text)
{
    const auto event = std::make_shared<MetaProgramNameEvent>(position, text);
    addToTree(event);
    createMetaProgramNameMessage(event);
}

void MIDISequence::createMetaProgramNameMessage(const std::shared_ptr<MetaProgramNameEvent>& event)
{
    writeMetaMessage(event, "PROGRAMNAME", &SequenceFoundDelegate::foundMetaProgramNameEvent);
}

void MIDISequence::createMetaDeviceNameEvent(double position, std::string_view text)
{
    const auto event = std::make_shared<MetaDeviceNameEvent>(position, text);
    addToTree(event);
    createMetaDeviceNameMessage(event);
}

void MIDISequence::createMetaDeviceNameMessage(const std::shared_ptr<MetaDeviceNameEvent>& event)
{
    writeMetaMessage(event, "DEVICENAME", &SequenceFoundDelegate::foundMetaDeviceNameEvent);
}

void MIDISequence::createMetaChannelPrefixEvent(double position, std::uint8_t prefix)
{
    const auto event = std::make_shared<MetaChannelPrefixEvent>(position, prefix);
    addToTree(event);
    createMetaChannelPrefixMessage(event);
}

void MIDISequence::createMetaChannelPrefixMessage(const std::shared_ptr<MetaChannelPrefixEvent>& event)
{
    writeMetaMessage(event, "CANNELPREFIX", &SequenceFoundDelegate::foundMetaChannelPrefixEvent);
}

void MIDISequence::createMetaMidiPortEvent(double position, std::uint8_t port)
{
    const auto event = std::make_shared<MetaMidiPortEvent>(position, port);
    addToTree(event);
    createMetaMidiPortMessage(event);
}

void MIDISequence::createMetaMidiPortMessage(const std::shared_ptr<MetaMidiPortEvent>& event)
{
    writeMetaMessage(event, "MIDIPORT", &SequenceFoundDelegate::foundMetaMidiPortEvent);
}

void MIDISequence::createMetaEndOfTrackEvent(double position)
{
    const auto event = std::make_shared<MetaEndOfTrackEvent>(position);
    addToTree(event);
    createMetaEndOfTrackMessage(event);
}

void MIDISequence::createMetaEndOfTrackMessage(const std::shared_ptr<MetaEndOfTrackEvent>& event)
{
    writeMetaMessage(event, "ENDOFTRACK", &SequenceFoundDelegate::foundMetaEndOfTrackEvent);
}

void MIDISequence::createMetaSetTempoEvent(double position, std::uint8_t value1, std::uint8_t value2,
                                           std::uint8_t value3)
{
    const auto event = std::make_shared<MetaSetTempoEvent>(position, value1, value2, value3);
    addToTree(event);
    createMetaSetTempoMessage(event);
}

void MIDISequence::createMetaSetTempoMessage(const std::shared_ptr<MetaSetTempoEvent>& event)
{
    writeMetaMessage(event, "SETTEMPO", &SequenceFoundDelegate::foundMetaSetTempoEvent);
}

void MIDISequence::createMetaSMTPOffsetEvent(double position, std::uint8_t hours, std::uint8_t minutes,
                                             std::uint8_t seconds, std::uint8_t frames, std::uint8_t fract)
{
    const auto event =
        std::make_shared<MetaSMTPOffsetEvent>(position, hours, minutes, seconds, frames, fract);
    addToTree(event);
    createMetaSMTPOffsetMessage(event);
}

void MIDISequence::createMetaSMTPOffsetMessage(const std::shared_ptr<MetaSMTPOffsetEvent>& event)
{
    writeMetaMessage(event, "SMTPOFFSET", &SequenceFoundDelegate::foundMetaSMTPOffsetEvent);
}

void MIDISequence::createMetaTimeSignatureEvent(double position, std::uint8_t numerator,
                                                std::uint8_t denumerator, std::uint8_t _8th,
                                                std::uint8_t _32nd)
{
    const auto event =
        std::make_shared<MetaTimeSignatureEvent>(position, numerator, denumerator, _8th, _32nd);
    addToTree(event);
    createMetaTimeSignatureMessage(event);
}

void MIDISequence::createMetaTimeSignatureMessage(const std::shared_ptr<MetaTimeSignatureEvent>& event)
{
    writeMetaMessage(event, "TIMESIGNATURE", &SequenceFoundDelegate::foundMetaTimeSignatureEvent);
}

void MIDISequence::createMetaKeySignatureEvent(double position, std::uint8_t sf, std::uint8_t mi)
{
    const auto event = std::make_shared<MetaKeySignatureEvent>(position, sf, mi);
    addToTree(event);
    createMetaKeySignatureMessage(event);
}

void MIDISequence::createMetaKeySignatureMessage(const std::shared_ptr<MetaKeySignatureEvent>& event)
{
    writeMetaMessage(event, "KEYSIGNATURE", &SequenceFoundDelegate::foundMetaKeySignatureEvent);
}

void MIDISequence::createMetaSequencerSpecificEvent(double position, std::uint32_t length,
                                                    const std::vector<std::uint8_t>& data)
{
    const auto event = std::make_shared<MetaSequencerSpecificEvent>(position, length, data);
    addToTree(event);
    createMetaSequencerSpecificMessage(event);
}

void MIDISequence::createMetaSequencerSpecificMessage(
    const std::shared_ptr<MetaSequencerSpecificEvent>& event)
{
    writeMetaMessage(event, "SEQUENCERSPECIFIC", &SequenceFoundDelegate::foundMetaSequencerSpecificEvent);
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
        logLine(noPayloadText);
    } else if (length >= 4) {
        const auto event = std::make_shared<MetaEvent>();
        event->position = position;
        event->type = type;
        event->setData(checkedCast<std::uint32_t>(length), data);
        addToTree(event);
        if (const OSStatus status = writeMeta(track, *event); status != noErr) {
            logLine("MIDISequence::Fehler: ", status, ". \nEs konnte kein META Event erzeugt werden.");
            checkStatus(status);
        } else {
            notifyLater(event, &SequenceFoundDelegate::foundMetaEvent);
        }
    }
    ensureSongLength(position);
}

} // namespace volvelle
