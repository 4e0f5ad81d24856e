#pragma once

#include "base/Result.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace volvelle {

// A way for MIDI messages out of the program; closed at the end of its life.
class MIDIOutput {
public:
    virtual ~MIDIOutput() = default;

    // Sends one whole message at once. [main, worker, sender]
    virtual Result<> send(std::span<const std::uint8_t> bytes) = 0;

    // The name of the port.
    virtual std::string name() const = 0;
};

// What takes the messages of an input.
class MIDIReceiver {
public:
    using Moment = std::chrono::steady_clock::time_point;

    virtual ~MIDIReceiver() = default;

    // Bytes that came in, and when: whole messages, or pieces of an exclusive. [render] One thread of the
    // input's.
    virtual void receive(Moment arrived, std::span<const std::uint8_t> bytes) noexcept = 0;
};

// A way for MIDI messages into the program; closed at the end of its life, and its receiver is called no more
// then. [main]
class MIDIInput {
public:
    virtual ~MIDIInput() = default;

    // True once nothing comes any more: the other program's port, the connection to it or the service behind
    // it has gone. A port that came back is not connected anew. Asks the service, which takes its time.
    virtual bool isLost() = 0;

    // The name of the port.
    virtual std::string name() const = 0;
};

// The MIDI ports of the system. No exception leaves it, and where the system has no MIDI at all each
// operation fails with one plain line. [main]
class MIDIPorts {
public:
    virtual ~MIDIPorts() = default;

    // The names of the ports of other programs and of devices that take messages.
    virtual Result<std::vector<std::string>> outputNames() = 0;

    // Opens the port of that name, else the first that has `name` in its own, whatever the case of the
    // letters from a to z. An empty name finds none.
    virtual Result<std::unique_ptr<MIDIOutput>> openOutput(const std::string& name) = 0;

    // Opens a port that other programs can connect to.
    virtual Result<std::unique_ptr<MIDIOutput>> openVirtualOutput(const std::string& name) = 0;

    // The same for messages that come in. Exclusives come through; clock, time code and active sensing may be
    // left out.
    virtual Result<std::vector<std::string>> inputNames() = 0;
    virtual Result<std::unique_ptr<MIDIInput>> openInput(const std::string& name,
                                                         std::shared_ptr<MIDIReceiver> receiver) = 0;
    virtual Result<std::unique_ptr<MIDIInput>> openVirtualInput(const std::string& name,
                                                                std::shared_ptr<MIDIReceiver> receiver) = 0;
};

// The services that may stand behind the ports, in the order of their use.
struct MIDIServices {
    bool sequencer = false; // the kernel's
    bool jack = false;

    // Those that answer now. Starts none.
    static MIDIServices present();
};

// The ports of these services.
std::unique_ptr<MIDIPorts> makeMIDIPorts(MIDIServices services = MIDIServices::present());

} // namespace volvelle
