#pragma once

#include "services/audiodevice/MIDIPorts.h"

#include <atomic>
#include <jack/jack.h>
#include <memory>
#include <string>
#include <vector>

namespace volvelle {

// An input through JACK, with one client for all its life: it hears one port, or others connect to it. A port
// that went away and came back is lost, since nothing connects the two anew. What comes in a period came in
// the one before it, each message at its frame. [main]
class JackInput : public MIDIInput {
public:
    // Null where no JACK server answers. Starts none.
    static std::unique_ptr<JackInput> connect(const char* clientName, std::shared_ptr<MIDIReceiver> receiver);

    ~JackInput() override;
    JackInput(const JackInput&) = delete;
    JackInput& operator=(const JackInput&) = delete;

    // The names of the ports that it can hear.
    std::vector<std::string> portNames() const;

    // Hears the port of that name, or offers one of that name; one of the two, and once. False where JACK
    // refuses it.
    bool hear(const std::string& port);
    bool offer(const std::string& port);

    bool isLost() override;

    std::string name() const override { return portName; }

private:
    explicit JackInput(std::shared_ptr<MIDIReceiver> receiver);

    bool begin(const std::string& ownPort);
    static int process(jack_nframes_t frames, void* input); // [render]
    static void noteEnd(void* input);                       // [render]

    std::shared_ptr<MIDIReceiver> receiver;
    jack_client_t* client = nullptr;
    jack_port_t* port = nullptr; // JACK's, and null while it hears nothing
    std::string portName;
    bool isOffered = false;
    MIDIReceiver::Moment last;         // no message comes before the one before it
    std::atomic<bool> hasEnded{false}; // the server
};

} // namespace volvelle
