#include "midi/MIDIConstants.h"
#include "midi/MIDIDefinitions.h"

#include <gtest/gtest.h>

#include <string>
#include <unordered_set>
#include <vector>

namespace volvelle {
namespace {

TEST(MIDIStatus, HasTwentyThreeCasesWithTheirNames)
{
    const std::vector<std::pair<MIDIStatus, std::string>> names = {
        {MIDIStatus::NoteOff, "Note Off"},
        {MIDIStatus::NoteOn, "Note On"},
        {MIDIStatus::PolyPressure, "Polyphonic Pressure"},
        {MIDIStatus::ControlChange, "Control Change"},
        {MIDIStatus::ProgramChange, "Program Change"},
        {MIDIStatus::ChannelPressure, "Channel Pressure"},
        {MIDIStatus::PitchBend, "Pitch Bend"},
        {MIDIStatus::SysEx, "System Exclusive"},
        {MIDIStatus::MidiTimeCode, "MIDI Time Code"},
        {MIDIStatus::SongPosition, "Song Position Pointer"},
        {MIDIStatus::SongSelect, "Song Select"},
        {MIDIStatus::_0x4F, "Unknown MIDI Status"},
        {MIDIStatus::_0x5F, "Unknown MIDI Status"},
        {MIDIStatus::TuneRequest, "Tune Request"},
        {MIDIStatus::EOX, "End Of System Exclusive"},
        {MIDIStatus::Sync, "MIDI Clock"},
        {MIDIStatus::_0xF9, "Unknown MIDI Status"},
        {MIDIStatus::Start, "Start"},
        {MIDIStatus::Continue, "Continue"},
        {MIDIStatus::Stop, "Stop"},
        {MIDIStatus::_0xFD, "Unknown MIDI Status"},
        {MIDIStatus::ActiveSensing, "Active Sensing"},
        {MIDIStatus::SystemReset, "System Reset"},
    };
    const std::vector<int> raw = {0x80, 0x90, 0xA0, 0xB0, 0xC0, 0xD0, 0xE0, 0xF0, 0xF1, 0xF2, 0xF3, 0xF4,
                                  0xF5, 0xF6, 0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF};
    ASSERT_EQ(names.size(), raw.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(names[i].first.rawValue(), raw[i]);
        EXPECT_EQ(MIDIStatus::getName(names[i].first.rawValue()), names[i].second);
    }
}

TEST(MIDIStatus, ExistsForThoseTwentyThreeBytesOnly)
{
    int count = 0;
    for (int byte = 0; byte < 256; ++byte) {
        const auto status = MIDIStatus::fromRawValue(static_cast<std::uint8_t>(byte));
        if (status) {
            ++count;
            EXPECT_EQ(status->rawValue(), byte);
        } else {
            EXPECT_EQ(MIDIStatus::getName(static_cast<std::uint8_t>(byte)), "Unknown MIDI Status");
        }
    }
    EXPECT_EQ(count, 23);
}

TEST(MIDIStatus, DoesNotMaskTheChannelOff)
{
    EXPECT_EQ(MIDIStatus::getName(0x91), "Unknown MIDI Status");
    EXPECT_EQ(MIDIStatus::getName(0x00), "Unknown MIDI Status");
    EXPECT_EQ(MIDIStatus::getName(0x90), "Note On");
    EXPECT_FALSE(MIDIStatus::fromRawValue(0x91));
}

TEST(MIDIStatus, PrintsItsByteInHexadecimal)
{
    EXPECT_EQ(MIDIStatus::getHex(MIDIStatus::NoteOn), "0x90");
    EXPECT_EQ(MIDIStatus::getHex(MIDIStatus::_0x4F), "0xF4");
}

TEST(MIDIStatus, IsComparedAndHashedByCase)
{
    EXPECT_EQ(*MIDIStatus::fromRawValue(0x90), MIDIStatus::NoteOn);
    EXPECT_NE(MIDIStatus(MIDIStatus::NoteOn), MIDIStatus::NoteOff);
    const std::unordered_set<MIDIStatus> set = {MIDIStatus::Start, MIDIStatus::Stop, MIDIStatus::Start};
    EXPECT_EQ(set.size(), 2U);
}

TEST(MIDIControllers, CountTheirPlacesAndNotTheirNumbers)
{
    EXPECT_EQ(MIDIControllers(MIDIControllers::BankSelectMSB).rawValue(), 0);
    EXPECT_EQ(MIDIControllers(MIDIControllers::_0x14).rawValue(), 0x14);
    EXPECT_EQ(MIDIControllers(MIDIControllers::BankSelectLSB).rawValue(), 32);
    EXPECT_EQ(MIDIControllers(MIDIControllers::_0x29).rawValue(), 41);
    EXPECT_EQ(MIDIControllers(MIDIControllers::_0x3A).rawValue(), 42);
    EXPECT_EQ(MIDIControllers(MIDIControllers::Hold1).rawValue(), 48);
    EXPECT_EQ(MIDIControllers(MIDIControllers::SoundController1).rawValue(), 54);
    EXPECT_EQ(MIDIControllers(MIDIControllers::_0x66).rawValue(), 0x66 - 16);
    EXPECT_EQ(MIDIControllers(MIDIControllers::AllNotesOff).rawValue(), 123 - 16);
    EXPECT_EQ(MIDIControllers(MIDIControllers::PolyOn).rawValue(), 111);
}

TEST(MIDIControllers, ExistForRawValuesUpTo111)
{
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(MIDIControllers::fromRawValue(static_cast<std::uint8_t>(byte)).has_value(), byte <= 111);
    }
    EXPECT_EQ(*MIDIControllers::fromRawValue(64), MIDIControllers::GeneralPurpose5);
    EXPECT_NE(*MIDIControllers::fromRawValue(64), MIDIControllers::Hold1);
}

TEST(MIDIControllers, PrintTheirPlaceInHexadecimal)
{
    EXPECT_EQ(MIDIControllers::getHex(MIDIControllers::Hold1), "0x30");
    EXPECT_EQ(MIDIControllers::getHex(MIDIControllers::DataEntry), "0x06");
}

std::string expectedControllerName(int number)
{
    const std::vector<std::pair<int, std::string>> names = {
        {0, "Bank Select MSB"},
        {1, "Modulation Wheel"},
        {2, "Breath Controller"},
        {4, "Foot Controller"},
        {5, "Portamento Time"},
        {6, "Data Entry"},
        {7, "Main Volume"},
        {8, "Balance"},
        {10, "Panorama"},
        {11, "Expression"},
        {12, "Effect Control 1"},
        {13, "Effect Control 2"},
        {16, "General Purpose 1"},
        {17, "General Purpose 2"},
        {18, "General Purpose 3"},
        {19, "General Purpose 4"},
        {32, "Bank Select LSB"},
        {64, "Hold 1"},
        {65, "Portamento"},
        {66, "Sostenuto"},
        {67, "Soft Pedal"},
        {68, "Legato Footswitch"},
        {69, "Hold 2"},
        {84, "Portamento Control"},
        {96, "Data Increment"},
        {97, "Data Decrement"},
        {98, "NRPN LSB"},
        {99, "NRPN MSB"},
        {100, "RPN LSB"},
        {101, "RPN MSB"},
        {120, "All Sounds Off"},
        {121, "Controller Reset"},
        {122, "Local Control On/Off"},
        {123, "All Notes Off"},
        {124, "Omni Off"},
        {125, "Omni On"},
        {126, "Mono On/ Poly Off"},
        {127, "Poly On / Mono Off"},
    };
    for (const auto& [row, name] : names) {
        if (row == number) {
            return name;
        }
    }
    if (number >= 70 && number <= 79) {
        return "Sound Controller " + std::to_string(number - 69);
    }
    if (number >= 80 && number <= 83) {
        return "General Purpose " + std::to_string(number - 75);
    }
    if (number >= 91 && number <= 95) {
        return "Effect " + std::to_string(number - 90) + " Depth";
    }
    return "Controller " + std::to_string(number);
}

TEST(MIDIControllers, AreNamedByControllerNumber)
{
    for (int number = 0; number < 256; ++number) {
        EXPECT_EQ(MIDIControllers::getName(static_cast<std::uint8_t>(number)),
                  expectedControllerName(number));
    }
}

TEST(METATags, HaveTheirNames)
{
    const std::vector<std::pair<METATags, std::string>> names = {
        {METATags::META_SEQUENCENUMBER, "Meta Sequencer Number"},
        {METATags::META_TEXTf, "Meta Text"},
        {METATags::META_COPYRIGHT, "Meta Copyright"},
        {METATags::META_TRACKNAME, "Meta Track Name"},
        {METATags::META_INSTRUMENTNAME, "Meta Instrument Name"},
        {METATags::META_LYRICS, "Meta Lyrics"},
        {METATags::META_MARKER, "Meta Marker"},
        {METATags::META_CUEPOINT, "Meta Cue Point"},
        {METATags::META_PROGRAMNAME, "Meta Program Name"},
        {METATags::META_DEVICENAME, "Meta Device Name"},
        {METATags::META_CHANNELPREFIX, "Meta Channel Preix"},
        {METATags::META_MIDIPORT, "Meta MIDI Port"},
        {METATags::META_EOT, "Meta End Of Track"},
        {METATags::META_SETTEMPO, "Meta Set Tempo"},
        {METATags::META_SMTPOFFSET, "Meta SMTPE Offset"},
        {METATags::META_TIMESIGNATURE, "Meta Time Signature"},
        {METATags::META_KEYSIGNATURE, "Meta Kex"},
        {METATags::META_SPECIFIC, "Meta Sequencer Specific"},
        {METATags::META_SYSEX, "Meta SysEx"},
        {METATags::META_UNKNOWN, "Meta Unknown"},
        {METATags::META_EXTENDEDNOTE, "Meta Extended Note"},
        {METATags::META_AUPARAMETER, "Meta AU Parameter"},
        {METATags::META_AUPRESET, "Meta AU Preset"},
    };
    const std::vector<int> raw = {0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x20, 0x21,
                                  0x2F, 0x51, 0x54, 0x58, 0x59, 0x7F, 0xF0, 0xFF, 0xF1, 0xF2, 0xF3};
    ASSERT_EQ(names.size(), raw.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(names[i].first.rawValue(), raw[i]);
        EXPECT_EQ(METATags::getName(names[i].first.rawValue()), names[i].second);
        EXPECT_EQ(*METATags::fromRawValue(names[i].first.rawValue()), names[i].first);
    }
    EXPECT_EQ(METATags::getName(0x30), "Meta Unknown");
    EXPECT_FALSE(METATags::fromRawValue(0x30));
}

TEST(MIDIVocabularyConstants, AgreeWhereTheyAreMeantTo)
{
    EXPECT_EQ(CONTROLLER_SOUNDS_OFF, CONTROLLER_NOTES_OFF);
    EXPECT_EQ(CONTROLLER_SOUNDS_OFF, 123);
    EXPECT_EQ(STATUS_META, STATUS_RESERVED4);
    EXPECT_EQ(STATUS_META, 0xFD);
    EXPECT_EQ(META_AUPRESET, META_UNKNOWN);
    EXPECT_EQ(META_AUPARAMETER, META_UNKNOWN);
    EXPECT_EQ(META_EXTENDEDNOTE, META_UNKNOWN);
}

TEST(MIDIVocabularyConstants, StatusBytesRunFromNoteOffToReset)
{
    const std::vector<int> bytes = {
        STATUS_NOTEOFF,     STATUS_NOTEON,        STATUS_PPRESSURE, STATUS_CONTROLLER,  STATUS_PROGRAM,
        STATUS_CPRESSURE,   STATUS_PITCHBEND,     STATUS_SYSEX,     STATUS_TIMECODE,    STATUS_SONGPOSITION,
        STATUS_SONGSELECT,  STATUS_RESERVED1,     STATUS_RESERVED2, STATUS_TUNEREQUEST, STATUS_EOX,
        STATUS_TIMINGCLOCK, STATUS_RESERVED3,     STATUS_START,     STATUS_CONTINUE,    STATUS_STOP,
        STATUS_RESERVED4,   STATUS_ACTIVESENSING, STATUS_RESET};
    EXPECT_EQ(bytes, (std::vector<int>{0x80, 0x90, 0xA0, 0xB0, 0xC0, 0xD0, 0xE0, 0xF0, 0xF1, 0xF2, 0xF3, 0xF4,
                                       0xF5, 0xF6, 0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF}));
}

TEST(MIDIVocabularyConstants, ControllersHaveTheirNumbers)
{
    EXPECT_EQ(CONTROLLER_BANKSELECT_MSB, 0);
    EXPECT_EQ(CONTROLLER_MODWHEEL, 1);
    EXPECT_EQ(CONTROLLER_003, 3);
    EXPECT_EQ(CONTROLLER_DATA_MSB, 6);
    EXPECT_EQ(CONTROLLER_VOLUME, 7);
    EXPECT_EQ(CONTROLLER_008, 8);
    EXPECT_EQ(CONTROLLER_009, 9);
    EXPECT_EQ(CONTROLLER_PAN, 10);
    EXPECT_EQ(CONTROLLER_EXPRESSION, 11);
    EXPECT_EQ(CONTROLLER_016, 16);
    EXPECT_EQ(CONTROLLER_031, 31);
    EXPECT_EQ(CONTROLLER_BANKSELECT_LSB, 32);
    EXPECT_EQ(CONTROLLER_SUSTAIN, 64);
    EXPECT_EQ(CONTROLLER_PORTA, 65);
    EXPECT_EQ(CONTROLLER_HOLD2, 69);
    EXPECT_EQ(CONTROLLER_RESONANCE, 71);
    EXPECT_EQ(CONTROLLER_RELEASE, 72);
    EXPECT_EQ(CONTROLLER_ATTACK, 73);
    EXPECT_EQ(CONTROLLER_CUTOFF, 74);
    EXPECT_EQ(CONTROLLER_DECAY, 75);
    EXPECT_EQ(CONTROLLER_SUSTAIN2, 76);
    EXPECT_EQ(CONTROLLER_102, 102);
    EXPECT_EQ(CONTROLLER_112, 112);
    EXPECT_EQ(CONTROLLER_RESET_CONTROLLERS, 121);
}

TEST(MIDIVocabularyConstants, MetaTypesHaveTheirBytes)
{
    const std::vector<int> bytes = {
        META_SEQUENCENUMBER, META_TEXT,         META_COPYRIGHT, META_TRACKNAME,   META_INSTRUMENTNAME,
        META_LYRICS,         META_MARKER,       META_CUEPOINT,  META_PROGRAMNAME, META_DEVICENAME,
        META_CHANNELPREFIX,  META_MIDIPORT,     META_EOT,       META_SETTEMPO,    META_SMTPOFFSET,
        META_TIMESIGNATURE,  META_KEYSIGNATURE, META_SPECIFIC,  META_SYSEX,       META_UNKNOWN};
    EXPECT_EQ(bytes, (std::vector<int>{0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09,
                                       0x20, 0x21, 0x2F, 0x51, 0x54, 0x58, 0x59, 0x7F, 0xF0, 0xFF}));
}

} // namespace
} // namespace volvelle
