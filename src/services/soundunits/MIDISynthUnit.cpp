#include "services/soundunits/MIDISynthUnit.h"

#include "base/Console.h"
#include "base/Text.h"
#include "services/audiograph/AudioComponentRegistry.h"
#include "services/audiograph/AudioUnitCalls.h"
#include "services/synthesizer/SoundBanks.h"

#include <algorithm>
#include <cstring>

namespace volvelle {

namespace {

constexpr std::uint8_t controllerStatus = 0xB0;
constexpr std::uint8_t programStatus = 0xC0;
constexpr std::uint8_t bankSelectMSB = 0;
constexpr std::uint8_t bankSelectLSB = 32;

} // namespace

MIDISynthUnit::MIDISynthUnit(const AudioComponentDescription& description, const SynthesizerOptions& chosen,
                             const std::optional<std::filesystem::path>& builtIn)
    : AUAudioUnit(description), options(chosen)
{
    audioUnitName = "MIDI Synthesizer";
    takesMIDI = true;
    outputBusses = {{AVAudioFormat{options.sampleRate, 2}, "Output", true}};
    const auto first = builtIn ? builtIn : bestInstalledBank();
    if (!first) {
        debugprint("There is no sound bank: the music plays without sound. Install a SoundFont.");
    } else if (!renew(*first)) {
        debugprint(concat("The sound bank '", first->string(), "' could not be loaded."));
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
    kept.clear();
    return renew(url) ? noErr : invalidFile;
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
    if ((status & 0xF0U) == controllerStatus && data1 == bankSelectMSB) {
        select.msb = static_cast<std::uint8_t>(data2);
    } else if ((status & 0xF0U) == controllerStatus && data1 == bankSelectLSB) {
        select.lsb = static_cast<std::uint8_t>(data2);
    } else if ((status & 0xF0U) == programStatus) {
        hasNewSounds |= keep({channel, select.msb, select.lsb, static_cast<std::uint8_t>(data1)});
    }
    return noErr;
}

OSStatus MIDISynthUnit::endPreload()
{
    const bool isNeeded = hasNewSounds && readsOnDemand;
    hasNewSounds = false;
    return !isNeeded || renew(bank) ? noErr : invalidFile;
}

void MIDISynthUnit::prepareToPlay(std::span<const AUMIDIProgram> programs)
{
    bool isNew = false;
    for (const AUMIDIProgram& program : programs) {
        isNew |= keep(program);
    }
    if (isNew && readsOnDemand) {
        renew(bank);
    }
}

bool MIDISynthUnit::keep(const AUMIDIProgram& program)
{
    if (std::ranges::find(kept, program) != kept.end()) {
        return false;
    }
    kept.push_back(program);
    return true;
}

bool MIDISynthUnit::renew(const std::filesystem::path& from)
{
    std::string error;
    auto synthesizer = Synthesizer::make(from, options, error);
    if (!synthesizer) {
        debugprint(error);
        return false;
    }
    if (synthesizer->readsOnDemand) {
        for (const AUMIDIProgram& program : kept) {
            synthesizer->preload(program.channel, program.bankMSB, program.bankLSB, program.program);
        }
    }
    bank = from;
    readsOnDemand = synthesizer->readsOnDemand;
    synthesizers.publish(std::move(synthesizer));
    return true;
}

void MIDISynthUnit::takeOver(Synthesizer& synthesizer) noexcept
{
    for (int channel = 0; channel < static_cast<int>(channels.size()); ++channel) {
        ChannelMessages messages;
        channels[static_cast<std::size_t>(channel)].tell(channel, messages);
        for (int i = 0; i < messages.count; ++i) {
            const auto& bytes = messages.list[static_cast<std::size_t>(i)];
            synthesizer.message(bytes[0], bytes[1], bytes[2]);
        }
    }
}

void MIDISynthUnit::reset() noexcept
{
    for (ChannelState& channel : channels) {
        channel.clear();
    }
    if (Synthesizer* synthesizer = synthesizers.current()) {
        synthesizer->reset();
    }
}

void MIDISynthUnit::renderBlock(const float*, const float*, float* left, float* right, int frames,
                                std::span<const AUMIDIRenderEvent> events) noexcept
{
    synthesizers.take([this](Synthesizer* before) {
        if (before != nullptr) {
            takeOver(*synthesizers.current());
        }
    });
    Synthesizer* synthesizer = synthesizers.current();
    for (const AUMIDIRenderEvent& event : events) {
        const std::uint8_t* bytes = event.bytes();
        const std::uint8_t status = bytes[0];
        if (status >= controllerStatus && status < 0xF0 && event.length <= 3) {
            const std::array<std::uint8_t, 3> message{status, bytes[1],
                                                      event.length > 2 ? bytes[2] : std::uint8_t{0}};
            channels[status & 0x0FU].apply(message);
        }
        if (synthesizer == nullptr || event.length < 1) {
            continue;
        }
        if (event.length > 3) {
            synthesizer->systemExclusive({bytes, static_cast<std::size_t>(event.length)}, event.offset);
        } else {
            synthesizer->message(status, event.length > 1 ? bytes[1] : std::uint8_t{0},
                                 event.length > 2 ? bytes[2] : std::uint8_t{0}, event.offset);
        }
    }
    if (synthesizer == nullptr) {
        std::fill_n(left, frames, 0.0F);
        std::fill_n(right, frames, 0.0F);
        return;
    }
    synthesizer->render(left, right, frames);
    voices.store(synthesizer->activeVoices(), std::memory_order_relaxed);
}

void registerMIDISynth(const SynthesizerOptions& options, const std::optional<std::filesystem::path>& builtIn)
{
    registerAudioComponent(synthesizerComponent, [=](const AudioComponentDescription& description) {
        return std::make_shared<MIDISynthUnit>(description, options, builtIn);
    });
}

} // namespace volvelle
