#include "midi/EventNodes.h"
#include "base/Checked.h"
#include "midi/SequenceNode.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Lines = std::vector<std::string>;
using test::ConsoleCapture;

TEST(EventNode, StartsEmpty)
{
    const EventNode node;
    EXPECT_EQ(node.track, nullptr);
    EXPECT_EQ(node.pattern, nullptr);
    EXPECT_EQ(node.uid, -1);
    EXPECT_EQ(node.statusMask, 0);
    EXPECT_EQ(node.position, 0.0);
    EXPECT_EQ(node.channel, 0);
    EXPECT_EQ(node.getStausByte(), 0);
}

TEST(EventNode, FillsHexadecimalDigitsUpWithABlank)
{
    EXPECT_EQ(EventNode().toHex(5), "0x 5");
    EXPECT_EQ(EventNode().toHex(0xAB), "0xAB");
}

TEST(EventNodeDeathTest, StopsWhereTheStatusByteDoesNotFit)
{
    MidiNoteEvent note;
    note.channel = 0xFF;
    EXPECT_DEATH(note.getStausByte(), "Arithmetic overflow");
}

TEST(EventNode, DumpsItsFieldsThroughTheLog)
{
    ConsoleCapture capture;
    EventNode node;
    node.position = 1.5;
    node.uid = 7;
    node.dumpout();
    EXPECT_EQ(capture.take(),
              (Lines{"\t\tpattern: nil.", "\t\ttrack: nil.", "\t\tuid: 7.", "\t\tstatus mask: 0.",
                     "\t\tstatus byte: 0.", "\t\tposition: 1.5.", "\t\tchannel: 0."}));
}

TEST(EventNode, DumpsItsContainersByTheirClass)
{
    ConsoleCapture capture;
    TrackNode track;
    PatternNode pattern;
    EventNode node;
    node.track = &track;
    node.pattern = &pattern;
    node.dumpout();
    const Lines lines = capture.take();
    EXPECT_EQ(checkedAt(lines, 0), "\t\tpattern: PatternNode.");
    EXPECT_EQ(checkedAt(lines, 1), "\t\ttrack: TrackNode.");
}

TEST(EventNode, PrintsNilForContainersThatAreGone)
{
    ConsoleCapture capture;
    const auto removed = std::make_shared<EventNode>();
    {
        PatternNode pattern;
        pattern.addEvent(removed);
        TrackNode track;
        track.addEvent(removed);
        pattern.clearEvents();
        track.clearEvents();
        EXPECT_EQ(removed->pattern, &pattern);
        EXPECT_EQ(removed->track, &track);
    }
    EXPECT_EQ(removed->pattern, nullptr);
    EXPECT_EQ(removed->track, nullptr);
    removed->dumpout();
    const Lines lines = capture.take();
    EXPECT_EQ(checkedAt(lines, 0), "\t\tpattern: nil.");
    EXPECT_EQ(checkedAt(lines, 1), "\t\ttrack: nil.");
}

TEST(TempoEvent, HasAStatusByteOf255)
{
    const TempoEvent tempo;
    EXPECT_EQ(tempo.statusMask, 0);
    EXPECT_EQ(tempo.channel, 0xFF);
    EXPECT_EQ(tempo.getStausByte(), 0xFF);
    EXPECT_EQ(tempo.value, 120.0);
}

TEST(TempoEvent, DumpsItsValueBehindTheBase)
{
    ConsoleCapture capture;
    TempoEvent().dumpout();
    EXPECT_EQ(capture.take(), (Lines{"\t\tpattern: nil.", "\t\ttrack: nil.", "\t\tuid: -1.",
                                     "\t\tstatus mask: 0.", "\t\tstatus byte: 255.", "\t\tposition: 0.0.",
                                     "\t\tchannel: 255.", "\t\tvalue: 120.0."}));
}

TEST(MidiNoteEvent, TakesItsValuesInOrder)
{
    const MidiNoteEvent note(1.0, 0.5F, 3, 60, 100, 64);
    EXPECT_EQ(note.position, 1.0);
    EXPECT_EQ(note.duration, 0.5F);
    EXPECT_EQ(note.channel, 3);
    EXPECT_EQ(note.number, 60);
    EXPECT_EQ(note.velocity, 100);
    EXPECT_EQ(note.releaseVelocity, 64);
    EXPECT_EQ(note.getStausByte(), 0x93);
    EXPECT_EQ(MidiNoteEvent().number, 0);
}

