#include "services/soundunits/MIDIPortUnit.h"

#include "base/Console.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace volvelle {

namespace {

constexpr std::chrono::milliseconds look{1};

} // namespace

MIDIPortUnit::MIDIPortUnit(const AudioComponentDescription& description, std::unique_ptr<MIDIOutput> output)
    : AUAudioUnit(description), port(std::move(output))
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
    Moment due;
    std::vector<std::uint8_t> message;
    while (true) {
        const bool isEnd = ended.load(std::memory_order_acquire);
        while (queue.pop(due, message)) {
            waitUntil(due);
            message.empty() ? endAll() : send(message);
        }
        if (isEnd) {
            return endAll();
        }
        std::this_thread::sleep_for(look);
    }
}

void MIDIPortUnit::waitUntil(Moment due) const
{
    Moment now = std::chrono::steady_clock::now();
    while (now < due && !ended.load(std::memory_order_acquire)) {
        std::this_thread::sleep_for(std::min<Moment::duration>(look, due - now));
        now = std::chrono::steady_clock::now();
    }
}

void MIDIPortUnit::send(std::span<const std::uint8_t> message)
{
    std::string error;
    sounds.apply(message);
    if (!port->send(message, error) && !lost.exchange(true)) {
        debugprint(error);
    }
}

void MIDIPortUnit::endAll()
{
    PortSounds ending = sounds;
    ending.end([this](std::span<const std::uint8_t> message) { send(message); });
}

void MIDIPortUnit::reset() noexcept
{
    queue.pushEnd(std::chrono::steady_clock::now());
}

void MIDIPortUnit::renderBlock(const float*, const float*, float* left, float* right, int frames,
                               std::span<const AUMIDIRenderEvent> events) noexcept
{
    std::fill_n(left, frames, 0.0F);
    std::fill_n(right, frames, 0.0F);
    const Moment now = std::chrono::steady_clock::now();
    const double rate = outputBusses.front().format.sampleRate;
    for (const AUMIDIRenderEvent& event : events) {
        const std::chrono::duration<double> wait(event.offset / rate);
        queue.push(now + std::chrono::duration_cast<Moment::duration>(wait),
                   {event.bytes(), static_cast<std::size_t>(event.length)});
    }
}

} // namespace volvelle
