#include "services/audiodevice/RtMidiPorts.h"

#include "base/Text.h"
#include "services/audiodevice/JackInput.h"
#include "services/audiodevice/RtMidiConnection.h"
#include "services/audiodevice/RtMidiInput.h"
#include "services/audiodevice/SoundServers.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>
#include <vector>

namespace volvelle {

namespace {

constexpr const char* clientName = "Volvelle";

// JACK takes a connection into its graph some cycles after it is asked for; what is sent before is lost.
constexpr auto jackSettling = std::chrono::milliseconds(100);

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

// The index of the port asked for, or that of the end. Each name holds an empty one, which finds none.
std::size_t find(const std::vector<std::string>& names, const std::string& wanted)
{
    if (wanted.empty()) {
        return names.size();
    }
    const auto exact = std::find(names.begin(), names.end(), wanted);
    const auto partial = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
        return lowered(name).find(lowered(wanted)) != std::string::npos;
    });
    return static_cast<std::size_t>((exact != names.end() ? exact : partial) - names.begin());
}

std::string refusal(const std::string& name, const std::string& reason)
{
    return concat("The MIDI port \"", name, "\" could not be opened: ", reason);
}

std::string absence(const std::string& name)
{
    return concat("There is no MIDI port \"", name, "\".");
}

// Opens the port asked for, or one of that name for others, and gives its name.
Result<std::string> open(const std::string& name, bool isVirtual, RtMidi& midi)
{
    try {
        if (isVirtual) {
            midi.openVirtualPort(name);
            return name;
        }
        const std::vector<std::string> names = portNames(midi);
        const std::size_t index = find(names, name);
        if (index == names.size()) {
            return failure(absence(name));
        }
        midi.openPort(static_cast<unsigned int>(index), clientName);
        return names[index];
    } catch (const std::exception& exception) {
        return failure(refusal(name, exception.what()));
    }
}

Result<std::unique_ptr<MIDIInput>> open(const std::string& name, bool isVirtual,
                                        std::unique_ptr<RtMidiInput> input)
{
    auto port = open(name, isVirtual, *input->midi);
    if (!port) {
        return failure(std::move(port).error());
    }
    input->portName = *std::move(port);
    input->isVirtual = isVirtual;
    return input;
}

Result<std::unique_ptr<MIDIInput>> open(const std::string& name, bool isVirtual,
                                        std::unique_ptr<JackInput> input)
{
    const std::vector<std::string> names = input->portNames();
    const std::size_t index = isVirtual ? 0 : find(names, name);
    if (!isVirtual && index == names.size()) {
        return failure(absence(name));
    }
    if (isVirtual ? input->offer(name) : input->hear(names[index])) {
        return input;
    }
    return failure(refusal(name, "JACK refuses it."));
}

constexpr const char* noService =
    "There are no MIDI ports: neither the system's MIDI sequencer nor JACK answers.";

// Null where the service does not answer.
template <class Midi>
std::unique_ptr<Midi> connectTo(RtMidi::Api api)
{
    try {
        auto midi = std::make_unique<Midi>(api, clientName);
        midi->setErrorCallback(throwError);
        return midi;
    } catch (const std::exception&) {
        return nullptr;
    }
}

class RtMidiOutput : public MIDIOutput {
public:
    RtMidiOutput(std::unique_ptr<RtMidiOut> midi, std::string name)
        : midi(std::move(midi)), portName(std::move(name))
    {
    }

    ~RtMidiOutput() override { endConnection(std::move(midi)); }

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

template <class Midi>
Result<std::unique_ptr<Midi>> RtMidiPorts::connect() const
{
    for (const RtMidi::Api api : order) {
        if (auto midi = connectTo<Midi>(api)) {
            return midi;
        }
    }
    return failure(noService);
}

template <class Midi>
Result<std::vector<std::string>> RtMidiPorts::names() const
{
    const auto midi = connect<Midi>();
    if (!midi) {
        return failure(midi.error());
    }
    try {
        return portNames(**midi);
    } catch (const std::exception& exception) {
        return failure(concat("The MIDI ports could not be listed: ", exception.what()));
    }
}

Result<std::vector<std::string>> RtMidiPorts::outputNames()
{
    return names<RtMidiOut>();
}

Result<std::vector<std::string>> RtMidiPorts::inputNames()
{
    return names<RtMidiIn>();
}

Result<std::unique_ptr<MIDIOutput>> RtMidiPorts::openOutput(const std::string& name)
{
    return outputTo(name, false);
}

Result<std::unique_ptr<MIDIOutput>> RtMidiPorts::openVirtualOutput(const std::string& name)
{
    return outputTo(name, true);
}

Result<std::unique_ptr<MIDIInput>> RtMidiPorts::openInput(const std::string& name,
                                                          std::shared_ptr<MIDIReceiver> receiver)
{
    return inputFrom(name, std::move(receiver), false);
}

Result<std::unique_ptr<MIDIInput>> RtMidiPorts::openVirtualInput(const std::string& name,
                                                                 std::shared_ptr<MIDIReceiver> receiver)
{
    return inputFrom(name, std::move(receiver), true);
}

Result<std::unique_ptr<MIDIOutput>> RtMidiPorts::outputTo(const std::string& name, bool isVirtual) const
{
    auto midi = connect<RtMidiOut>();
    if (!midi) {
        return failure(midi.error());
    }
    auto port = open(name, isVirtual, **midi);
    if (!port) {
        return failure(std::move(port).error());
    }
    if (!isVirtual && (*midi)->getCurrentApi() == RtMidi::UNIX_JACK) {
        std::this_thread::sleep_for(jackSettling);
    }
    return std::make_unique<RtMidiOutput>(*std::move(midi), *std::move(port));
}

Result<std::unique_ptr<MIDIInput>>
RtMidiPorts::inputFrom(const std::string& name, std::shared_ptr<MIDIReceiver> receiver, bool isVirtual) const
{
    for (const RtMidi::Api api : order) {
        if (api != RtMidi::UNIX_JACK) {
            if (auto midi = connectTo<RtMidiIn>(api)) {
                return open(name, isVirtual,
                            std::make_unique<RtMidiInput>(std::move(midi), std::move(receiver)));
            }
        } else if (auto input = JackInput::connect(clientName, receiver)) {
            return open(name, isVirtual, std::move(input));
        }
    }
    return failure(noService);
}

} // namespace volvelle
