#include "tests/sequence/SequenceFixture.h"

#include "midi/MIDIRawDataExtension.h"

#include <functional>

// Every kind of event on track 5: its node, the track of the tree that takes it, and the listener's call.
namespace volvelle::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr double time = 3.0;
constexpr int track0 = 0;
constexpr int ownTrack = 5;

struct Arm {
    std::string name;
    std::function<OSStatus(const MusicTrack&)> store;
    int target;
    std::string node;
    std::string call;
    Lines lines = {};
};

OSStatus storeMeta(const MusicTrack& track, std::uint8_t type, const Bytes& bytes)
{
    const MyMetaEvent record(type, bytes);
    return MusicTrackNewMetaEvent(track, time, reinterpret_cast<const MIDIMetaEvent*>(record.mem));
}

Arm meta(std::string name, std::uint8_t type, int target, Lines lines = {})
{
    return {"Meta" + name,
            [type](const MusicTrack& track) { return storeMeta(track, type, {1, 2, 3}); },
            target,
            concat("Meta", name, "Event 3.0 0: ", name == "Unknown" ? 255 : int{type}, " 3 [1, 2, 3]"),
            concat("foundMeta", name, "Event"),
            std::move(lines)};
}

Arm message(std::string name, std::uint8_t status, int target, std::string node, std::string call)
{
    return {std::move(name),
            [status](const MusicTrack& track) {
                return MusicTrackNewMIDIChannelEvent(track, time, {status, 40, 50, 0});
            },
            target, std::move(node), std::move(call)};
}

template <class Record>
Arm fixed(std::string name, OSStatus (*add)(const MusicTrack&, double, const Record&), std::string node,
          std::string call)
{
    return {std::move(name), [add](const MusicTrack& track) { return add(track, time, Record{}); }, track0,
            std::move(node), std::move(call)};
}

std::vector<Arm> arms()
{
    return {
        {"Note",
         [](const MusicTrack& track) {
             return MusicTrackNewMIDINoteEvent(track, time, {9, 60, 100, 10, 0.5F});
         },
         ownTrack, "MidiNoteEvent 3.0 9: 60 100 10 0.5", "foundNoteEvent"},
        {"UserData",
         [](const MusicTrack& track) {
             const MyMusicEventUserData record({1, 2});
             return MusicTrackNewUserEvent(track, time, record.ptr);
         },
         track0, "UserEvent 3.0 0: 2 [1, 2]", "foundUserEvent"},
        {"RawData",
         [](const MusicTrack& track) {
             const MyMIDIRawData record({0xF0, 1, 0xF7});
             return MusicTrackNewMIDIRawDataEvent(track, time, record.ptr);
         },
         ownTrack, "SystemExclusiveEvent 3.0 0: 3 [240, 1, 247]", "foundSysExEvent"},
        fixed("Parameter", MusicTrackNewParameterEvent, "AParameterEvent 3.0 0:", "foundParameterEvent"),
        fixed("Preset", MusicTrackNewAUPresetEvent, "AAUPresetEvent 3.0 0:", "foundAUPresetEvent"),
        message("PolyPressure", 0xA9, ownTrack, "MidiPolyPressureEvent 3.0 9: 40 50",
                "foundPolyPressureEvent"),
        message("Controller", 0xB9, ownTrack, "MidiControllerEvent 3.0 9: 40 50", "foundControllerEvent"),
        message("Program", 0xC9, ownTrack, "MidiProgramChangeEvent 3.0 9: 40", "foundProgramChangeEvent"),
        message("ChannelPressure", 0xD9, ownTrack, "MidiChannelPressureEvent 3.0 9: 40",
                "foundChannelPressureEvent"),
        message("PitchBend", 0xE9, ownTrack, "MidiPitchBendEvent 3.0 9: 40 50", "foundPitchBendEvent"),
        message("TimeCode", 0xF1, track0, "SystemTimeCodeEvent 3.0 0: 40", "foundSystemTimeCodeEvent"),
        message("SongPosition", 0xF2, track0, "SystemSongPositionPointerEvent 3.0 0: 40 50",
                "foundSystemSongPositionPointerEvent"),
        message("SongSelect", 0xF3, track0, "SystemSongSelectEvent 3.0 0: 40", "foundSystemSongSelectEvent"),
        message("TuneRequest", 0xF6, track0, "SystemTuneRequestEvent 3.0 0:", "foundSystemTuneRequestEvent"),
        message("Clock", 0xF8, track0, "SystemClockEvent 3.0 0:", "foundSystemClockEvent"),
        message("Start", 0xFA, track0, "SystemStartEvent 3.0 0:", "foundSystemStartEvent"),
        message("Continue", 0xFB, track0, "SystemContinueEvent 3.0 0:", "foundSystemContinueEvent"),
        message("Stop", 0xFC, track0, "SystemStopEvent 3.0 0:", "foundSystemStopEvent"),
        message("ActiveSensing", 0xFE, track0,
                "SystemActiveSensingEvent 3.0 0:", "foundSystemActiveSensingEvent"),
        message("Reset", 0xFF, track0, "SystemResetEvent 3.0 0:", "foundSystemResetEvent"),
        message("PlainNoteOff", 0x89, track0, "UnknownEvent 3.0 0:", "foundUnknownEvent"),
        message("PlainNoteOn", 0x99, track0, "UnknownEvent 3.0 0:", "foundUnknownEvent"),
        message("Reserved", 0xF4, track0, "UnknownEvent 3.0 0:", "foundUnknownEvent"),
        meta("SequenceNumber", 0x00, track0),
        meta("Text", 0x01, track0),
        meta("Copyright", 0x02, track0),
        meta("TrackName", 0x03, ownTrack),
        meta("InstrumentName", 0x04, ownTrack),
        meta("Lyrics", 0x05, track0),
        meta("Marker", 0x06, track0),
        meta("CuePoint", 0x07, track0),
        meta("ProgramName", 0x08, ownTrack),
        meta("DeviceName", 0x09, ownTrack),
        meta("ChannelPrefix", 0x20, ownTrack),
        meta("MidiPort", 0x21, track0),
        meta("EndOfTrack", 0x2F, ownTrack),
        meta("SetTempo", 0x51, track0),
        meta("SMTPOffset", 0x54, track0),
        meta("TimeSignature", 0x58, track0),
        meta("KeySignature", 0x59, track0),
        meta("SequencerSpecific", 0x7F, track0),
        meta("Unknown", 0x60, track0, {"MIDISequence::Warnung: Unbekanntes Meta Event erhalten."}),
    };
}

