#include "services/audiodevice/RtMidiPorts.h"

#include "base/Text.h"
#include "services/audiodevice/SoundServers.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace volvelle {

namespace {

constexpr const char* clientName = "Volvelle";

// Throws what the library would print: warnings mean here that something was not done.
void throwError(RtMidiError::Type type, const std::string& message, void* /*user*/)
{
    throw RtMidiError(message, type);
}

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

std::vector<std::string> namesOf(RtMidiOut& midi)
{
    std::vector<std::string> names;
    const unsigned int count = midi.getPortCount();
    names.reserve(count);
    for (unsigned int i = 0; i < count; ++i) {
        names.push_back(midi.getPortName(i));
    }
    return names;
}

// The index of the port asked for, or that of the end.
std::size_t find(const std::vector<std::string>& names, const std::string& wanted)
{
    const auto exact = std::find(names.begin(), names.end(), wanted);
    const auto partial = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
        return lowered(name).find(lowered(wanted)) != std::string::npos;
    });
    return static_cast<std::size_t>((exact != names.end() ? exact : partial) - names.begin());
}

// Holds what must never be closed, and is never destroyed itself.
void keepForGood(std::unique_ptr<RtMidiOut> midi)
{
    static auto* const mutex = new std::mutex;
    static auto* const kept = new std::vector<std::unique_ptr<RtMidiOut>>;
    const std::lock_guard lock(*mutex);
    kept->push_back(std::move(midi));
}

class RtMidiOutput : public MIDIOutput {
public:
    RtMidiOutput(std::unique_ptr<RtMidiOut> midi, std::string name)
        : midi(std::move(midi)), portName(std::move(name))
    {
    }

    // JACK's library crashes where a port of a dead server is closed.
    ~RtMidiOutput() override
    {
        if (midi->getCurrentApi() == RtMidi::UNIX_JACK && !isJackServerRunning()) {
            keepForGood(std::move(midi));
        }
    }

    RtMidiOutput(const RtMidiOutput&) = delete;
    RtMidiOutput& operator=(const RtMidiOutput&) = delete;

    Result<> send(std::span<const std::uint8_t> bytes) override
    {
        try {
            midi->sendMessage(bytes.data(), bytes.size());
            return {};
        } catch (const std::exception& exception) {
            return failure(concat("MIDI could not be sent to \"", portName, "\": ", exception.what()));
        }
    }

    std::string name() const override { return portName; }

private:
    std::unique_ptr<RtMidiOut> midi;
    std::string portName;
};

} // namespace

MIDIServices MIDIServices::present()
{
    return {isMIDISequencerPresent(), isJackServerRunning()};
}

std::unique_ptr<MIDIPorts> makeMIDIPorts(MIDIServices services)
{
    return std::make_unique<RtMidiPorts>(services);
}

RtMidiPorts::RtMidiPorts(MIDIServices services)
{
    if (services.sequencer) {
        order.push_back(RtMidi::LINUX_ALSA);
    }
    if (services.jack) {
        order.push_back(RtMidi::UNIX_JACK);
    }
}

Result<std::unique_ptr<RtMidiOut>> RtMidiPorts::connect() const
{
    for (const RtMidi::Api api : order) {
        try {
            auto midi = std::make_unique<RtMidiOut>(api, clientName);
            midi->setErrorCallback(throwError);
            return midi;
        } catch (const std::exception&) {
            continue;
        }
    }
    return failure("There are no MIDI ports: neither the system's MIDI sequencer nor JACK answers.");
}

Result<std::vector<std::string>> RtMidiPorts::outputNames()
{
    const auto midi = connect();
    if (!midi) {
        return failure(midi.error());
    }
    try {
        return namesOf(**midi);
    } catch (const std::exception& exception) {
        return failure(concat("The MIDI ports could not be listed: ", exception.what()));
    }
}

Result<std::unique_ptr<MIDIOutput>> RtMidiPorts::openOutput(const std::string& name)
{
    auto midi = connect();
    if (!midi) {
        return failure(midi.error());
    }
    try {
        const std::vector<std::string> names = namesOf(**midi);
        const std::size_t index = find(names, name);
        if (index == names.size()) {
            return failure(concat("There is no MIDI port \"", name, "\"."));
        }
        (*midi)->openPort(static_cast<unsigned int>(index), clientName);
        return std::make_unique<RtMidiOutput>(*std::move(midi), names[index]);
    } catch (const std::exception& exception) {
        return failure(concat("The MIDI port \"", name, "\" could not be opened: ", exception.what()));
    }
}

Result<std::unique_ptr<MIDIOutput>> RtMidiPorts::openVirtualOutput(const std::string& name)
{
    auto midi = connect();
    if (!midi) {
        return failure(midi.error());
    }
    try {
        (*midi)->openVirtualPort(name);
        return std::make_unique<RtMidiOutput>(*std::move(midi), name);
    } catch (const std::exception& exception) {
        return failure(concat("The MIDI port \"", name, "\" could not be opened: ", exception.what()));
    }
}

} // namespace volvelle
