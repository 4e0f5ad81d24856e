#include "base/Checked.h"
#include "midi/EventNodes.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Lines = std::vector<std::string>;
using test::ConsoleCapture;

template <class Event>
void expectPreset(std::string_view name, int type, std::uint32_t length)
{
    const Event event;
    EXPECT_EQ(event.className(), name);
    EXPECT_EQ(event.statusMask, 0) << name;
    EXPECT_EQ(event.type, type) << name;
    EXPECT_EQ(event.length, length) << name;
    EXPECT_TRUE(event.data.empty()) << name;
    EXPECT_EQ(event.getLength(), 0) << name;
}

TEST(MetaEvents, PresetTypeAndLengthAndNoData)
{
    expectPreset<MetaEvent>("MetaEvent", 0x7F, 0);
    expectPreset<MetaSequenceNumberEvent>("MetaSequenceNumberEvent", 0x00, 2);
    expectPreset<MetaTextEvent>("MetaTextEvent", 0x01, 0);
    expectPreset<MetaCopyrightEvent>("MetaCopyrightEvent", 0x02, 0);
    expectPreset<MetaTrackNameEvent>("MetaTrackNameEvent", 0x03, 0);
    expectPreset<MetaInstrumentNameEvent>("MetaInstrumentNameEvent", 0x04, 0);
    expectPreset<MetaLyricsEvent>("MetaLyricsEvent", 0x05, 0);
    expectPreset<MetaMarkerEvent>("MetaMarkerEvent", 0x06, 0);
    expectPreset<MetaCuePointEvent>("MetaCuePointEvent", 0x07, 0);
    expectPreset<MetaProgramNameEvent>("MetaProgramNameEvent", 0x08, 0);
    expectPreset<MetaDeviceNameEvent>("MetaDeviceNameEvent", 0x09, 0);
    expectPreset<MetaChannelPrefixEvent>("MetaChannelPrefixEvent", 0x20, 1);
    expectPreset<MetaMidiPortEvent>("MetaMidiPortEvent", 0x21, 1);
    expectPreset<MetaEndOfTrackEvent>("MetaEndOfTrackEvent", 0x2F, 0);
    expectPreset<MetaSetTempoEvent>("MetaSetTempoEvent", 0x51, 3);
    expectPreset<MetaSMTPOffsetEvent>("MetaSMTPOffsetEvent", 0x54, 5);
    expectPreset<MetaTimeSignatureEvent>("MetaTimeSignatureEvent", 0x58, 4);
    expectPreset<MetaKeySignatureEvent>("MetaKeySignatureEvent", 0x59, 2);
    expectPreset<MetaSequencerSpecificEvent>("MetaSequencerSpecificEvent", 0x7F, 0);
    expectPreset<MetaUnknownEvent>("MetaUnknownEvent", 0xFF, 0);
}

TEST(MetaEvents, HoldTheBytesOfTheirConstructors)
{
    EXPECT_EQ(MetaSequenceNumberEvent(0.0, 0x0102).data, (Bytes{0x02, 0x01}));
    EXPECT_EQ(MetaChannelPrefixEvent(0.0, 5).data, (Bytes{5}));
    EXPECT_EQ(MetaMidiPortEvent(0.0, 6).data, (Bytes{6}));
    EXPECT_EQ(MetaSetTempoEvent(0.0, 7, 161, 32).data, (Bytes{7, 161, 32}));
    EXPECT_EQ(MetaSMTPOffsetEvent(0.0, 1, 2, 3, 4, 5).data, (Bytes{1, 2, 3, 4, 5}));
    EXPECT_EQ(MetaTimeSignatureEvent(0.0, 6, 3, 24, 8).data, (Bytes{6, 3, 24, 8}));
    EXPECT_EQ(MetaKeySignatureEvent(0.0, 0xFD, 1).data, (Bytes{0xFD, 1}));
    EXPECT_EQ(MetaSequencerSpecificEvent(0.0, 99, {1, 2, 3}).data, (Bytes{1, 2, 3}));
    EXPECT_EQ(MetaSequencerSpecificEvent(0.0, 99, {1, 2, 3}).length, 3U);
    EXPECT_EQ(MetaUnknownEvent(2.0, 0, {9}).data, (Bytes{9}));
    EXPECT_EQ(MetaUnknownEvent(2.0, 0, {9}).position, 2.0);
    EXPECT_EQ(MetaEndOfTrackEvent(3.0).position, 3.0);
    EXPECT_EQ(MetaSetTempoEvent(4.0, 7, 161, 32).position, 4.0);
    EXPECT_EQ(MetaSetTempoEvent(4.0, 7, 161, 32).length, 3U);
}

