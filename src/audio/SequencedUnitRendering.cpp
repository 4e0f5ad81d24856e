#include "MIDISequences/RenderEventPool.h"
#include "MIDISequences/realtime/AUMIDISequencerHold.h"
#include "MIDISequences/realtime/AUMIDISequencerRenderScope.h"
#include "MIDISequences/realtime/RenderEventStamps.h"
#include "audio/SequencedUnit.h"
#include "base/realtime/AudioSource.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace volvelle {

namespace {

// By which so many frames take just so many samples.
double rateFor(std::int64_t samples, int frames)
{
    const double rate = static_cast<double>(samples) / frames;
    const bool isShort = frames * rate < static_cast<double>(samples);
    return isShort ? std::nextafter(rate, std::numeric_limits<double>::infinity()) : rate;
}

// Of a channel message the bytes that it has on the wire, a whole exclusive, and nothing of all else: meta
// events and the empty places of the list.
std::span<const std::uint8_t> forInstrument(const AUMIDIEvent& record)
{
    const std::span bytes(renderEventBytes(record), record.length);
    if (bytes.empty()) {
        return {};
    }
    if (isChannelStatus(bytes.front())) {
        const auto length = static_cast<std::size_t>(shortMessageLength(bytes.front()));
        return bytes.size() < length ? std::span<const std::uint8_t>() : bytes.first(length);
    }
    const bool isExclusive = bytes.front() == STATUS_SYSEX && bytes.back() == STATUS_EOX;
    return isExclusive ? bytes : std::span<const std::uint8_t>();
}

} // namespace

void SequencedUnit::reset() noexcept
{
    instrument->beginAnew();
}

void SequencedUnit::renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right,
                                int frames, std::span<const TimedMessage> events) noexcept
{
    if (wasStopped.exchange(false)) {
        instrument->beginAnew();
    }
    for (const TimedMessage& event : events) {
        sendAt(event.offset, event.cable, event.bytes());
    }
    playFile(frames);
    instrument->render(inputLeft, inputRight, left, right, frames);
}

void SequencedUnit::playFile(int frames) noexcept
{
    const AUMIDISequencerRenderScope scope;
    const AUMIDISequencerHold hold(busy, AUMIDISequencerHold::Once::yes);
    int done = 0;
    while (hold && done < frames) {
        done += playStep(done, frames - done);
    }
}

int SequencedUnit::playStep(int place, int frames) noexcept
{
    const bool wasPlaying = sequencer.isPlaying();
    const bool isLead = time == 0; // plays nothing of the file
    const FileStep step = wasPlaying && !isLead ? tempo.step(fileFrames, frames) : FileStep{frames, 0};
    const std::int64_t before = sequencer.getCurrentPositionInSamples();
    const std::int64_t samples = std::max<std::int64_t>(0, step.sample - before);
    sequencer.setRate(rateFor(samples, step.frames));
    schedule(sequencer.process(time, step.frames), place, step.frames);
    const bool hasMoved = sequencer.getCurrentPositionInSamples() != before || (samples == 0 && !isLead);
    if (wasPlaying) {
        noteEnd(hasMoved);
        fileFrames += hasMoved ? step.frames : 0;
    }
    time += step.frames;
    return step.frames;
}

// A list whose last event was left out does not end by itself.
void SequencedUnit::noteEnd(bool hasMoved) noexcept
{
    if (sequencer.isPlaying()) {
        if (!hasMoved || sequencer.getCurrentPositionInSamples() < sequencer.getDurationInSamples()) {
            return;
        }
        if (!sequencer.stopAtOnce()) {
            return; // the next block tries again
        }
    }
    liftPedals();
    ended.store(true, std::memory_order_release);
}

void SequencedUnit::schedule(AURenderEvent* chain, int place, int frames) noexcept
{
    stampInOrder(chain, sequencer.cleanupCount, time, frames);
    for (const AURenderEvent* record = chain; record != nullptr; record = record->head.next) {
        send(record->MIDI, place + record->head.eventSampleTime - time);
    }
}

void SequencedUnit::send(const AUMIDIEvent& record, std::int64_t offset) noexcept
{
    if (const auto bytes = forInstrument(record); !bytes.empty()) {
        sendAt(offset, 0, bytes);
        notePedal(bytes);
    }
}

// `offset` in frames of the unit.
void SequencedUnit::sendAt(std::int64_t offset, std::uint8_t cable,
                           std::span<const std::uint8_t> bytes) noexcept
{
    const double place = static_cast<double>(offset) * AudioSource::sampleRate / rate();
    std::ignore = instrument->scheduleMIDIEventAt(place, cable, static_cast<int>(bytes.size()), bytes.data());
}

void SequencedUnit::notePedal(std::span<const std::uint8_t> bytes) noexcept
{
    if (kindOf(bytes.front()) != STATUS_CONTROLLER) {
        return;
    }
    auto& values = pedals[static_cast<std::size_t>(channelOf(bytes.front()))];
    for (std::size_t i = 0; i < holdPedals.size(); ++i) {
        if (bytes[1] == holdPedals[i]) {
            values[i] = bytes[2];
        } else if (bytes[1] == CONTROLLER_RESET_CONTROLLERS) {
            values[i] = 0;
        }
    }
}

} // namespace volvelle