void PrintTo(const Arm& arm, std::ostream* stream)
{
    *stream << arm.name;
}

class MIDISequenceReadingArmsEachTest : public SequenceTest, public testing::WithParamInterface<Arm> {};

TEST_P(MIDISequenceReadingArmsEachTest, GoesToItsTrackAndIsToldWithinTheWalk)
{
    const Arm& arm = GetParam();
    sequence->create(16);
    sequence->delegate = listener;
    ASSERT_EQ(arm.store(sequence->getTrack(ownTrack)), noErr);
    sequence->musicSequenceToSequenceNode();
    ASSERT_EQ(listener->names(), std::vector<std::string>{arm.call});
    const SequenceNode& tree = *sequence->sequenceNode;
    for (const int i : {track0, ownTrack}) {
        EXPECT_EQ(describe(*tree.tracks.at(static_cast<std::size_t>(i))),
                  i == arm.target ? Lines{arm.node} : Lines{});
    }
    EXPECT_EQ(listener->calls[0].event, tree.tracks.at(static_cast<std::size_t>(arm.target))->events[0]);
    EXPECT_EQ(sequence->getChannelAssignment(ownTrack), arm.node.find(" 9:") == std::string::npos ? 0 : 9);
    EXPECT_EQ(console.take(), join({arm.lines, endOfTrack()}));
}

TEST_P(MIDISequenceReadingArmsEachTest, IsReadWithoutAListenerAndForOneThatTakesNothing)
{
    sequence->create(16);
    ASSERT_EQ(GetParam().store(sequence->getTrack(ownTrack)), noErr);
    const TrackNode& target = *sequence->sequenceNode->tracks.at(static_cast<std::size_t>(GetParam().target));
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(describe(target), Lines{GetParam().node});
    const auto plain = std::make_shared<SequenceFoundDelegate>();
    sequence->delegate = plain;
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(describe(target), Lines{GetParam().node});
}

INSTANTIATE_TEST_SUITE_P(Every, MIDISequenceReadingArmsEachTest, testing::ValuesIn(arms()),
                         [](const auto& each) { return each.param.name; });