TEST(MetaEventsWithText, HoldTheUTF8BytesOfTheirText)
{
    const MetaTextEvent event(1.0, "Ä");
    EXPECT_EQ(event.position, 1.0);
    EXPECT_EQ(event.length, 2U);
    EXPECT_EQ(event.data, (Bytes{0xC3, 0x84}));
    EXPECT_EQ(event.getText(), "\u00C3\u0084");
}

TEST(MetaEventsWithText, ReplaceTheirText)
{
    MetaMarkerEvent event(0.0, "Verse");
    event.setText("Go");
    EXPECT_EQ(event.getText(), "Go");
    EXPECT_EQ(event.length, 2U);
    EXPECT_EQ(MetaDeviceNameEvent(0.0, "Port A").getText(), "Port A");
}

TEST(MetaSequenceNumberEvent, ReadsTheLowByteFirst)
{
    MetaSequenceNumberEvent event(0.0, 0x0102);
    EXPECT_EQ(event.getSequenceNumber(), 0x0102);
    event.data = {0, 1};
    EXPECT_EQ(event.getSequenceNumber(), 256);
    event.setSequenceNumber(0xFFFE);
    EXPECT_EQ(event.data, (Bytes{0xFE, 0xFF}));
    EXPECT_EQ(event.length, 2U);
}

TEST(MetaSetTempoEvent, ReadsZerosWhateverItHolds)
{
    ConsoleCapture capture;
    const MetaSetTempoEvent event(0.0, 7, 161, 32);
    EXPECT_EQ(event.getTempoV(), "0, 0, 0");
    const Tempo tempo = event.getTempo();
    EXPECT_EQ(tempo.b1 + tempo.b2 + tempo.b3, 0);
    EXPECT_EQ(tempo.value, 0U);
    EXPECT_TRUE(capture.take().empty());
}

TEST(MetaSMTPOffsetEvent, ReadsItsFiveBytes)
{
    const MetaSMTPOffsetEvent event(0.0, 1, 20, 3, 4, 99);
    const SMTPOffset offset = event.getOffset();
    EXPECT_EQ(offset.hours, 1);
    EXPECT_EQ(offset.minutes, 20);
    EXPECT_EQ(offset.seconds, 3);
    EXPECT_EQ(offset.frames, 4);
    EXPECT_EQ(offset.fract, 99);
    EXPECT_EQ(event.getOffsetV(), "1:20:3:4:99");
}

TEST(MetaTimeSignatureEvent, SquaresItsDenominator)
{
    MetaTimeSignatureEvent event(0.0, 6, 3, 24, 8);
    const TimeSignature signature = event.getSignature();
    EXPECT_EQ(signature.numerator, 6);
    EXPECT_EQ(signature.denumerator, 9);
    EXPECT_EQ(signature._8th, 24);
    EXPECT_EQ(signature._32nd, 8);
    EXPECT_EQ(event.getSignatureV(), "6/9, 24, 8");
    event.setSignature(4, 4, 24, 8);
    EXPECT_EQ(event.getSignature().denumerator, 16);
    event.setSignature(4, 15, 24, 8);
    EXPECT_EQ(event.getSignature().denumerator, 225);
}

TEST(MetaTimeSignatureEventDeathTest, StopsAtADenominatorByteOf16)
{
    const MetaTimeSignatureEvent event(0.0, 4, 16, 24, 8);
    EXPECT_DEATH(event.getSignature(), "Not enough bits to represent the passed value");
}

TEST(MetaKeySignatureEvent, PrintsItsModeFirst)
{
    const MetaKeySignatureEvent event(0.0, 0xFD, 1);
    EXPECT_EQ(event.getSignature().sf, 0xFD);
    EXPECT_EQ(event.getSignature().mi, 1);
    EXPECT_EQ(event.getSignatureV(), "1, 253");
}

