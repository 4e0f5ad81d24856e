#pragma once

#include "MIDISequences/AUMIDIEventEx.h"
#include "base/SerialQueue.h"
#include "wire/ShortMessage.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace volvelle {

// Keeps a stream of render events for a consumer that fetches them, and the notes that sound at present.
// Every operation takes its turn on the queue, and so none may be called from a body on it. A consumer that
// does not fetch loses both lists with event MAXEVENTS + 1, unless autoClear is false. [main, worker, sender]
class AUMIDIMonitor {
public:
    AUMIDIMonitor();
    virtual ~AUMIDIMonitor() = default;

    static constexpr int MAXEVENTS = 512;
    static constexpr std::size_t maximumRunningNotes = 2048;

    std::vector<std::shared_ptr<AUMIDIEventEx>> inputList; // not fetched yet
    bool autoClear = true;
    const SerialQueue queue{"com.orvane.aumidi-queue"};
    std::vector<std::shared_ptr<AUMIDIEventEx>> runningNotes; // up to maximumRunningNotes
    std::atomic<std::uint64_t> droppedNotes{0}; // found no room in runningNotes since the beginning

private:
    std::array<bool, channelCount> isSustained{}; // by channel

public:
    // Empties both lists and lifts the pedals.
    virtual void reset();

    // Takes a copy of type, bytes, length and time, whatever the number of bytes; `id`, `beats`, `duration`
    // and `meta` are not copied.
    virtual void addMonitoring(const AUMIDIEventEx& event);

    virtual int getSize() const;
    virtual std::vector<std::shared_ptr<AUMIDIEventEx>> getEvents() const;

    // Removes the first event; null where there is none.
    virtual std::shared_ptr<AUMIDIEventEx> popMonitoring();

    // The same as reset() of this class.
    virtual void clearMonitoring();

    // Puts inputList in the order of time; equal times stay as they are.
    virtual void sort();

    int getRunningNotesCount() const;
    std::vector<std::shared_ptr<AUMIDIEventEx>> getRunningNotes() const;

    // What a message is, by its status with the channel in it. Polyphonic pressure counts as a note, above 0
    // as a note on, and no message is a controller. [any] On render threads too.
    static bool isNoteOn(const AUMIDIEvent& event);
    static bool isNoteOff(const AUMIDIEvent& event);
    static bool isNote(const AUMIDIEvent& event);
    static bool isController(const AUMIDIEvent& event);
    static bool isController(const AUMIDIEvent& event, std::uint8_t controller);

protected:
    // These take no turn: they are for a body on the queue, or for a subclass whose one render thread tracks
    // in its place. Such a subclass lets no other thread near runningNotes meanwhile, and holds the events
    // itself, so that none is freed where it leaves the list. [any] No lock, no allocation.

    // Updates the running notes. Note offs under a pedal are added like notes.
    void trackEvents(const std::shared_ptr<AUMIDIEventEx>& event);

    // Appends the event, doubles too. One that finds no room is dropped, and counted.
    void addNote(const std::shared_ptr<AUMIDIEventEx>& event);

    // Removes the first note of that key, on whatever channel.
    void removeNote(const std::shared_ptr<AUMIDIEventEx>& event);

    // Does what clearMonitoring() does, and frees nothing: running notes live on with those who hold them,
    // and the events of inputList until the next operation of another thread that changes it, which empties
    // it first.
    void clearWithoutQueue() noexcept;

private:
    static bool isNoteOn(const AUMIDIEventEx& event);
    static bool isNoteOff(const AUMIDIEventEx& event);
    static bool isNote(const AUMIDIEventEx& event);
    static bool isController(const AUMIDIEventEx& event);
    static bool isController(const AUMIDIEventEx& event, std::uint8_t controller);

    // On the queue.
    void clear();
    void dropWhatWasCleared();
    void liftPedal(std::uint8_t channel);

    std::atomic<bool> isInputCleared{false}; // by clearWithoutQueue()
};

} // namespace volvelle