class MIDISequenceReadingArmsTest : public SequenceTest {
protected:
    MusicTrack track = sequence->getTrack(0);

    // The lines of diagnosis of a walk over the track.
    Lines diagnosed()
    {
        sequence->diagnoses.clear();
        sequence->iterateEvents(track, 0);
        return sequence->diagnoses;
    }
};

using MIDISequenceReadingArmsDeathTest = MIDISequenceReadingArmsTest;

TEST_F(MIDISequenceReadingArmsTest, AnExtendedNoteGivesNeitherNodeNorCall)
{
    sequence->delegate = listener;
    MusicTrackNewExtendedNoteEvent(track, 2.0, {17, 0, 1.0F, {}});
    EXPECT_EQ(diagnosed(), Lines{"Diagnose: Extended Note Message: 17, Position = 2.0"});
    EXPECT_TRUE(sequence->sequenceNode->tracks[0]->events.empty());
    EXPECT_TRUE(listener->calls.empty());
    EXPECT_EQ(sequence->getLength(), 2.0);
}

TEST_F(MIDISequenceReadingArmsTest, ParametersPresetsAndMessagesAreDiagnosed)
{
    MusicTrackNewParameterEvent(track, 1.0, {18, 0, 0, 0.0F});
    MusicTrackNewAUPresetEvent(track, 2.0, {19});
    MusicTrackNewMIDIChannelEvent(track, 3.0, {0xB1, 7, 100, 0});
    MusicTrackNewMIDIChannelEvent(track, 4.0, {0xF4, 1, 2, 0});
    EXPECT_EQ(diagnosed(),
              (Lines{"Diagnose: MIDI Parameter Event: ID = 18, Position = 1.0",
                     "Diagnose: MIDI AUPreset Event: ID = 19, Position = 2.0",
                     "Diagnose: MIDI Channel Message: Status = 177 Data1 = 7 Data2 = 100 Position = 3.0",
                     "Diagnose: MIDI Channel Message: Status = 244 Data1 = 1 Data2 = 2 Position = 4.0",
                     "Diagnose: Ein Unbekanntes Event vom Type 244, Position = 4.0 erhalten."}));
}

TEST_F(MIDISequenceReadingArmsTest, PayloadsAreDiagnosedByteByByte)
{
    const MyMetaEvent text(1, {65, 10});
    MusicTrackNewMetaEvent(track, 0.0, reinterpret_cast<const MIDIMetaEvent*>(text.mem));
    const MyMIDIRawData raw({0xF0, 0xF7});
    MusicTrackNewMIDIRawDataEvent(track, 1.0, raw.ptr);
    const MyMusicEventUserData user({66});
    MusicTrackNewUserEvent(track, 2.0, user.ptr);
    EXPECT_EQ(diagnosed(), (Lines{"Diagnose: MIDI Meta Message: Typ = 1, Position = 0.0",
                                  "Metadata: ", "Metadata - uint8: [65, 10]", "Metadata - hex: 41  A ",
                                  "Metadata - verbose: A\n", "SysExData: ", "SysExData - uint8: [240, 247]",
                                  "SysExData - hex: F0 F7 ", "SysExData - verbose: ð÷", "UserData: ",
                                  "UserData - uint8: [66]", "UserData - hex: 42 ", "UserData - verbose: B"}));
}

TEST_F(MIDISequenceReadingArmsTest, AnUnknownTypeBecomesAnUnknownEvent)
{
    sequence->delegate = listener;
    MusicTrackNewAUPresetEvent(track, 2.0, {19});
    fail(Operation::MusicEventIteratorGetEventInfo, noErr); // leaves type 0 and time -1
    EXPECT_EQ(diagnosed(), Lines{"Diagnose: Unbekanntes MIDI Event vom Type 0, Position = -1.0 erhalten."});
    EXPECT_EQ(describe(*sequence->sequenceNode->tracks[0]), Lines{"UnknownEvent -1.0 0:"});
    EXPECT_EQ(listener->names(), std::vector<std::string>{"foundUnknownEvent"});
}

