#include "services/soundunits/MIDIPortUnit.h"

#include "base/Console.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr std::chrono::milliseconds look{1};

} // namespace

MIDIPortUnit::MIDIPortUnit(const AudioComponentDescription& description, std::unique_ptr<MIDIOutput> output)
    : AUAudioUnit(description), port(std::move(output)), queue(capacity)
{
    audioUnitName = "MIDI Port";
    takesMIDI = true;
    outputBusses = {{AVAudioFormat{}, "Output", true}};
    sender = std::thread([this] { sendAll(); });
}

MIDIPortUnit::~MIDIPortUnit()
{
    ended.store(true, std::memory_order_release);
    sender.join();
}

void MIDIPortUnit::sendAll()
{
    Message message;
    while (true) {
        const bool isEnd = ended.load(std::memory_order_acquire);
        while (queue.pop(message)) {
            while (!ended.load(std::memory_order_acquire) && std::chrono::steady_clock::now() < message.due) {
                std::this_thread::sleep_for(std::min<std::chrono::steady_clock::duration>(
                    look, message.due - std::chrono::steady_clock::now()));
            }
            send(message);
        }
        if (isEnd) {
            return;
        }
        std::this_thread::sleep_for(look);
    }
}

void MIDIPortUnit::send(const Message& message)
{
    std::string error;
    const std::span bytes(message.bytes, message.length);
    if (!port->send(bytes, error) && !lost.exchange(true)) {
        debugprint(error);
    }
}

void MIDIPortUnit::renderBlock(const float*, const float*, float* left, float* right, int frames,
                               std::span<const AUMIDIRenderEvent> events) noexcept
{
    std::fill_n(left, frames, 0.0F);
    std::fill_n(right, frames, 0.0F);
    const Moment now = std::chrono::steady_clock::now();
    const double rate = outputBusses.front().format.sampleRate;
    for (const AUMIDIRenderEvent& event : events) {
        if (event.length < 1 || event.length > 3) {
            continue;
        }
        Message message;
        message.due = now + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                                std::chrono::duration<double>(event.offset / rate));
        message.length = static_cast<std::uint8_t>(event.length);
        std::copy_n(event.bytes(), event.length, message.bytes);
        queue.push(message);
    }
}

} // namespace volvelle
