#include "audio/AudioUnitMIDISynth.h"
#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"
#include "midi/MIDIConstants.h"
#include "services/audiograph/graph/AudioUnitCalls.h"
#include "wire/ShortMessage.h"

#include <tuple>

namespace volvelle {

namespace {

constexpr std::uint32_t enablePreloadProperty = 4119;

} // namespace

void AudioUnitMIDISynth::preloadPatches(std::uint8_t channel, const std::vector<std::uint32_t>& patches,
                                        std::uint32_t msb, std::uint32_t lsb)
{
    if (const OSStatus status = enablePreload(true); status != noErr) {
        debugprint("AudioUnitMIDISynth::preloadPatches() : ERROR: Preloading patches could not be enabled. ",
                   status);
        return;
    }
    for (const std::uint32_t patch : patches) {
        std::ignore = sendController(channel, CONTROLLER_BANKSELECT_MSB, msb);
        std::ignore = sendController(channel, CONTROLLER_BANKSELECT_LSB, lsb);
        if (const OSStatus status = sendProgram(channel, patch); status != noErr) {
            debugprint("AudioUnitMIDISynth::preloadPatches() : ERROR: A patch (", patch,
                       ") could not be preloaded. ", status);
        }
    }
    if (const OSStatus status = enablePreload(false); status != noErr) {
        debugprint("AudioUnitMIDISynth::preloadPatches() : ERROR: Preloading patches could not be disabled. ",
                   status);
        return;
    }
    debugprint("AudioUnitMIDISynth::preloadPatches() : Sound patch(es) (melodic) was/where preloaded.");
}

void AudioUnitMIDISynth::preloadPatches2(const std::vector<std::uint32_t>& patches)
{
    if (const OSStatus status = enablePreload(true); status != noErr) {
        debugprint("AudioUnitMIDISynth::preloadPatches2() : ERROR: Preloading patches could not be enabled. ",
                   status);
        return;
    }
    for (const std::uint32_t patch : patches) {
        if (const OSStatus status = sendProgram(drumChannel, patch); status != noErr) {
            debugprint("AudioUnitMIDISynth::preloadPatches2() : ERROR: A patch could not be preloaded. ",
                       status);
        }
    }
    if (const OSStatus status = enablePreload(false); status != noErr) {
        debugprint(
            "AudioUnitMIDISynth::preloadPatches2() : ERROR: Preloading patches could not be disabled. ",
            status);
        return;
    }
    debugprint("AudioUnitMIDISynth::Sound patch(es) (rhythmic) was/where preloaded.");
}

void AudioUnitMIDISynth::preloadPatch(std::uint8_t msb, std::uint8_t lsb, std::uint8_t patch,
                                      std::uint8_t channel)
{
    if (const OSStatus status = enablePreload(true); status != noErr) {
        debugprint("AudioUnitMIDISynth::preloadPatch() : ERROR: Preloading patches could not be enabled. ",
                   status);
        return;
    }
    OSStatus status = sendController(channel, CONTROLLER_BANKSELECT_MSB, msb);
    if (status == noErr) {
        status = sendController(channel, CONTROLLER_BANKSELECT_LSB, lsb);
    }
    if (status == noErr) {
        status = sendProgram(channel, patch);
    }
    if (status != noErr) {
        debugprint("AudioUnitMIDISynth::preloadPatch() : ERROR: A patch could not be preloaded. ", status);
        return;
    }
    if (status = enablePreload(false); status != noErr) {
        debugprint("AudioUnitMIDISynth::preloadPatch() : ERROR: Preloading patches could not be disabled. ",
                   status);
        return;
    }
    debugprint("AudioUnitMIDISynth::preloadPatch() : Sound patch ", msb, ", ", lsb, ", ", patch,
               " was preloaded.");
}

OSStatus AudioUnitMIDISynth::enablePreload(bool isOn)
{
    const std::uint32_t value = isOn ? 1 : 0;
    return AudioUnitSetProperty(required(midiSynth).audioUnit(), enablePreloadProperty,
                                kAudioUnitScope_Global, 0, &value, sizeof value);
}

OSStatus AudioUnitMIDISynth::sendController(std::uint8_t channel, std::uint8_t number, std::uint32_t value)
{
    return MusicDeviceMIDIEvent(required(midiSynth).audioUnit(), STATUS_CONTROLLER | std::uint32_t{channel},
                                number, value, 0);
}

OSStatus AudioUnitMIDISynth::sendProgram(std::uint8_t channel, std::uint32_t patch)
{
    return MusicDeviceMIDIEvent(required(midiSynth).audioUnit(), STATUS_PROGRAM | std::uint32_t{channel},
                                patch, 0, 0);
}

} // namespace volvelle
