#include "MIDISequences/realtime/AUMIDISequencer.h"
#include "MIDISequences/realtime/AUMIDISequencerHold.h"
#include "MIDISequences/realtime/AUMIDISequencerLine.h"
#include "MIDISequences/realtime/AUMIDISequencerRenderScope.h"
#include "base/Checked.h"
#include "wire/MIDIConstants.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace volvelle {

namespace {

constexpr std::uint8_t channelBits = 0x0F;
constexpr std::uint8_t kindBits = 0xF0;
constexpr double usualTempo = 120.0; // beats a minute at a tempo of 1

bool contains(const std::vector<std::uint8_t>& values, unsigned value)
{
    return std::ranges::find(values, value) != values.end();
}

} // namespace

AURenderEvent* AUMIDISequencer::process(std::int64_t time, int frameCount)
{
    const AUMIDISequencerRenderScope scope;
    cleanupCount = 0;
    Told told;
    AURenderEvent* result = nullptr;
    {
        const AUMIDISequencerHold hold(owner, AUMIDISequencerHold::Once::yes);
        if (!hold) {
            return nullptr;
        }
        deallocateRealtimeEventListHead();
        result = cycle(time, frameCount, told);
        lastResult = result;
    }
    tell(told);
    return result;
}

void AUMIDISequencer::deallocateRealtimeEventListHead()
{
    releaseRenderEvents(std::exchange(lastResult, nullptr));
}

AURenderEvent* AUMIDISequencer::cycle(std::int64_t time, int frameCount, Told& told)
{
    const double tempo = tempoFactor * tempoRate;
    currentFrames = frameCount;
    currentSampleTime = time;
    const std::size_t waiting = realtimeEvents.size();
    if (list().size() == 0 && waiting == 0) {
        return nullptr;
    }
    RenderEventChain chain;
    endRunningNotes(chain, waiting > 0);
    sendWaiting(chain, time, waiting);
    if (!stopped && suspendTime < time) {
        playFile(chain, frameCount, tempo, told);
    }
    return chain.head;
}

void AUMIDISequencer::endRunningNotes(RenderEventChain& chain, bool isSent)
{
    const bool isSeeking = seeking.exchange(false) || isSent;
    if ((!stopped && !isSeeking) || runningNotes.empty()) {
        return;
    }
    for (const auto& note : runningNotes) {
        chain.append(AUMIDISequencerList::recordOf(*note), note->data()).data[2] = 0;
        ++cleanupCount;
    }
    clearWithoutQueue();
}

void AUMIDISequencer::sendWaiting(RenderEventChain& chain, std::int64_t time, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        AURenderEvent* const record = realtimeEvents.pop();
        if (record == nullptr) {
            return;
        }
        chain.append(record).eventSampleTime = checkedAdd(time, static_cast<std::int64_t>(i));
    }
}

void AUMIDISequencer::playFile(RenderEventChain& chain, int frameCount, double tempo, Told& told)
{
    const AUMIDISequencerList& events = list();
    sequencerPosition =
        std::max<std::int64_t>(0, checkedSubtract<std::int64_t>(currentSampleTime, sequencerStartTime));
    const auto frames = checkedCast<std::int64_t>(static_cast<double>(frameCount) * tempo);
    const auto frameEnd = checkedAdd<std::int64_t>(sequencerPositionV, frames);
    for (auto index = static_cast<std::size_t>(currentEventIndex.load()); index < events.size(); ++index) {
        currentEventIndex.store(static_cast<int>(index), std::memory_order_relaxed);
        if (frameEnd < events.stamp(index)) {
            break;
        }
        if (play(chain, index, tempo) && index + 1 == events.size()) {
            endOfFile(told);
            loadPending(told);
            return;
        }
    }
    sequencerPositionV = frameEnd;
}

bool AUMIDISequencer::play(RenderEventChain& chain, std::size_t index, double tempo)
{
    const std::shared_ptr<AUMIDIEventEx>& event = list()[index];
    AUMIDIEvent record = list().record(index);
    const auto distance = checkedSubtract<std::int64_t>(record.eventSampleTime, sequencerPositionV);
    const auto offset = checkedCast<std::int64_t>(static_cast<double>(distance) * (1.0 / tempo));
    record.eventSampleTime = checkedAdd<std::int64_t>(currentSampleTime, offset);
    const std::uint8_t status = record.data[0];
    if (status == STATUS_META) {
        specialEvents.pushOverOldest(record, event->data());
    }
    if (status >= STATUS_NOTEOFF && status != STATUS_SYSEX && isFiltered(status)) {
        return false;
    }
    const auto stamp = stampWithin(record.eventSampleTime, record, tempo);
    if (!stamp) {
        return false;
    }
    record.eventSampleTime = *stamp;
    trackAsLoaded(event, record);
    chain.append(record, event->data()).data[0] = status;
    return true;
}

