#include "MIDISequences/realtime/AUMIDIMonitor.h"

#include "MIDISequences/realtime/RenderEventList.h"
#include "wire/MIDIConstants.h"

#include <algorithm>

namespace volvelle {

namespace {

// The status with its channel, from `first` up to below `end`.
bool isWithin(const AUMIDIEvent& event, std::uint8_t first, std::uint8_t end)
{
    return event.data[0] >= first && event.data[0] < end;
}

} // namespace

AUMIDIMonitor::AUMIDIMonitor()
{
    inputList.reserve(MAXEVENTS);
    runningNotes.reserve(maximumRunningNotes);
    AUMIDIMonitor::reset();
}

void AUMIDIMonitor::reset()
{
    queue.sync([this] { clear(); });
}

void AUMIDIMonitor::addMonitoring(const AUMIDIEventEx& event)
{
    const AUMIDIEvent record = event.event();
    const int size = queue.sync([&] {
        dropWhatWasCleared();
        inputList.push_back(std::make_shared<AUMIDIEventEx>(record.eventType, event.data(), event.length(),
                                                            record.eventSampleTime));
        trackEvents(inputList.back());
        return static_cast<int>(inputList.size());
    });
    if (autoClear && size > MAXEVENTS) {
        clearMonitoring();
    }
}

int AUMIDIMonitor::getSize() const
{
    return queue.sync([this] { return isInputCleared ? 0 : static_cast<int>(inputList.size()); });
}

std::vector<std::shared_ptr<AUMIDIEventEx>> AUMIDIMonitor::getEvents() const
{
    return queue.sync([this] { return isInputCleared ? decltype(inputList){} : inputList; });
}

std::shared_ptr<AUMIDIEventEx> AUMIDIMonitor::popMonitoring()
{
    return queue.sync([this]() -> std::shared_ptr<AUMIDIEventEx> {
        dropWhatWasCleared();
        if (inputList.empty()) {
            return nullptr;
        }
        const std::shared_ptr<AUMIDIEventEx> first = inputList.front();
        inputList.erase(inputList.begin());
        return first;
    });
}

void AUMIDIMonitor::clearMonitoring()
{
    queue.sync([this] { clear(); });
}

void AUMIDIMonitor::sort()
{
    queue.sync([this] {
        dropWhatWasCleared();
        std::ranges::stable_sort(inputList, {}, [](const std::shared_ptr<AUMIDIEventEx>& event) {
            return event->event().eventSampleTime;
        });
    });
}

int AUMIDIMonitor::getRunningNotesCount() const
{
    return queue.sync([this] { return static_cast<int>(runningNotes.size()); });
}

std::vector<std::shared_ptr<AUMIDIEventEx>> AUMIDIMonitor::getRunningNotes() const
{
    return queue.sync([this] { return runningNotes; });
}

bool AUMIDIMonitor::isNoteOn(const AUMIDIEvent& event)
{
    return isWithin(event, STATUS_NOTEON, STATUS_CONTROLLER) && event.data[2] > 0;
}

bool AUMIDIMonitor::isNoteOff(const AUMIDIEvent& event)
{
    return isWithin(event, STATUS_NOTEOFF, STATUS_NOTEON) ||
           (isWithin(event, STATUS_NOTEON, STATUS_CONTROLLER) && event.data[2] == 0);
}

bool AUMIDIMonitor::isNote(const AUMIDIEvent& event)
{
    return isWithin(event, STATUS_NOTEOFF, STATUS_CONTROLLER);
}

bool AUMIDIMonitor::isController(const AUMIDIEvent& event)
{
    return isWithin(event, STATUS_CONTROLLER, STATUS_PPRESSURE);
}

bool AUMIDIMonitor::isController(const AUMIDIEvent& event, std::uint8_t controller)
{
    return isController(event) && event.data[1] == controller;
}

bool AUMIDIMonitor::isNoteOn(const AUMIDIEventEx& event)
{
    return isNoteOn(event.event());
}

bool AUMIDIMonitor::isNoteOff(const AUMIDIEventEx& event)
{
    return isNoteOff(event.event());
}

bool AUMIDIMonitor::isNote(const AUMIDIEventEx& event)
{
    return isNote(event.event());
}

bool AUMIDIMonitor::isController(const AUMIDIEventEx& event)
{
    return isController(event.event());
}

bool AUMIDIMonitor::isController(const AUMIDIEventEx& event, std::uint8_t controller)
{
    return isController(event.event(), controller);
}

void AUMIDIMonitor::trackEvents(const std::shared_ptr<AUMIDIEventEx>& event)
{
    const AUMIDIEvent record = event->event();
    const std::uint8_t channel = channelOf(record);
    if (isController(*event, CONTROLLER_SUSTAIN)) {
        isSustained[channel] = record.data[2] > 0;
        if (!isSustained[channel]) {
            liftPedal(channel);
        }
    } else if (isSustained[channel]) {
        if (isNote(*event)) {
            addNote(event);
        }
    } else if (isNoteOn(*event)) {
        addNote(event);
    } else if (isNoteOff(*event)) {
        removeNote(event);
    }
}

void AUMIDIMonitor::addNote(const std::shared_ptr<AUMIDIEventEx>& event)
{
    if (runningNotes.size() < maximumRunningNotes) {
        runningNotes.push_back(event);
    } else {
        droppedNotes.fetch_add(1, std::memory_order_relaxed);
    }
}

void AUMIDIMonitor::removeNote(const std::shared_ptr<AUMIDIEventEx>& event)
{
    const std::uint8_t key = event->event().data[1];
    const auto place = std::ranges::find_if(runningNotes, [key](const std::shared_ptr<AUMIDIEventEx>& note) {
        return note->event().data[1] == key;
    });
    if (place != runningNotes.end()) {
        runningNotes.erase(place);
    }
}

void AUMIDIMonitor::liftPedal(std::uint8_t channel)
{
    std::array<int, 256> held{}; // by key
    for (const std::shared_ptr<AUMIDIEventEx>& note : runningNotes) {
        if (const AUMIDIEvent record = note->event(); channelOf(record) == channel) {
            ++held[record.data[1]];
        }
    }
    std::erase_if(runningNotes, [&held](const std::shared_ptr<AUMIDIEventEx>& note) {
        int& left = held[note->event().data[1]];
        const bool isHeld = left > 0;
        left -= isHeld ? 1 : 0;
        return isHeld;
    });
}

void AUMIDIMonitor::clearWithoutQueue() noexcept
{
    runningNotes.clear();
    isSustained.fill(false);
    isInputCleared.store(true);
}

void AUMIDIMonitor::clear()
{
    isInputCleared.store(false);
    inputList.clear();
    runningNotes.clear();
    isSustained.fill(false);
}

void AUMIDIMonitor::dropWhatWasCleared()
{
    if (isInputCleared.exchange(false)) {
        inputList.clear();
    }
}

} // namespace volvelle
