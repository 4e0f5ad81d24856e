#pragma once

#include <cstdint>
#include <memory>

namespace volvelle {

class AudioUnitBase;

// Listens to a wrapped unit. The wrapper holds it weakly.
class AudioUnitBaseDelegate {
public:
    virtual ~AudioUnitBaseDelegate() = default;

    // At the end of AudioUnitBase::create(): the wrapper, null where the unit could not be made. [main]
    virtual void onAudioUnitCreated(const std::shared_ptr<AudioUnitBase>& unit) = 0;

    // Nothing sends it. [main]
    virtual void onAudioUnitDestroyed(const std::shared_ptr<AudioUnitBase>& unit) = 0;

    // A message that the unit plays, with its time in frames of the unit. The bytes live for the call alone.
    // [render]
    virtual void onAudioUnitMIDI(AudioUnitBase& unit, std::int64_t sampleTime, std::uint8_t cable, int length,
                                 const std::uint8_t* data) = 0;

    // A parameter has another value. Comes after the change. [main]
    virtual void onAudioUnitParameter(const std::shared_ptr<AudioUnitBase>& unit, std::uint64_t address,
                                      float value) = 0;
};

} // namespace volvelle
