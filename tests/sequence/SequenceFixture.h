#pragma once

#include "base/MainQueue.h"
#include "base/Text.h"
#include "sequence/MIDISequence.h"
#include "services/musicsequence/FaultPoint.h"
#include "tests/sequence/RecordingDelegate.h"
#include "tests/sequence/SequenceTexts.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/Stops.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace volvelle::test {

// Keeps the lines of diagnosis, and loses its tracks on demand.
class ObservedSequence : public MIDISequence {
public:
    Lines diagnoses;
    bool losesTracks = false;

    void diagnose(std::string_view text) override { diagnoses.emplace_back(text); }

    MusicTrack getTrack(int trackIndex) override
    {
        return losesTracks ? nullptr : MIDISequence::getTrack(trackIndex);
    }
};

class SequenceTest : public testing::Test {
protected:
    using Operation = MusicSequenceOperation;

    void TearDown() override { clearFaults(); }

    static void fail(Operation operation, OSStatus status = someStatus, int after = 0, int times = 1)
    {
        setFault(operation, {status, after, times});
    }

    MusicTrack tempoTrack() const
    {
        MusicTrack track;
        MusicSequenceGetTempoTrack(sequence->musicSequence, track);
        return track;
    }

    std::shared_ptr<ObservedSequence> sequence = std::make_shared<ObservedSequence>();
    std::shared_ptr<RecordingDelegate> listener = std::make_shared<RecordingDelegate>();
    ConsoleCapture console;
};

} // namespace volvelle::test
