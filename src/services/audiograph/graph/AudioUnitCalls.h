#pragma once

#include "services/audiograph/graph/AUAudioUnit.h"

#include <cstdint>
#include <memory>

namespace volvelle {

// The low-level handle of a unit.
using AudioUnit = std::shared_ptr<AUAudioUnit>;

inline constexpr OSStatus kAudio_ParamError = -50;
inline constexpr OSStatus kAUGraphErr_NodeNotFound = -10860;
inline constexpr OSStatus kAUGraphErr_InvalidConnection = -10861;
inline constexpr OSStatus kAudioUnitErr_FormatNotSupported = -10868;
inline constexpr OSStatus kAudioUnitErr_InvalidElement = -10877;
// Of rendering by hand: the mode is not on, the engine is running, the engine is not running.
inline constexpr OSStatus kAudioEngineErr_InvalidMode = -80800;
inline constexpr OSStatus kAudioEngineErr_Initialized = -80801;
inline constexpr OSStatus kAudioEngineErr_NotRunning = -80802;

inline constexpr std::uint32_t kAudioUnitScope_Global = 0;

// AUAudioUnit::setProperty() and AUAudioUnit::musicDeviceMIDIEvent(); kAudio_ParamError for a null unit.
// [main thread]
OSStatus AudioUnitSetProperty(const AudioUnit& unit, std::uint32_t property, std::uint32_t scope,
                              std::uint32_t element, const void* data, std::uint32_t size);
OSStatus MusicDeviceMIDIEvent(const AudioUnit& unit, std::uint32_t status, std::uint32_t data1,
                              std::uint32_t data2, std::uint32_t sampleOffset);

} // namespace volvelle
