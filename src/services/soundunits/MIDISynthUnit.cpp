#include "services/soundunits/MIDISynthUnit.h"

#include "base/Console.h"
#include "base/Text.h"
#include "services/audiograph/graph/AudioComponentRegistry.h"
#include "services/audiograph/graph/AudioUnitCalls.h"
#include "services/synthesizer/SoundBanks.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace volvelle {

MIDISynthUnit::MIDISynthUnit(const AudioComponentDescription& description, const SynthesizerOptions& options,
                             const std::optional<std::filesystem::path>& builtIn)
    : AUAudioUnit(description), options(options), missing(maximumMissing)
{
    audioUnitName = "MIDI Synthesizer";
    takesMIDI = true;
    outputBusses = {{AVAudioFormat{options.sampleRate, 2}, "Output", true}};
    const auto first = builtIn ? builtIn : bestInstalledBank();
    if (!first) {
        debugprint("There is no sound bank: the music plays without sound. Install a SoundFont.");
    } else if (!open(*first)) {
        debugprint("The sound bank '", first->string(), "' could not be loaded.");
    }
}

MIDISynthUnit::~MIDISynthUnit() = default;

OSStatus MIDISynthUnit::setProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element,
                                    const void* data, std::uint32_t size)
{
    if (scope != kAudioUnitScope_Global || element != 0) {
        return kAudioUnitErr_InvalidElement;
    }
    if (property == soundBankProperty) {
        if (data == nullptr || size != sizeof(void*)) {
            return kAudio_ParamError;
        }
        const std::filesystem::path* location = nullptr;
        std::memcpy(static_cast<void*>(&location), data, sizeof(void*));
        return location == nullptr ? kAudio_ParamError : loadBank(*location);
    }
    if (property == enablePreloadProperty) {
        std::uint32_t flag = 0;
        if (data == nullptr || size != sizeof flag) {
            return kAudio_ParamError;
        }
        std::memcpy(&flag, data, sizeof flag);
        isPreloading = flag != 0;
        preloadBanks = {};
        return isPreloading ? noErr : endPreload();
    }
    return AUAudioUnit::setProperty(property, scope, element, data, size);
}

OSStatus MIDISynthUnit::loadBank(const std::filesystem::path& url)
{
    return open(url) ? noErr : kAudioUnitErr_InvalidFile;
}

OSStatus MIDISynthUnit::musicDeviceMIDIEvent(std::uint32_t status, std::uint32_t data1, std::uint32_t data2,
                                             std::uint32_t sampleOffset)
{
    return isPreloading ? preloadEvent(status, data1, data2)
                        : AUAudioUnit::musicDeviceMIDIEvent(status, data1, data2, sampleOffset);
}

OSStatus MIDISynthUnit::preloadEvent(std::uint32_t status, std::uint32_t data1, std::uint32_t data2)
{
    if (status > 0xFF || data1 > 127 || data2 > 127) {
        return kAudio_ParamError;
    }
    const auto channel = static_cast<std::uint8_t>(status & 0x0FU);
    BankSelect& select = preloadBanks.at(channel);
    const ShortMessage message{static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1),
                               static_cast<std::uint8_t>(data2)};
    if (isController(message, CONTROLLER_BANKSELECT_MSB)) {
        select.msb = message[2];
    } else if (isController(message, CONTROLLER_BANKSELECT_LSB)) {
        select.lsb = message[2];
    } else if (kindOf(message) == STATUS_PROGRAM) {
        hasNewSounds |= keep({channel, select.msb, select.lsb, static_cast<std::uint8_t>(data1)});
    }
    return noErr;
}

OSStatus MIDISynthUnit::endPreload()
{
    const bool isNeeded = std::exchange(hasNewSounds, false) && bank != nullptr && bank->isLarge();
    return !isNeeded || renew(bank) ? noErr : kAudioUnitErr_InvalidFile;
}

