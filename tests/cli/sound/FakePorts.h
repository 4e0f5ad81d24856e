#pragma once

#include "base/Clock.h"
#include "base/RunLoop.h"
#include "services/audiodevice/MIDIPorts.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace volvelle::test {

// A clock that moves on whenever it is read, with the main run loop on it for its lifetime.
class SteppingClock : public Clock {
public:
    static constexpr double step = 1.0 / 32.0; // seconds

    SteppingClock() { setMainRunLoopClock(this); }

    ~SteppingClock() override { setMainRunLoopClock(nullptr); }

    SteppingClock(const SteppingClock&) = delete;
    SteppingClock& operator=(const SteppingClock&) = delete;

    double now() const override { return seconds += step; }

    // The moment of the next reading.
    MIDIReceiver::Moment next() const { return MIDIReceiver::Moment(duration(seconds + step)); }

    static MIDIReceiver::Moment::duration duration(double inSeconds)
    {
        return std::chrono::round<MIDIReceiver::Moment::duration>(std::chrono::duration<double>(inSeconds));
    }

private:
    mutable double seconds = 1000.0;
};

// Ports of which one can be heard. What comes there is written before it is opened.
class FakePorts : public MIDIPorts {
public:
    struct Message {
        double seconds = 0.0; // from the beginning of the recording on
        std::vector<std::uint8_t> bytes;
    };

    explicit FakePorts(const SteppingClock& given) : clock(given) {}

    std::vector<Message> messages;
    std::vector<Message> lastMessages;    // come while the port is closed
    bool isLost = false;                  // what the input answers
    std::function<void()> onOpen = [] {}; // called when all has come
    int opened = 0;
    int closed = 0;

    Result<std::vector<std::string>> outputNames() override { return failure("No outputs."); }

    Result<std::unique_ptr<MIDIOutput>> openOutput(const std::string& /*name*/) override
    {
        return failure("No outputs.");
    }

    Result<std::unique_ptr<MIDIOutput>> openVirtualOutput(const std::string& /*name*/) override
    {
        return failure("No outputs.");
    }

    Result<std::vector<std::string>> inputNames() override
    {
        return std::vector<std::string>{"A:one", "B:two"};
    }

    Result<std::unique_ptr<MIDIInput>> openInput(const std::string& name,
                                                 std::shared_ptr<MIDIReceiver> receiver) override
    {
        if (name != "keys") {
            return failure("There is no such port.");
        }
        auto input = std::make_unique<Input>(*this, *receiver);
        input->send(messages);
        ++opened;
        onOpen();
        return input;
    }

    Result<std::unique_ptr<MIDIInput>> openVirtualInput(const std::string& name,
                                                        std::shared_ptr<MIDIReceiver> receiver) override
    {
        return openInput(name, std::move(receiver));
    }

private:
    class Input : public MIDIInput {
    public:
        Input(FakePorts& given, MIDIReceiver& to) : ports(given), receiver(to), start(ports.clock.next()) {}

        ~Input() override
        {
            send(ports.lastMessages);
            ++ports.closed;
        }

        Input(const Input&) = delete;
        Input& operator=(const Input&) = delete;

        bool isLost() override { return ports.isLost; }

        std::string name() const override { return "Fake:keys"; }

        void send(const std::vector<Message>& sent)
        {
            for (const Message& message : sent) {
                receiver.receive(start + SteppingClock::duration(message.seconds), message.bytes);
            }
        }

    private:
        FakePorts& ports;
        MIDIReceiver& receiver;
        const MIDIReceiver::Moment start;
    };

    const SteppingClock& clock;
};

} // namespace volvelle::test
