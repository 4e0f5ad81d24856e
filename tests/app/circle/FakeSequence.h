#pragma once

#include "app/circle/MIDICircleViewDelegate.h"

// A sequence for the circle, written down by a test.
namespace volvelle::test {

struct FakeSequence : MIDICircleViewDelegate {
    double beats = 16.0;
    std::vector<std::shared_ptr<AUMIDIEventEx>> events;

    std::vector<std::shared_ptr<AUMIDIEventEx>> getEvents() override { return events; }

    double getBeatCount() override { return beats; }

    AUMIDIEventEx& add(std::vector<std::uint8_t> bytes, double start, double duration)
    {
        events.push_back(std::make_shared<AUMIDIEventEx>(bytes));
        events.back()->beats = start;
        events.back()->duration = duration;
        return *events.back();
    }
};

} // namespace volvelle::test