void MIDISynthUnit::prepareToPlay(std::span<const AUMIDIProgram> programs)
{
    bool isNew = false;
    for (const AUMIDIProgram& program : programs) {
        isNew |= keep(program);
    }
    if (isNew) {
        renewForNewSounds();
    }
}

void MIDISynthUnit::renewForNewSounds()
{
    if (bank != nullptr && bank->isLarge()) {
        renew(bank);
    }
}

void MIDISynthUnit::housekeeping()
{
    synthesizers.collect();
    bool isNew = false;
    SoundChoice choice;
    while (missing.pop(choice)) {
        isNew |= keep({choice.channel, choice.bankMSB, choice.bankLSB, choice.program});
    }
    if (isNew) {
        renewForNewSounds();
    }
}

bool MIDISynthUnit::keep(const AUMIDIProgram& program)
{
    return kept.insert(program).second;
}

bool MIDISynthUnit::open(const std::filesystem::path& url)
{
    const auto file = BankFile::open(url);
    if (!file) {
        debugprint(file.error());
        return false;
    }
    return renew(*file);
}

bool MIDISynthUnit::renew(const std::shared_ptr<const BankFile>& from)
{
    auto made = Synthesizer::make(from, options);
    if (!made) {
        debugprint(made.error());
        return false;
    }
    std::unique_ptr<Synthesizer> synthesizer = *std::move(made);
    if (synthesizer->readsOnDemand()) {
        for (const AUMIDIProgram& sound : kept) {
            synthesizer->preload({sound.channel, sound.bankMSB, sound.bankLSB, sound.program});
        }
    }
    bank = from;
    synthesizers.publish(std::move(synthesizer));
    return true;
}

void MIDISynthUnit::takeOver(Synthesizer& synthesizer) noexcept
{
    for (std::size_t i = 0; i < device.exclusives.size(); ++i) {
        synthesizer.systemExclusive(device.exclusives[i]);
    }
    for (int channel = 0; channel < channelCount; ++channel) {
        device.channels[channel].forEachMessage(channel, [&](const ShortMessage& message) {
            synthesizer.message(message[0], message[1], message[2]);
        });
    }
}

void MIDISynthUnit::reset() noexcept
{
    device.clear();
    if (Synthesizer* synthesizer = synthesizers.current()) {
        synthesizer->reset();
    }
}

void MIDISynthUnit::forgetSettings() noexcept
{
    device.clear();
    if (Synthesizer* synthesizer = synthesizers.current()) {
        synthesizer->forgetSettings();
    }
}

void MIDISynthUnit::takeMessage(const TimedMessage& event, Synthesizer* synthesizer) noexcept
{
    if (event.isLong()) {
        device.applyExclusive(event.bytes());
        if (synthesizer != nullptr) {
            synthesizer->systemExclusive(event.bytes(), event.offset);
        }
        return;
    }
    const ShortMessage& message = event.shortBytes;
    device.apply(message);
    if (synthesizer != nullptr) {
        synthesizer->message(message[0], message[1], message[2], event.offset);
    }
}

void MIDISynthUnit::renderBlock(const float*, const float*, float* left, float* right, int frames,
                                std::span<const TimedMessage> events) noexcept
{
    synthesizers.take([this](Synthesizer*) { takeOver(*synthesizers.current()); });
    Synthesizer* synthesizer = synthesizers.current();
    for (const TimedMessage& event : events) {
        takeMessage(event, synthesizer);
    }
    if (synthesizer == nullptr) {
        std::fill_n(left, frames, 0.0F);
        std::fill_n(right, frames, 0.0F);
        return;
    }
    synthesizer->render(left, right, frames);
    voices.store(synthesizer->activeVoices(), std::memory_order_relaxed);
    SoundChoice choice;
    while (synthesizer->takeMissing(choice)) {
        missing.push(choice);
    }
}

} // namespace volvelle
