#include "services/audiodevice/JackInput.h"

#include <algorithm>
#include <chrono>
#include <jack/midiport.h>
#include <utility>

namespace volvelle {

namespace {

// Clock, time code and active sensing.
bool isLeftOut(std::uint8_t status)
{
    return status == 0xF1 || status == 0xF8 || status == 0xFE;
}

} // namespace

JackInput::JackInput(std::shared_ptr<MIDIReceiver> receiver) : receiver(std::move(receiver)) {}

JackInput::~JackInput()
{
    if (client != nullptr) {
        jack_client_close(client);
    }
}

std::unique_ptr<JackInput> JackInput::connect(const char* clientName, std::shared_ptr<MIDIReceiver> receiver)
{
    std::unique_ptr<JackInput> input(new JackInput(std::move(receiver)));
    input->client = jack_client_open(clientName, JackNoStartServer, nullptr);
    return input->client == nullptr ? nullptr : std::move(input);
}

std::vector<std::string> JackInput::portNames() const
{
    std::vector<std::string> names;
    const char** const found = jack_get_ports(client, nullptr, JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput);
    for (const char** each = found; each != nullptr && *each != nullptr; ++each) {
        names.emplace_back(*each);
    }
    jack_free(static_cast<void*>(found));
    return names;
}

bool JackInput::hear(const std::string& otherPort)
{
    portName = otherPort;
    return begin(jack_get_client_name(client)) &&
           jack_connect(client, otherPort.c_str(), jack_port_name(port)) == 0;
}

bool JackInput::offer(const std::string& ownPort)
{
    portName = ownPort;
    isOffered = true;
    return begin(ownPort);
}

bool JackInput::begin(const std::string& ownPort)
{
    port = jack_port_register(client, ownPort.c_str(), JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
    if (port == nullptr) {
        return false;
    }
    last = std::chrono::steady_clock::now();
    jack_on_shutdown(client, noteEnd, this);
    return jack_set_process_callback(client, process, this) == 0 && jack_activate(client) == 0;
}

bool JackInput::isLost()
{
    return hasEnded || (!isOffered && jack_port_connected(port) == 0);
}

int JackInput::process(jack_nframes_t frames, void* input)
{
    auto& self = *static_cast<JackInput*>(input);
    const auto now = std::chrono::steady_clock::now();
    const double rate = jack_get_sample_rate(self.client);
    void* const buffer = jack_port_get_buffer(self.port, frames);
    const auto count = jack_midi_get_event_count(buffer);
    jack_midi_event_t event{};
    for (jack_nframes_t i = 0; i < count; ++i) {
        if (jack_midi_event_get(&event, buffer, i) == 0 && event.size > 0 && !isLeftOut(event.buffer[0])) {
            const std::chrono::duration<double> ago((frames - event.time) / rate);
            const auto arrived = now - std::chrono::duration_cast<MIDIReceiver::Moment::duration>(ago);
            self.last = std::max(self.last, arrived);
            self.receiver->receive(self.last, {event.buffer, event.size});
        }
    }
    return 0;
}

void JackInput::noteEnd(void* input)
{
    static_cast<JackInput*>(input)->hasEnded = true;
}

} // namespace volvelle
