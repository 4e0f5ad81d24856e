#pragma once

#include "MIDISequences/realtime/AUMIDISequencer.h"

#include <gmock/gmock.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace volvelle::test {

using Bytes = std::vector<std::uint8_t>;

// An event of a list, or a record that went out.
struct Stamped {
    std::int64_t frame = 0;
    Bytes bytes;

    bool operator==(const Stamped&) const = default;
    friend void PrintTo(const Stamped& event, std::ostream* to);
};

using StampedEvents = std::vector<Stamped>;

StampedEvents stampedOf(const AURenderEvent* chain);
StampedEvents stampedOf(const std::vector<AUMIDIEvent>& records);
std::vector<std::shared_ptr<AUMIDIEventEx>> eventsOf(const StampedEvents& list);

// Keeps what it is told, and can answer.
class SequencerListener : public AUMIDISequencerDelegate {
public:
    SequencerListener() { calls.reserve(1024); }

    std::vector<std::string> calls; // short: no memory is taken for one
    std::function<void(const std::string&)> answer;

    void onAUSequencerComplete() override { note("complete"); }

    void onAUSequencerLoop(int count) override { note(count == 1 ? "loop 1" : "loop ?"); }

    void onAUSequencerLoaded() override { note("loaded"); }

private:
    void note(const char* what);
};

// A sequencer with lists of a test.
class SequencerProbe : public AUMIDISequencer {
public:
    SequencerProbe();

    std::shared_ptr<SequencerListener> listener = std::make_shared<SequencerListener>();

    using AUMIDISequencer::list;
    using AUMIDISequencer::useList;

    void load(const StampedEvents& newList);
    void load(std::vector<std::shared_ptr<AUMIDIEventEx>> events);

    // Those of one cycle.
    StampedEvents play(std::int64_t time, int frames) { return stampedOf(process(time, frames)); }

    StampedEvents playInternal(std::int64_t time, int frames)
    {
        return stampedOf(processInternal(time, frames));
    }

    // Plays what stopping left to be sent.
    void drain() { process(0, 1); }

    // From the first cycle on with nothing left of stopping.
    void startClean(std::int64_t time);
};

StampedEvents operator+(StampedEvents a, const StampedEvents& b);

} // namespace volvelle::test