TEST(MidiNoteEvent, DumpsItsValuesBehindTheBase)
{
    ConsoleCapture capture;
    MidiNoteEvent(1.0, 0.25F, 3, 60, 100, 64).dumpout();
    EXPECT_EQ(capture.take(),
              (Lines{"\t\tpattern: nil.", "\t\ttrack: nil.", "\t\tuid: -1.", "\t\tstatus mask: 144.",
                     "\t\tstatus byte: 147.", "\t\tposition: 1.0.", "\t\tchannel: 3.", "\t\tduration: 0.25.",
                     "\t\tnumber: 60.", "\t\tvelocity: 100.", "\t\treleaseVelocity: 64."}));
}

TEST(EventNodesOfChannels, TakeTheirValuesInOrder)
{
    const MidiPolyPressureEvent poly(1.0, 2, 60, 70);
    EXPECT_EQ(poly.getStausByte(), 0xA2);
    EXPECT_EQ(poly.number, 60);
    EXPECT_EQ(poly.value, 70);
    const MidiControllerEvent controller(1.0, 0, 7, 90);
    EXPECT_EQ(controller.getStausByte(), 0xB0);
    EXPECT_EQ(controller.number, 7);
    EXPECT_EQ(controller.value, 90);
    const MidiProgramChangeEvent program(1.0, 4, 12);
    EXPECT_EQ(program.getStausByte(), 0xC4);
    EXPECT_EQ(program.value, 12);
    const MidiChannelPressureEvent pressure(1.0, 5, 33);
    EXPECT_EQ(pressure.getStausByte(), 0xD5);
    EXPECT_EQ(pressure.value, 33);
    PitchBend value;
    value.msb = 1;
    value.lsb = 2;
    const MidiPitchBendEvent bend(1.0, 6, value);
    EXPECT_EQ(bend.getStausByte(), 0xE6);
    EXPECT_EQ(bend.bend.msb, 1);
    EXPECT_EQ(bend.bend.lsb, 2);
    for (const EventNode* node :
         {static_cast<const EventNode*>(&poly), static_cast<const EventNode*>(&controller),
          static_cast<const EventNode*>(&program), static_cast<const EventNode*>(&pressure),
          static_cast<const EventNode*>(&bend)}) {
        EXPECT_EQ(node->position, 1.0);
    }
}

TEST(EventNodesOfTheSystem, TakeTheirValuesInOrder)
{
    EXPECT_EQ(SystemTimeCodeEvent(2.0, 9).value, 9);
    EXPECT_EQ(SystemSongPositionPointerEvent(2.0, 1, 2).msb, 1);
    EXPECT_EQ(SystemSongPositionPointerEvent(2.0, 1, 2).lsb, 2);
    EXPECT_EQ(SystemSongSelectEvent(2.0, 4).value, 4);
    EXPECT_EQ(SystemClockEvent(2.0).position, 2.0);
    EXPECT_EQ(SystemTimeCodeEvent(2.0, 9).position, 2.0);
}

template <class Event>
void expectClass(std::string_view name, int status)
{
    const Event event;
    EXPECT_EQ(event.className(), name);
    EXPECT_EQ(event.statusMask, status) << name;
    EXPECT_EQ(event.position, 0.0);
    EXPECT_EQ(event.uid, -1);
}