TEST(MetaEvents, ReplaceTheirValues)
{
    MetaChannelPrefixEvent prefix(0.0, 5);
    prefix.setPrefix(6);
    EXPECT_EQ(prefix.getPrefix(), 6);
    EXPECT_EQ(prefix.getLength(), 1);
    MetaMidiPortEvent port(0.0, 5);
    port.setPort(7);
    EXPECT_EQ(port.getPort(), 7);
    MetaSetTempoEvent tempo(0.0, 1, 2, 3);
    tempo.setTempo(4, 5, 6);
    EXPECT_EQ(tempo.data, (Bytes{4, 5, 6}));
    MetaSMTPOffsetEvent offset(0.0, 1, 2, 3, 4, 5);
    offset.setOffset(6, 7, 8, 9, 10);
    EXPECT_EQ(offset.data, (Bytes{6, 7, 8, 9, 10}));
    MetaKeySignatureEvent key(0.0, 1, 0);
    key.setSignature(2, 1);
    EXPECT_EQ(key.data, (Bytes{2, 1}));
}

TEST(MetaEvents, LogThatTheyHoldTooLittle)
{
    ConsoleCapture capture;
    MetaSequenceNumberEvent number;
    number.data = {1};
    EXPECT_EQ(number.getSequenceNumber(), 0);
    EXPECT_EQ(capture.take(), Lines{"Fehler: Das Sequenznummer Event ist nicht initialisiert."});
    EXPECT_EQ(MetaChannelPrefixEvent().getPrefix(), 0);
    EXPECT_EQ(capture.take(), Lines{"Fehler: Das Prefix Event ist nicht initialisiert."});
    EXPECT_EQ(MetaMidiPortEvent().getPort(), 0);
    EXPECT_EQ(capture.take(), Lines{"Fehler: Das Prefix Event ist nicht initialisiert."});
    EXPECT_EQ(MetaSetTempoEvent().getTempo().value, 0U);
    EXPECT_EQ(capture.take(), Lines{"Fehler: Das Tempo Event ist nicht initialisiert."});
    EXPECT_EQ(MetaSetTempoEvent().getTempoV(), "");
    EXPECT_EQ(capture.take(), Lines{"Fehler: Das Tempo Event ist nicht initialisiert."});
    EXPECT_EQ(MetaSMTPOffsetEvent().getOffset().hours, 0);
    EXPECT_EQ(capture.take(), Lines{"Fehler: Das SMTP Event ist nicht initialisiert."});
    EXPECT_EQ(MetaSMTPOffsetEvent().getOffsetV(), "");
    EXPECT_EQ(capture.take(), Lines{"Fehler: Das SMTP Event ist nicht initialisiert."});
    EXPECT_EQ(MetaTimeSignatureEvent().getSignature().denumerator, 4);
    EXPECT_EQ(capture.take(), Lines{"Fehler: Das Signatur Event ist nicht initialisiert."});
    EXPECT_EQ(MetaTimeSignatureEvent().getSignatureV(), "");
    EXPECT_EQ(capture.take(), Lines{"Fehler: Das Signatur Event ist nicht initialisiert."});
    EXPECT_EQ(MetaKeySignatureEvent().getSignature().sf, 0);
    EXPECT_EQ(capture.take(), Lines{"Fehler: Das Signatur Event ist nicht initialisiert."});
    EXPECT_EQ(MetaKeySignatureEvent().getSignatureV(), "");
    EXPECT_EQ(capture.take(), Lines{"Fehler: Das Signatur Event ist nicht initialisiert."});
}

// With fewer bytes than `least` an event says so and reads as `initial`, with as many it reads as `ones`.
template <class Event, class Value>
void expectLeast(std::size_t least, Value (Event::*get)() const, const Value& initial, const Value& ones,
                 const std::string& message)
{
    ConsoleCapture capture;
    Event event;
    for (std::size_t count = 0; count < least + 2; ++count) {
        event.data = Bytes(count, 1);
        EXPECT_EQ((event.*get)(), count < least ? initial : ones) << event.className() << " " << count;
        EXPECT_EQ(capture.take(), count < least ? Lines{message} : Lines{}) << event.className();
    }
}