TEST_F(MIDISequenceReadingArmsTest, AMetaTypeThatEqualsAStatusIsUnknown)
{
    sequence->delegate = listener;
    const Bytes types{0x80, 0x90, 0xB0, 0xF0, 0xF8, 0xFF};
    for (const std::uint8_t type : types) {
        ASSERT_EQ(storeMeta(track, type, {1}), noErr);
    }
    sequence->iterateEvents(track, 0);
    EXPECT_EQ(listener->names(), std::vector<std::string>(types.size(), "foundMetaUnknownEvent"));
}

TEST_F(MIDISequenceReadingArmsTest, ALongPayloadIsCutAndItsLengthKept)
{
    Bytes bytes(2000);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i % 251);
    }
    storeMeta(track, 1, bytes);
    sequence->iterateEvents(track, 0);
    const auto events = sequence->sequenceNode->tracks[0]->getElementsOfClass<UserEvent>();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0]->data, Bytes(bytes.begin(), bytes.begin() + 1040));
    EXPECT_EQ(events[0]->length, 2000U);
}

TEST_F(MIDISequenceReadingArmsTest, APayloadIsAppendedAndTheLengthIsLeftAlone)
{
    UserEvent event;
    event.data = {1};
    event.length = 77;
    const MyMusicEventUserData user({2, 3});
    sequence->fillUserData(user.ptr, event);
    EXPECT_EQ(event.data, (Bytes{1, 2, 3}));
    EXPECT_EQ(event.length, 77U);
}

TEST_F(MIDISequenceReadingArmsTest, APayloadIsFilledIntoANodeThatHasItsPosition)
{
    class PositionedSequence : public MIDISequence {
    public:
        void fillMetaData(const MIDIMetaEvent* source, UserEvent& dest) override
        {
            positions.push_back(dest.position);
            MIDISequence::fillMetaData(source, dest);
        }

        void fillSysExData(const MIDIRawData* source, UserEvent& dest) override
        {
            positions.push_back(dest.position);
            MIDISequence::fillSysExData(source, dest);
        }

        void fillUserData(const MusicEventUserData* source, UserEvent& dest) override
        {
            positions.push_back(dest.position);
            MIDISequence::fillUserData(source, dest);
        }

        std::vector<double> positions;
    } positioned;

    const MusicTrack target = positioned.getTrack(0);
    MyMIDIMetaEvent meta({65});
    meta.ptr->metaEventType = 1;
    MusicTrackNewMetaEvent(target, 2.0, meta.ptr);
    MusicTrackNewMIDIRawDataEvent(target, 3.0, MyMIDIRawData({0xF0, 0xF7}).ptr);
    MusicTrackNewUserEvent(target, 4.0, MyMusicEventUserData({1}).ptr);
    positioned.musicSequenceToSequenceNode();
    EXPECT_EQ(positioned.positions, (std::vector<double>{2.0, 3.0, 4.0}));
}

TEST_F(MIDISequenceReadingArmsTest, AMissingPayloadIsReportedAndSkipped)
{
    const std::vector<std::pair<std::function<OSStatus()>, std::string>> kinds{
        {[this] { return MusicTrackNewUserEvent(track, 0.0, MyMusicEventUserData({1}).ptr); },
         "MIDISequence::Fehler: Es wurde ein NULL Pointer als Event übergeben!"},
        {[this] { return storeMeta(track, 1, {1}); }, "MIDISequence::Fehler: Das Meta Event is undefiniert."},
        {[this] { return MusicTrackNewMIDIRawDataEvent(track, 0.0, MyMIDIRawData({1}).ptr); },
         "MIDISequence::Error: Sysex event pointer is nil."}};
    for (const auto& [store, line] : kinds) {
        sequence->create(1);
        track = sequence->getTrack(0);
        store();
        store();
        fail(Operation::MusicEventIteratorGetEventInfo, noErr, 1); // the second event's payload
        sequence->iterateEvents(track, 0);
        EXPECT_EQ(console.take(), join({{line}, endOfTrack()}));
        EXPECT_EQ(sequence->sequenceNode->tracks[0]->events.size(), 1U);
    }
}

TEST_F(MIDISequenceReadingArmsDeathTest, FillingFromNoSourceStops)
{
    UserEvent event;
    EXPECT_STOP(sequence->fillMetaData(nullptr, event), nilMessage);
    EXPECT_STOP(sequence->fillSysExData(nullptr, event), nilMessage);
    EXPECT_STOP(sequence->fillUserData(nullptr, event), nilMessage);
}

} // namespace
} // namespace volvelle::test
