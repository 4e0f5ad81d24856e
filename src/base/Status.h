#pragma once

#include <cstdint>

namespace volvelle {

// What an operation of a service answers: noErr, or the number of what went wrong. All numbers stand here.
using OSStatus = std::int32_t;

inline constexpr OSStatus noErr = 0;

// MARK: Files

inline constexpr OSStatus fileIOErr = -36;
inline constexpr OSStatus fileNotFoundErr = -43;
inline constexpr OSStatus fileExistsErr = -48;
inline constexpr OSStatus fileFormatErr = -10870; // no Standard MIDI File

// MARK: Sequences

inline constexpr OSStatus kAudioToolboxErr_InvalidSequenceType = -10846;
inline constexpr OSStatus kAudioToolboxErr_InvalidPlayerState = -10852;
inline constexpr OSStatus kAudioToolboxErr_InvalidEventType = -10853;
inline constexpr OSStatus kAudioToolboxErr_NoSequence = -10854;
inline constexpr OSStatus kAudioToolboxErr_IllegalTrackDestination = -10855;
inline constexpr OSStatus kAudioToolboxErr_StartOfTrack = -10856;
inline constexpr OSStatus kAudioToolboxErr_EndOfTrack = -10857;
inline constexpr OSStatus kAudioToolboxErr_TrackNotFound = -10858;
inline constexpr OSStatus kAudioToolboxErr_TrackIndexError = -10859;
inline constexpr OSStatus kAudioToolboxErr_CannotDoInCurrentContext = -10863;
inline constexpr OSStatus kAudioToolboxErr_InvalidProperty = -10879; // none such, or of another size

// MARK: Units and the engine

inline constexpr OSStatus kAudio_ParamError = -50;
inline constexpr OSStatus kAUGraphErr_NodeNotFound = -10860;
inline constexpr OSStatus kAUGraphErr_InvalidConnection = -10861;
inline constexpr OSStatus kAudioUnitErr_FormatNotSupported = -10868;
inline constexpr OSStatus kAudioUnitErr_InvalidFile = -10871;
inline constexpr OSStatus kAudioUnitErr_InvalidElement = -10877;
// Of rendering by hand: the mode is not on, the engine is running, the engine is not running.
inline constexpr OSStatus kAudioEngineErr_InvalidMode = -80800;
inline constexpr OSStatus kAudioEngineErr_Initialized = -80801;
inline constexpr OSStatus kAudioEngineErr_NotRunning = -80802;

} // namespace volvelle
