#pragma once

#include <cstdint>

// The bytes that the system compares against. They are independent of the enumerations of MIDIDefinitions.h
// and differ from them in places. [any]
namespace volvelle {

// MARK: Status bytes, channel 0

inline constexpr std::uint8_t STATUS_NOTEOFF = 0x80;
inline constexpr std::uint8_t STATUS_NOTEON = 0x90;
inline constexpr std::uint8_t STATUS_PPRESSURE = 0xA0;
inline constexpr std::uint8_t STATUS_CONTROLLER = 0xB0;
inline constexpr std::uint8_t STATUS_PROGRAM = 0xC0;
inline constexpr std::uint8_t STATUS_CPRESSURE = 0xD0;
inline constexpr std::uint8_t STATUS_PITCHBEND = 0xE0;
inline constexpr std::uint8_t STATUS_SYSEX = 0xF0;
inline constexpr std::uint8_t STATUS_TIMECODE = 0xF1;
inline constexpr std::uint8_t STATUS_SONGPOSITION = 0xF2;
inline constexpr std::uint8_t STATUS_SONGSELECT = 0xF3;
inline constexpr std::uint8_t STATUS_RESERVED1 = 0xF4;
inline constexpr std::uint8_t STATUS_RESERVED2 = 0xF5;
inline constexpr std::uint8_t STATUS_TUNEREQUEST = 0xF6;
inline constexpr std::uint8_t STATUS_EOX = 0xF7;
inline constexpr std::uint8_t STATUS_TIMINGCLOCK = 0xF8;
inline constexpr std::uint8_t STATUS_RESERVED3 = 0xF9;
inline constexpr std::uint8_t STATUS_START = 0xFA;
inline constexpr std::uint8_t STATUS_CONTINUE = 0xFB;
inline constexpr std::uint8_t STATUS_STOP = 0xFC;
inline constexpr std::uint8_t STATUS_RESERVED4 = 0xFD;
// Meta events travel in one byte stream beside real MIDI after a free status byte, so that they do not
// collide with System Reset.
inline constexpr std::uint8_t STATUS_META = 0xFD;
inline constexpr std::uint8_t STATUS_FILE_META = 0xFF; // in a file, where nothing is reset
inline constexpr std::uint8_t STATUS_ACTIVESENSING = 0xFE;
inline constexpr std::uint8_t STATUS_RESET = 0xFF;

// MARK: Controller numbers

inline constexpr std::uint8_t CONTROLLER_BANKSELECT_MSB = 0;
inline constexpr std::uint8_t CONTROLLER_MODWHEEL = 1;
inline constexpr std::uint8_t CONTROLLER_003 = 3;
inline constexpr std::uint8_t CONTROLLER_DATA_MSB = 6;
inline constexpr std::uint8_t CONTROLLER_VOLUME = 7;
inline constexpr std::uint8_t CONTROLLER_008 = 8;
inline constexpr std::uint8_t CONTROLLER_009 = 9;
inline constexpr std::uint8_t CONTROLLER_PAN = 10;
inline constexpr std::uint8_t CONTROLLER_EXPRESSION = 11;
inline constexpr std::uint8_t CONTROLLER_016 = 16;
inline constexpr std::uint8_t CONTROLLER_017 = 17;
inline constexpr std::uint8_t CONTROLLER_018 = 18;
inline constexpr std::uint8_t CONTROLLER_019 = 19;
inline constexpr std::uint8_t CONTROLLER_020 = 20;
inline constexpr std::uint8_t CONTROLLER_021 = 21;
inline constexpr std::uint8_t CONTROLLER_022 = 22;
inline constexpr std::uint8_t CONTROLLER_023 = 23;
inline constexpr std::uint8_t CONTROLLER_024 = 24;
inline constexpr std::uint8_t CONTROLLER_025 = 25;
inline constexpr std::uint8_t CONTROLLER_026 = 26;
inline constexpr std::uint8_t CONTROLLER_027 = 27;
inline constexpr std::uint8_t CONTROLLER_028 = 28;
inline constexpr std::uint8_t CONTROLLER_029 = 29;
inline constexpr std::uint8_t CONTROLLER_030 = 30;
inline constexpr std::uint8_t CONTROLLER_031 = 31;
inline constexpr std::uint8_t CONTROLLER_BANKSELECT_LSB = 32;
inline constexpr std::uint8_t CONTROLLER_SUSTAIN = 64;
inline constexpr std::uint8_t CONTROLLER_PORTA = 65;
inline constexpr std::uint8_t CONTROLLER_HOLD2 = 69;
inline constexpr std::uint8_t CONTROLLER_RESONANCE = 71;
inline constexpr std::uint8_t CONTROLLER_RELEASE = 72;
inline constexpr std::uint8_t CONTROLLER_ATTACK = 73;
inline constexpr std::uint8_t CONTROLLER_CUTOFF = 74;
inline constexpr std::uint8_t CONTROLLER_DECAY = 75;
inline constexpr std::uint8_t CONTROLLER_SUSTAIN2 = 76;
inline constexpr std::uint8_t CONTROLLER_102 = 102;
inline constexpr std::uint8_t CONTROLLER_103 = 103;
inline constexpr std::uint8_t CONTROLLER_104 = 104;
inline constexpr std::uint8_t CONTROLLER_105 = 105;
inline constexpr std::uint8_t CONTROLLER_106 = 106;
inline constexpr std::uint8_t CONTROLLER_107 = 107;
inline constexpr std::uint8_t CONTROLLER_108 = 108;
inline constexpr std::uint8_t CONTROLLER_109 = 109;
inline constexpr std::uint8_t CONTROLLER_110 = 110;
inline constexpr std::uint8_t CONTROLLER_111 = 111;
inline constexpr std::uint8_t CONTROLLER_112 = 112;
inline constexpr std::uint8_t CONTROLLER_RESET_CONTROLLERS = 121;
inline constexpr std::uint8_t CONTROLLER_NOTES_OFF = 123;
// All sounds off goes out as controller 123, not 120.
inline constexpr std::uint8_t CONTROLLER_SOUNDS_OFF = 123;

// Of the controllers above some have names that tell less than they do, and some are missing: these say what
// the device does.
inline constexpr std::uint8_t CONTROLLER_DATA_LSB = 38;
inline constexpr std::uint8_t CONTROLLER_SOSTENUTO = 66;
inline constexpr std::uint8_t CONTROLLER_LEGATO = 68;
inline constexpr std::uint8_t CONTROLLER_PORTAMENTO_KEY = 84;
inline constexpr std::uint8_t CONTROLLER_NRPN_LSB = 98; // of a parameter that is not registered
inline constexpr std::uint8_t CONTROLLER_NRPN_MSB = 99;
inline constexpr std::uint8_t CONTROLLER_RPN_LSB = 100;
inline constexpr std::uint8_t CONTROLLER_RPN_MSB = 101;
inline constexpr std::uint8_t CONTROLLER_ALL_SOUND_OFF = 120; // and the first of the modes
inline constexpr std::uint8_t CONTROLLER_OMNI_OFF = 124;
inline constexpr std::uint8_t CONTROLLER_MONO = 126;
inline constexpr std::uint8_t CONTROLLER_POLY = 127;

// MARK: Meta types

inline constexpr std::uint8_t META_SEQUENCENUMBER = 0x00;
inline constexpr std::uint8_t META_TEXT = 0x01;
inline constexpr std::uint8_t META_COPYRIGHT = 0x02;
inline constexpr std::uint8_t META_TRACKNAME = 0x03;
inline constexpr std::uint8_t META_INSTRUMENTNAME = 0x04;
inline constexpr std::uint8_t META_LYRICS = 0x05;
inline constexpr std::uint8_t META_MARKER = 0x06;
inline constexpr std::uint8_t META_CUEPOINT = 0x07;
inline constexpr std::uint8_t META_PROGRAMNAME = 0x08;
inline constexpr std::uint8_t META_DEVICENAME = 0x09;
inline constexpr std::uint8_t META_CHANNELPREFIX = 0x20;
inline constexpr std::uint8_t META_MIDIPORT = 0x21;
inline constexpr std::uint8_t META_EOT = 0x2F;
inline constexpr std::uint8_t META_SETTEMPO = 0x51;
inline constexpr std::uint8_t META_SMTPOFFSET = 0x54;
inline constexpr std::uint8_t META_TIMESIGNATURE = 0x58;
inline constexpr std::uint8_t META_KEYSIGNATURE = 0x59;
inline constexpr std::uint8_t META_SPECIFIC = 0x7F;
inline constexpr std::uint8_t META_SYSEX = 0xF0;
inline constexpr std::uint8_t META_UNKNOWN = 0xFF;
// These three equal META_UNKNOWN; METATags has values of their own for them.
inline constexpr std::uint8_t META_EXTENDEDNOTE = 0xFF;
inline constexpr std::uint8_t META_AUPARAMETER = 0xFF;
inline constexpr std::uint8_t META_AUPRESET = 0xFF;

} // namespace volvelle
