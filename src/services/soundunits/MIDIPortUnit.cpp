#include "services/soundunits/MIDIPortUnit.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace volvelle {

MIDIPortUnit::MIDIPortUnit(const AudioComponentDescription& description, std::unique_ptr<MIDIOutput> port)
    : AUAudioUnit(description), sender(PortSender::make(std::move(port)))
{
    audioUnitName = "MIDI Port";
    takesMIDI = true;
    outputBusses = {{AVAudioFormat{}, "Output", true}};
}

MIDIPortUnit::~MIDIPortUnit()
{
    sender->end();
}

void MIDIPortUnit::engineStopped()
{
    AUAudioUnit::engineStopped();
    sender->endSounds();
}

void MIDIPortUnit::reset() noexcept
{
    sender->queue.pushEnd(std::chrono::steady_clock::now());
}

void MIDIPortUnit::renderBlock(const float*, const float*, float* left, float* right, int frames,
                               std::span<const TimedMessage> events) noexcept
{
    std::fill_n(left, frames, 0.0F);
    std::fill_n(right, frames, 0.0F);
    const PortQueue::Moment now = std::chrono::steady_clock::now();
    const double rate = outputBusses.front().format.sampleRate;
    for (const TimedMessage& event : events) {
        const std::chrono::duration<double> wait(event.offset / rate);
        sender->queue.push(now + std::chrono::duration_cast<PortQueue::Moment::duration>(wait),
                           event.bytes());
    }
}

} // namespace volvelle