bool AUMIDISequencer::isFiltered(std::uint8_t status) const
{
    return !contains(channelFilter, status & channelBits) || contains(statusFilter, status & kindBits);
}

std::optional<std::int64_t> AUMIDISequencer::stampWithin(std::int64_t frameTime, const AUMIDIEvent& record,
                                                         double tempo)
{
    const std::int64_t min = currentSampleTime;
    const std::int64_t max = checkedAdd<std::int64_t>(min, currentFrames);
    if (frameTime >= min && frameTime <= max) {
        return frameTime;
    }
    const bool isFuture = frameTime > max;
    using Line = AUMIDISequencerLine;
    Line::print("sequencer position: ", sequencerPosition.load());
    Line::print("AUMIDISequencer::WARNING: A MIDI events is out of the timeframe (in the ",
                isFuture ? "future) and will be scheduled earlier." : "past) and will be scheduled now.");
    Line::print("expected frame time: ", frameTime);
    Line::print(isFuture ? "allowed frame max: " : "allowed frame min: ", isFuture ? max : min);
    Line::print("current: ", min, isFuture ? " (+" : " (", checkedSubtract(frameTime, max), ")");
    Line::print("tempo factor: ", tempo, " (", tempo * usualTempo, ") bpm");
    if (isFuture) {
        return max;
    }
    return isNote(record) ? std::nullopt : std::optional(immediateTime);
}

void AUMIDISequencer::endOfFile(Told& told)
{
    told.listener = delegate;
    if (!isLooping) {
        stopHeld();
        told.isComplete = true;
        return;
    }
    rewindHeld();
    told.loop = ++loopCount;
    sequencerStartTime = checkedAdd<std::int64_t>(sequencerStartTime, durationInSamples);
}

void AUMIDISequencer::loadPending(Told& told)
{
    if (!told.loop || !isLoadPending) {
        return;
    }
    if (!isMultiChannel) {
        prepared->setChannel(currentChannel);
    }
    useListHeld(std::move(prepared));
    told.isLoaded = true;
}

void AUMIDISequencer::trackAsLoaded(const std::shared_ptr<AUMIDIEventEx>& event, const AUMIDIEvent& record)
{
    if (event->pEvent()->data[0] == record.data[0]) {
        trackEvents(event);
    }
}

const std::vector<AUMIDIEvent>& AUMIDISequencer::processInternal(std::int64_t time, int frameCount)
{
    const AUMIDISequencerRenderScope scope;
    internalEvents.clear();
    Told told;
    {
        const AUMIDISequencerHold hold(owner, AUMIDISequencerHold::Once::yes);
        if (!hold) {
            return internalEvents;
        }
        currentFrames = frameCount;
        currentSampleTime = time;
        if (!isEmpty() && !stopped) {
            collectDue(time, frameCount, told);
        }
    }
    tell(told);
    return internalEvents;
}

void AUMIDISequencer::collectDue(std::int64_t time, int frameCount, Told& told)
{
    const AUMIDISequencerList& events = list();
    sequencerPosition = std::max<std::int64_t>(0, checkedSubtract<std::int64_t>(time, sequencerStartTime));
    const auto end = checkedAdd<std::int64_t>(sequencerPosition, frameCount);
    for (auto index = static_cast<std::size_t>(currentEventIndex.load()); index < events.size(); ++index) {
        currentEventIndex.store(static_cast<int>(index), std::memory_order_relaxed);
        if (events.stamp(index) >= end) {
            return;
        }
        AUMIDIEvent record = events.record(index);
        if (!contains(channelFilter, record.data[0] & channelBits)) {
            continue;
        }
        if (index + 1 == events.size()) {
            endOfFile(told);
        }
        record.eventSampleTime = checkedAdd<std::int64_t>(sequencerStartTime, record.eventSampleTime);
        record.length = std::min<std::uint16_t>(record.length, sizeof record.data);
        record.next = nullptr;
        internalEvents.push_back(record);
        trackAsLoaded(events[index], record);
    }
}

} // namespace volvelle