TEST(MetaEvents, NeedTheirWholePayload)
{
    const std::string prefix = "Fehler: Das Prefix Event ist nicht initialisiert.";
    const std::string signature = "Fehler: Das Signatur Event ist nicht initialisiert.";
    expectLeast<MetaSequenceNumberEvent, std::uint16_t>(
        2, &MetaSequenceNumberEvent::getSequenceNumber, 0, 257,
        "Fehler: Das Sequenznummer Event ist nicht initialisiert.");
    expectLeast<MetaChannelPrefixEvent, std::uint8_t>(1, &MetaChannelPrefixEvent::getPrefix, 0, 1, prefix);
    expectLeast<MetaMidiPortEvent, std::uint8_t>(1, &MetaMidiPortEvent::getPort, 0, 1, prefix);
    expectLeast<MetaSetTempoEvent, std::string>(3, &MetaSetTempoEvent::getTempoV, "", "0, 0, 0",
                                                "Fehler: Das Tempo Event ist nicht initialisiert.");
    expectLeast<MetaSMTPOffsetEvent, std::string>(5, &MetaSMTPOffsetEvent::getOffsetV, "", "1:1:1:1:1",
                                                  "Fehler: Das SMTP Event ist nicht initialisiert.");
    expectLeast<MetaTimeSignatureEvent, std::string>(4, &MetaTimeSignatureEvent::getSignatureV, "",
                                                     "1/1, 1, 1", signature);
    expectLeast<MetaKeySignatureEvent, std::string>(2, &MetaKeySignatureEvent::getSignatureV, "", "1, 1",
                                                    signature);
}

TEST(MetaEvents, GiveTheDefaultsForEveryShorterPayload)
{
    ConsoleCapture capture;
    for (std::size_t count = 0; count < 5; ++count) {
        MetaSetTempoEvent tempo;
        tempo.data = Bytes(count, 1);
        EXPECT_EQ(tempo.getTempo().b1, 0);
        MetaSMTPOffsetEvent offset;
        offset.data = Bytes(count, 1);
        EXPECT_EQ(offset.getOffset().hours, 0);
        EXPECT_EQ(offset.getOffset().fract, 0);
        MetaTimeSignatureEvent time;
        time.data = Bytes(count, 1);
        EXPECT_EQ(time.getSignature().numerator, count < 4 ? 4 : 1);
        EXPECT_EQ(time.getSignature()._32nd, count < 4 ? 8 : 1);
        MetaKeySignatureEvent key;
        key.data = Bytes(count, 1);
        EXPECT_EQ(key.getSignature().sf, count < 2 ? 0 : 1);
        EXPECT_EQ(key.getSignature().mi, count < 2 ? 0 : 1);
        // tempo below 3, offset twice, time twice below 4, key twice below 2
        EXPECT_EQ(capture.take().size(),
                  (count < 3 ? 1U : 0U) + 2 + (count < 4 ? 2 : 0) + (count < 2 ? 2 : 0));
    }
}

TEST(MetaEvents, AreContentWithTheLeastThatTheyNeed)
{
    ConsoleCapture capture;
    MetaKeySignatureEvent key;
    key.data = {3, 0};
    EXPECT_EQ(key.getSignature().sf, 3);
    MetaTimeSignatureEvent time;
    time.data = {3, 2, 24};
    EXPECT_EQ(time.getSignature().numerator, 4);
    EXPECT_EQ(capture.take().size(), 1U);
}

TEST(MetaEvent, DumpsItsPayloadTwice)
{
    ConsoleCapture capture;
    MetaTextEvent(0.0, "A").dumpout();
    EXPECT_EQ(capture.take(),
              (Lines{"\t\tpattern: nil.", "\t\ttrack: nil.", "\t\tuid: -1.", "\t\tstatus mask: 0.",
                     "\t\tstatus byte: 0.", "\t\tposition: 0.0.", "\t\tchannel: 0.", "\t\tlength: 1.",
                     "\t\tdata: [65].", "\t\thexadecimal: 41 .", "\t\tverbose: A.", "\t\tlength: 1.",
                     "\t\tdata: [65].", "\t\thexadecimal: 41 .", "\t\tverbose: A."}));
}

TEST(MetaSequenceNumberEvent, DumpsItsNumberLast)
{
    ConsoleCapture capture;
    MetaSequenceNumberEvent(0.0, 0x4142).dumpout();
    const Lines lines = capture.take();
    ASSERT_EQ(lines.size(), 16U);
    EXPECT_EQ(lines[7], "\t\tlength: 2.");
    EXPECT_EQ(lines[11], "\t\tlength: 2.");
    EXPECT_EQ(lines[15], "\t\tnumber: 16706.");
}

} // namespace
} // namespace volvelle
