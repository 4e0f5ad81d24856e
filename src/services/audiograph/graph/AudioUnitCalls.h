#pragma once

#include "services/audiograph/graph/AUAudioUnit.h"

#include <cstdint>
#include <memory>

namespace volvelle {

// The low-level handle of a unit.
using AudioUnit = std::shared_ptr<AUAudioUnit>;

inline constexpr std::uint32_t kAudioUnitScope_Global = 0;

// AUAudioUnit::setProperty() and AUAudioUnit::musicDeviceMIDIEvent(); kAudio_ParamError for a null unit.
// [main]
[[nodiscard]] OSStatus AudioUnitSetProperty(const AudioUnit& unit, std::uint32_t property,
                                            std::uint32_t scope, std::uint32_t element, const void* data,
                                            std::uint32_t size);
[[nodiscard]] OSStatus MusicDeviceMIDIEvent(const AudioUnit& unit, std::uint32_t status, std::uint32_t data1,
                                            std::uint32_t data2, std::uint32_t sampleOffset);

} // namespace volvelle
