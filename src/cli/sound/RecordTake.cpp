#include "cli/sound/RecordTake.h"

#include "cli/sound/TakeRecorder.h"
#include "sequence/SequenceFileBytes.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>

namespace volvelle {

void RecordTake::begin(Moment at)
{
    start = at;
    recorder.start(0);
}

void RecordTake::collect(Moment until)
{
    Moment arrived;
    std::vector<std::uint8_t> message;
    while (inbox->take(arrived, message)) {
        if (arrived <= until && add(positionOf(arrived), message)) {
            ++count;
        }
    }
}

void RecordTake::end(Moment at)
{
    collect(at);
    HeldSounds open = sounds;
    open.end([this, at](const ShortMessage& message) { add(positionOf(at), message); });
}

std::vector<int> RecordTake::keys() const
{
    std::vector<int> result;
    for (int key = 0; key < 128; ++key) {
        for (int channel = 0; channel < channelCount; ++channel) {
            if (sounds.times(channel, key) > 0) {
                result.push_back(key);
                break;
            }
        }
    }
    return result;
}

Result<std::vector<std::uint8_t>> RecordTake::file()
{
    std::vector<std::uint8_t> bytes;
    const auto written = std::make_shared<TakeRecorder>();
    const bool isWhole = recorder.writeDown(written) && written->status == noErr &&
                         sequenceFileBytes(written->getMusicSequence(), bytes) == noErr && !bytes.empty();
    if (!isWhole) {
        return failure("The recording could not be turned into a MIDI file.");
    }
    return bytes;
}

std::int64_t RecordTake::positionOf(Moment moment) const
{
    constexpr double samplesPerSecond = 48000.0;
    const std::chrono::duration<double> since = std::max(moment, start) - start;
    return std::llround(since.count() * samplesPerSecond);
}

bool RecordTake::add(std::int64_t position, std::span<const std::uint8_t> message)
{
    const bool isExclusive = message[0] == STATUS_SYSEX;
    AUMIDIEventEx event(isExclusive ? AURenderEventMIDISysEx : AURenderEventMIDI, message.data(),
                        static_cast<std::uint32_t>(message.size()), position);
    if (recorder.filterGhostNotes(event)) {
        return false;
    }
    event.pEvent()->eventSampleTime = placeOf(event.event(), position);
    sounds.apply(message);
    recorder.record(event);
    return true;
}

// An end comes a tick after its beginning at least: a note without length would be lost. The recorder knows
// no message that ends all notes.
std::int64_t RecordTake::placeOf(const AUMIDIEvent& event, std::int64_t position)
{
    const int channel = channelOf(event.data[0]);
    const std::uint8_t kind = kindOf(event.data[0]);
    const std::uint8_t number = event.data[1] & 0x7F;
    std::int64_t& last = starts[static_cast<std::size_t>(channel)][number];
    if (kind == STATUS_NOTEON && event.data[2] > 0) {
        last = position;
    } else if (kind == STATUS_NOTEON || kind == STATUS_NOTEOFF) {
        return sounds.times(channel, number) > 0 ? std::max(position, last + shortestNote) : position;
    } else if (kind == STATUS_CONTROLLER &&
               (number == CONTROLLER_ALL_SOUND_OFF || number == CONTROLLER_NOTES_OFF)) {
        endNotes(position, channel);
    }
    return position;
}

void RecordTake::endNotes(std::int64_t position, int channel)
{
    for (int key = 0; key < 128; ++key) {
        for (int times = sounds.times(channel, key); times > 0; --times) {
            add(position, ShortMessage{statusOf(STATUS_NOTEOFF, channel), static_cast<std::uint8_t>(key), 0});
        }
    }
}

} // namespace volvelle