TEST(EventNodes, DescribeThemselvesByClassAndCarryTheirStatus)
{
    expectClass<EventNode>("EventNode", 0);
    expectClass<UnknownEvent>("UnknownEvent", 0);
    expectClass<TempoEvent>("TempoEvent", 0);
    expectClass<MidiNoteEvent>("MidiNoteEvent", 0x90);
    expectClass<MidiPolyPressureEvent>("MidiPolyPressureEvent", 0xA0);
    expectClass<MidiControllerEvent>("MidiControllerEvent", 0xB0);
    expectClass<MidiProgramChangeEvent>("MidiProgramChangeEvent", 0xC0);
    expectClass<MidiChannelPressureEvent>("MidiChannelPressureEvent", 0xD0);
    expectClass<MidiPitchBendEvent>("MidiPitchBendEvent", 0xE0);
    expectClass<SystemTimeCodeEvent>("SystemTimeCodeEvent", 0xF1);
    expectClass<SystemSongPositionPointerEvent>("SystemSongPositionPointerEvent", 0xF2);
    expectClass<SystemSongSelectEvent>("SystemSongSelectEvent", 0xF3);
    expectClass<SystemTuneRequestEvent>("SystemTuneRequestEvent", 0xF6);
    expectClass<SystemClockEvent>("SystemClockEvent", 0xF8);
    expectClass<SystemStartEvent>("SystemStartEvent", 0xFA);
    expectClass<SystemContinueEvent>("SystemContinueEvent", 0xFB);
    expectClass<SystemStopEvent>("SystemStopEvent", 0xFC);
    expectClass<SystemActiveSensingEvent>("SystemActiveSensingEvent", 0xFE);
    expectClass<SystemResetEvent>("SystemResetEvent", 0xFF);
    expectClass<AExtendedNoteOnEvent>("AExtendedNoteOnEvent", 0);
    expectClass<AParameterEvent>("AParameterEvent", 0);
    expectClass<AAUPresetEvent>("AAUPresetEvent", 0);
    expectClass<UserEvent>("UserEvent", 0xFF);
    expectClass<SystemExclusiveEvent>("SystemExclusiveEvent", 0xF0);
    expectClass<MetaEvent>("MetaEvent", 0);
}

TEST(UserEvent, AppendsWhatItIsGiven)
{
    UserEvent event;
    EXPECT_EQ(event.length, 0U);
    event.setData(0, {1, 2});
    event.setData(0, {1, 2});
    EXPECT_EQ(event.getData(), (Bytes{1, 2, 1, 2}));
    EXPECT_EQ(event.length, 4U);
    EXPECT_EQ(event.getLength(), 4);
    event.setData(9, event.data);
    EXPECT_EQ(event.getData(), (Bytes{1, 2, 1, 2, 1, 2, 1, 2}));
}

TEST(UserEvent, MeasuresItsDataAndNotItsLengthField)
{
    UserEvent event;
    event.length = 12;
    EXPECT_EQ(event.getLength(), 0);
}

TEST(UserEvent, PrintsItsBytes)
{
    UserEvent event;
    EXPECT_EQ(event.toHex(), "");
    EXPECT_EQ(event.toText(), "");
    event.data = {5, 0xAB, 'A', 0xE9};
    EXPECT_EQ(event.toHex(), " 5 AB 41 E9 ");
    EXPECT_EQ(event.toText(), "\x05\u00ABAé");
    EXPECT_EQ(event.toHex(9), "0x 9");
}

TEST(UserEvent, DumpsItsPayloadBehindTheBase)
{
    ConsoleCapture capture;
    UserEvent event;
    event.setData(0, {72, 105});
    event.dumpout();
    EXPECT_EQ(capture.take(),
              (Lines{"\t\tpattern: nil.", "\t\ttrack: nil.", "\t\tuid: -1.", "\t\tstatus mask: 255.",
                     "\t\tstatus byte: 255.", "\t\tposition: 0.0.", "\t\tchannel: 0.", "\t\tlength: 2.",
                     "\t\tdata: [72, 105].", "\t\thexadecimal: 48 69 .", "\t\tverbose: Hi."}));
}

TEST(SystemExclusiveEvent, DumpsItsOwnLinesOnly)
{
    ConsoleCapture capture;
    SystemExclusiveEvent event;
    EXPECT_EQ(event.type, 0xF0);
    EXPECT_EQ(SystemExclusiveEvent::start, 0xF0);
    EXPECT_EQ(SystemExclusiveEvent::stop, 0xF7);
    event.setData(0, {0xF0, 1, 0xF7});
    event.dumpout();
    EXPECT_EQ(capture.take(), (Lines{"\t\ttype: 240.", "\t\tlength: 3.", "\t\tdata: [240, 1, 247].",
                                     "\t\thexadecimal: F0  1 F7 ."}));
}

} // namespace
} // namespace volvelle
