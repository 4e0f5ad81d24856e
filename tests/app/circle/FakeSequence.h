#pragma once

#include "app/circle/MIDICircleViewDelegate.h"

#include <new>

// A sequence for the circle, written down by a test.
namespace volvelle::test {

struct FakeSequence : MIDICircleViewDelegate {
    double beats = 16.0;
    std::vector<std::shared_ptr<AUMIDIEventEx>> events;

    int answersUntilFull = -1; // how often the events find memory; -1 for always
    int questions = 0;         // for the events

    std::vector<std::shared_ptr<AUMIDIEventEx>> getEvents() override
    {
        ++questions;
        if (answersUntilFull >= 0 && answersUntilFull-- == 0) {
            answersUntilFull = 0;
            throw std::bad_alloc();
        }
        return events;
    }

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
